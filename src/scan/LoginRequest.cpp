#include "scan/LoginRequest.h"

#include <QByteArray>
#include <algorithm>

#include "base/WebAddress.h"

namespace mv {

namespace {

constexpr auto kNowhere = std::string_view::npos;
constexpr char kParametersStart = '?';
constexpr std::size_t kLongestValue = std::size_t{1} << 20;  // bytes; no server takes an address of such a length

// As a browser sends a form's values: blanks as "+".
std::string formEncoded(std::string_view text) {
  std::string encoded =
      QByteArray(text.data(), static_cast<qsizetype>(text.size())).toPercentEncoding(" *", "~").toStdString();
  std::replace(encoded.begin(), encoded.end(), ' ', '+');
  return encoded;
}

}  // namespace

// Where in the form the search for the next field starts.
struct LoginRequest::Place {
  std::string_view form;
  std::string_view asFetched;
  std::size_t from = 0;
};

LoginRequest::LoginRequest(const std::vector<LoginField>& fields, std::string_view form, std::string_view asFetched) {
  if (fields.empty()) return;
  outcome_ = Outcome::OtherForm;
  if (form.empty() || form.find(fields.front().searchString) == kNowhere) return;
  outcome_ = Outcome::Ready;
  address_ = fields.front().value + kParametersStart;
  Place place{form, asFetched};
  for (std::size_t i = 1; i < fields.size(); ++i) {
    if (i > 1) address_ += '&';
    if (append(fields[i], place)) continue;
    outcome_ = Outcome::FieldMissing;
    missingField_ = fields[i].name;
    return;
  }
}

bool LoginRequest::append(const LoginField& field, Place& place) {
  const std::size_t found = place.form.find(field.searchString, place.from);
  if (found == kNowhere) return false;
  place.from = found + field.searchString.size();
  std::string_view value = field.value;  // the user's has no end in the page
  if (!field.suppliedByUser) {
    // The character between them is the quote that opens the value.
    const std::size_t start = std::min(place.from + 1, place.form.size());
    place.from = place.form.find('"', start);
    if (place.from == kNowhere || place.from - start > kLongestValue) return false;
    value = place.asFetched.substr(start, place.from - start);
  }
  address_.append(formEncoded(field.parameter)).append("=").append(formEncoded(value));
  return true;
}

std::string LoginRequest::shownAddress() const {
  return maskPassword(address_.substr(0, address_.find(kParametersStart)));
}

}  // namespace mv
