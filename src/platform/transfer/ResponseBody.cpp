#include "ResponseBody.h"

#include <curl/curl.h>

#include <algorithm>
#include <new>
#include <utility>

#include "base/Text.h"

namespace mv {

namespace {

// Moving a text to a larger place takes a millisecond or so a MiB: what is longer than this is moved once at most, to a
// place that is large enough for all. Memory that is not written to is none.
constexpr std::size_t kShortText = std::size_t{1} << 20;
constexpr std::size_t kLongText = std::size_t{4} << 20;
constexpr std::size_t kGrowth = 2;  // what other character sets take one byte for mostly takes two in UTF-8
constexpr std::string_view kUtf8 = "utf-8";

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
  makeRoom(bytes.size());
  decoder_.append(bytes);
  return true;
}

void ResponseBody::makeRoom(std::size_t bytes) {
  auto& text = decoder_.text();
  const std::size_t growth = decoder_.encoding() == kUtf8 ? 1 : kGrowth;
  if (text.size() <= kShortText || text.capacity() - text.size() >= growth * bytes) return;
  std::uint64_t most = text.size() < kLongText / 2 ? kLongText : limits_.textLimit;
  if (unpacker_.isPlain() && announced_.bytes > text.capacity()) most = *announced_.bytes;
  try {
    text.reserve(growth * static_cast<std::size_t>(std::min<std::uint64_t>(most, limits_.textLimit)));
  } catch (const std::bad_alloc&) {
    // It may still grow as far as it has to.
  }
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
