// The body of a response: a page as text in memory, or a file, see BodySpool.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "BodySpool.h"
#include "decoding/TextDecoding.h"
#include "decoding/Unpacker.h"
#include "transfer/TransferTypes.h"

namespace mv {

class ResponseBody {
 public:
  ResponseBody(BodyMode mode, const TransferLimits& limits);

  // Before the first append: a large file is kept on the file system of this folder.
  void keepFileNear(const std::string& folder) { file_ = BodySpool(limits_.spoolThreshold, folder); }

  // What the head says of the body that comes now; takes the place of an earlier one.
  struct Announced {
    std::string type;                    // Content-Type
    std::string encoding;                // Content-Encoding
    std::optional<std::uint64_t> bytes;  // Content-Length
  };
  void begin(const Announced& announced);
  // False when it is not to be taken: a page over its limit or one that cannot be unpacked, a byte beyond the announced
  // length of a file, what the disk refuses. failureCode() and failureText() then tell why.
  bool append(std::string_view bytes);
  // A page that is sent compressed: a few bytes may become a thousand times as many.
  bool isPacked() const { return isText_ && !unpacker_.isPlain(); }
  // After the last append, false as there. A page is UTF-8 then.
  bool finish();
  // Gives back what has been received.
  void discard();

  // Bytes that have arrived: of a file as sent, of a page unpacked.
  std::int64_t received() const { return static_cast<std::int64_t>(received_); }
  bool hasFailed() const { return !failureText_.empty(); }
  long failureCode() const { return failureCode_; }  // a CURLcode
  const std::string& failureText() const { return failureText_; }

  // After finish(), see InternetTransfer.
  bool moveTo(AtomicFile& file) { return file_.moveTo(file); }
  std::string takeText();
  std::string_view textEncoding() const { return decoder_.encoding(); }
  std::string takeChunk(std::size_t size, ChunkType type);

 private:
  bool appendText(std::string_view bytes);
  bool takeUnpacked(std::string_view bytes);
  // For so many bytes more.
  void makeRoom(std::size_t bytes);
  bool appendFile(std::string_view bytes);
  bool written(bool success);
  bool refuse(long code, std::string text);
  bool refuseLength();

  bool isText_;
  TransferLimits limits_;
  Announced announced_;
  std::uint64_t received_ = 0;  // bytes: of a file as sent, of a page unpacked
  std::uint64_t packed_ = 0;    // bytes of a page as sent
  Unpacker unpacker_;
  TextDecoder decoder_;
  std::size_t textAt_ = 0;
  BodySpool file_;
  long failureCode_ = 0;
  std::string failureText_;
};

}  // namespace mv
