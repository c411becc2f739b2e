// The body of a response: a page as text in memory, or a file, see BodySpool.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "BodySpool.h"
#include "transfer/TransferTypes.h"

namespace mv {

class ResponseBody {
 public:
  ResponseBody(BodyMode mode, const TransferLimits& limits);

  // Before the first append: a large file is kept on the file system of this folder.
  void keepFileNear(const std::string& folder) { file_ = BodySpool(limits_.spoolThreshold, folder); }

  // False when it is too much: a page over its limit, or what the disk refuses. failureCode() and failureText() then
  // tell why.
  bool append(std::string_view bytes);
  // After the last append, false as there. A page becomes UTF-8, from the charset that `contentType` names.
  bool finish(const std::string& contentType);

  // Bytes of the body that have arrived, unpacked.
  std::int64_t received() const { return received_; }
  bool hasFailed() const { return !failureText_.empty(); }
  long failureCode() const { return failureCode_; }  // a CURLcode
  const std::string& failureText() const { return failureText_; }

  // After finish(), see InternetTransfer.
  bool moveTo(AtomicFile& file) { return file_.moveTo(file); }
  std::string takeText();
  std::string takeChunk(std::size_t size, ChunkType type);

 private:
  bool appendText(std::string_view bytes);
  bool written(bool success);

  bool isText_;
  std::int64_t received_ = 0;
  TransferLimits limits_;
  std::string text_;
  std::size_t textAt_ = 0;
  std::size_t textChecked_ = 0;  // UTF-8 up to here
  BodySpool file_;
  long failureCode_ = 0;
  std::string failureText_;
};

}  // namespace mv
