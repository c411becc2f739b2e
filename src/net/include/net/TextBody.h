// The request pattern over the transfer component: reading a completed text body.
#pragma once

#include <string>

#include "transfer/InternetTransfer.h"

namespace mv {

inline constexpr std::size_t kChunkSize = 1024;

// What a window's outstanding request is for.
inline constexpr const char* kGetPage = "kGetPage";
inline constexpr const char* kGetHeader = "kGetHeader";
inline constexpr const char* kGetFile = "kGetFile";

// All pieces of the completed text body, in chunks of 1024 characters until one is empty.
std::string readTextBody(InternetTransfer& transfer);

}  // namespace mv
