// An address as the table `link` keeps it: quotes, line breaks and bars stand as tokens (EscapeText).
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace mv {

class Recordset;

// Comes into being by escaping a plain address or by reading the table, and in no other way: a plain address cannot be
// stored, and a restored one, which is a plain text again, cannot be restored once more.
class EscapedAddress {
 public:
  EscapedAddress() = default;  // of the empty address
  static EscapedAddress escape(std::string address);
  // The column `url` of the current row. Raises DatabaseError.
  static EscapedAddress read(const Recordset& row);

  // As stored.
  const std::string& text() const { return text_; }
  // The plain address.
  std::string restored() const;

  bool operator==(const EscapedAddress&) const = default;

 private:
  explicit EscapedAddress(std::string text) : text_(std::move(text)) {}

  std::string text_;
};

}  // namespace mv

template <>
struct std::hash<mv::EscapedAddress> {
  std::size_t operator()(const mv::EscapedAddress& address) const noexcept {
    return std::hash<std::string>()(address.text());
  }
};
