#include "ResponseBody.h"

#include <curl/curl.h>

#include <algorithm>
#include <utility>

#include "base/Text.h"
#include "transfer/TextDecoding.h"

namespace mv {

namespace {

constexpr std::size_t kShortText = std::size_t{1} << 20;

}  // namespace

ResponseBody::ResponseBody(BodyMode mode, const TransferLimits& limits)
    : isText_(mode == BodyMode::Text), limits_(limits), file_(limits.spoolThreshold, {}) {}

bool ResponseBody::append(std::string_view bytes) {
  received_ += std::ssize(bytes);
  return isText_ ? appendText(bytes) : written(file_.append(bytes));
}

bool ResponseBody::appendText(std::string_view bytes) {
  if (text_.size() + bytes.size() > limits_.textLimit) {
    failureText_ = "The page is longer than " + std::to_string(limits_.textLimit) + " bytes";
    failureCode_ = CURLE_FILESIZE_EXCEEDED;
    return false;
  }
  // Moving a long page to a larger place would take the user's time; room that is not used costs nothing.
  if (text_.size() > kShortText) text_.reserve(limits_.textLimit);
  text_.append(bytes);
  textChecked_ = wholeUtf8(text_, textChecked_);
  return true;
}

bool ResponseBody::finish(const std::string& contentType) {
  if (!isText_) return written(file_.finish());
  text_ = decodeText(std::move(text_), contentType, textChecked_);
  return true;
}

bool ResponseBody::written(bool success) {
  if (!success) {
    failureText_ = file_.error();
    failureCode_ = CURLE_WRITE_ERROR;
  }
  return success;
}

std::string ResponseBody::takeText() {
  text_.erase(0, std::exchange(textAt_, 0));
  return std::exchange(text_, {});
}

std::string ResponseBody::takeChunk(std::size_t size, ChunkType type) {
  if (!isText_) return file_.read(size);
  const auto end = type == ChunkType::Text ? advanceCharacters(text_, textAt_, size)
                                           : textAt_ + std::min(size, text_.size() - textAt_);
  auto piece = text_.substr(textAt_, end - textAt_);
  textAt_ = end;
  return piece;
}

}  // namespace mv
