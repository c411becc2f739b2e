// Why a transfer failed, in words for the user.
#pragma once

#include <curl/curl.h>

#include <string>
#include <string_view>

namespace mv {

// `detail` is what libcurl says of this failure, "" for nothing.
std::string transportErrorText(CURL* easy, CURLcode code, std::string_view detail);

// `code` means that no encrypted connection came about, while an unencrypted one may.
bool isHttpsFailure(CURL* easy, CURLcode code);

// `text`, which a server has had a hand in, on one line: without characters that control a terminal or the direction of
// writing, and no longer than a line of a log may be.
std::string asPlainLine(const std::string& text);

}  // namespace mv
