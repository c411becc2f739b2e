// The request that logs in to a site: a login form's definition filled with the values of the form found in a page and
// with the user's values for the site.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/ProcessData.h"

namespace mv {

class LoginRequest {
 public:
  enum class Outcome {
    NoFields,      // the definition has none: there is nothing to recognise or to send
    OtherForm,     // the first field does not occur in the form
    FieldMissing,  // a further field does not occur behind the one before it, or its value has no end within 1 MiB
    Ready,
  };

  // `form` is the form's text in lower case (ASCII letters only), `asFetched` the same bytes as the page has them.
  LoginRequest(const std::vector<LoginField>& fields, std::string_view form, std::string_view asFetched);

  Outcome outcome() const { return outcome_; }
  // When ready. The address holds what the user typed, its password too: it goes to the server and nowhere else.
  const std::string& address() const { return address_; }
  // What may be shown of it: the part before the parameters, user information masked.
  std::string shownAddress() const;
  // When a field is missing: its name.
  const std::string& missingField() const { return missingField_; }

 private:
  struct Place;
  // Appends the parameter and moves on behind the field's value; false when the form lacks the field.
  bool append(const LoginField& field, Place& place);

  Outcome outcome_ = Outcome::NoFields;
  std::string address_;
  std::string missingField_;
};

}  // namespace mv
