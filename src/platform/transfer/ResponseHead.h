// The head of the response that a request is receiving: its status line and its header fields. Its lines are read as
// libcurl reads them: where the two differed, a request could go where nobody has looked.
#pragma once

#include <curl/curl.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mv {

class ResponseHead {
 public:
  // What a line that CURLOPT_HEADERFUNCTION hands over has done.
  enum class Event { None, Begun, Ended };

  // `easy` outlives the object.
  explicit ResponseHead(CURL* easy) : easy_(easy) {}

  // Every line in turn. A new response takes the place of the one before it.
  Event take(std::string_view line);

  // 0 before a response has begun.
  long status() const { return status_; }
  // UTF-8, one plain line; the status's usual phrase when the server sent none.
  const std::string& reason() const { return reason_; }
  // Lines of this response are still missing.
  bool isOpen() const { return open_; }
  // A whole head has come, and not only an interim one.
  bool isComplete() const { return !open_ && status_ >= 200; }

  // All values of a header field, name without regard to case, in the order received. A value that is folded into
  // several lines is one.
  std::vector<std::string> fields(const char* name) const;
  // The last one of them; "" when there is none.
  std::string field(const char* name) const;
  // Where libcurl goes on to: the first line of that name that has a value, without lines folded behind it. "" when
  // this is no redirect.
  std::string redirection() const;
  // The length that the body is announced with, in bytes; nothing when there is none, or none that is a number.
  std::optional<std::uint64_t> announcedLength() const;
  // Why the body of this answer is not what was asked for, "" when it may be. A file has to come with status 200.
  std::string flaw(bool isFile) const;
  // Neither an interim response nor a redirect.
  bool isFinal() const { return status_ >= 200 && redirection().empty(); }

 private:
  struct Field {
    std::string name;
    std::string value;
  };

  void begin(std::string_view statusLine);
  void takeField(std::string_view line);

  CURL* easy_;
  long status_ = 0;
  std::string reason_;
  bool open_ = false;
  std::vector<Field> fields_;
  std::string location_;
};

}  // namespace mv
