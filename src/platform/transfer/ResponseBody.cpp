#include "ResponseBody.h"

#include <curl/curl.h>

#include <algorithm>
#include <utility>

#include "base/Text.h"

namespace mv {

namespace {

constexpr std::size_t kShortText = std::size_t{1} << 20;

}  // namespace

ResponseBody::ResponseBody(BodyMode mode, const TransferLimits& limits)
    : isText_(mode == BodyMode::Text), limits_(limits), file_(limits.spoolThreshold, {}) {}

void ResponseBody::begin(const Announced& announced) {
  announced_ = announced;
  received_ = 0;
  packed_ = 0;
  textAt_ = 0;
  if (!isText_) return;
  unpacker_ = Unpacker(announced.encoding);
  decoder_ = TextDecoder(announced.type);
}

bool ResponseBody::append(std::string_view bytes) { return isText_ ? appendText(bytes) : appendFile(bytes); }

bool ResponseBody::appendText(std::string_view bytes) {
  // Packed data may go on for ever, and unpack to nothing.
  packed_ += bytes.size();
  if (packed_ > limits_.textLimit) return refuseLength();
  if (unpacker_.append(bytes, [this](std::string_view unpacked) { return takeUnpacked(unpacked); })) return true;
  if (hasFailed()) return false;
  return refuse(CURLE_BAD_CONTENT_ENCODING, unpacker_.isUnknown()
                                                ? "The page is compressed in a way that was not asked for"
                                                : "The page's compression is broken");
}

bool ResponseBody::takeUnpacked(std::string_view bytes) {
  received_ += bytes.size();
  if (received_ > limits_.textLimit) return refuseLength();
  // Moving a long page to a larger place, again and again, would take the user's time.
  auto& text = decoder_.text();
  if (text.size() > kShortText && unpacker_.isPlain() && announced_.bytes)
    text.reserve(static_cast<std::size_t>(std::min<std::uint64_t>(*announced_.bytes, limits_.textLimit)));
  decoder_.append(bytes);
  return true;
}

bool ResponseBody::appendFile(std::string_view bytes) {
  received_ += bytes.size();
  if (announced_.bytes && received_ > *announced_.bytes)
    return refuse(CURLE_WEIRD_SERVER_REPLY,
                  "The server sends more than the " + std::to_string(*announced_.bytes) + " bytes that it announced");
  return written(file_.append(bytes));
}

bool ResponseBody::finish() {
  if (!isText_) return written(file_.finish());
  if (!unpacker_.isWhole()) return refuse(CURLE_PARTIAL_FILE, "The page ends within its compressed data");
  decoder_.finish();
  return true;
}

void ResponseBody::discard() {
  decoder_ = TextDecoder();
  file_ = BodySpool(limits_.spoolThreshold, {});
}

bool ResponseBody::written(bool success) { return success || refuse(CURLE_WRITE_ERROR, file_.error()); }

bool ResponseBody::refuse(long code, std::string text) {
  failureCode_ = code;
  failureText_ = std::move(text);
  return false;
}

bool ResponseBody::refuseLength() {
  return refuse(CURLE_FILESIZE_EXCEEDED, "The page is longer than " + std::to_string(limits_.textLimit) + " bytes");
}

std::string ResponseBody::takeText() {
  decoder_.text().erase(0, std::exchange(textAt_, 0));
  return std::exchange(decoder_.text(), {});
}

std::string ResponseBody::takeChunk(std::size_t size, ChunkType type) {
  if (!isText_) return file_.read(size);
  const auto& text = decoder_.text();
  const auto end = type == ChunkType::Text ? advanceCharacters(text, textAt_, size)
                                           : textAt_ + std::min(size, text.size() - textAt_);
  auto piece = text.substr(textAt_, end - textAt_);
  textAt_ = end;
  return piece;
}

}  // namespace mv
