// The login forms whose identifiers have a meaning of their own; the shipped database holds their rows.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/Text.h"
#include "store/Id.h"

namespace mv {

// Built-in authentication: a site's values of two fields are the user name and the password of its web requests.
struct AuthenticationForm {
  Id formId;
  int userNameField;
  int passwordField;
};
inline constexpr AuthenticationForm kAuthenticationForms[] = {{20, 17, 18}, {21, 20, 19}};

constexpr bool isAuthenticationForm(std::int64_t formId) {
  for (const AuthenticationForm& form : kAuthenticationForms)
    if (form.formId == formId) return true;
  return false;
}

inline constexpr Id kNoLoginForm = 24;  // the form that stands for "no login"; 0 means none chosen
inline constexpr const char* kNoLoginFormName = "***None***";
// A form of this name would be taken for that one, and hidden.
inline bool standsForNoLogin(std::string_view name) {
  return toQString(name).trimmed().compare(QLatin1String(kNoLoginFormName), Qt::CaseInsensitive) == 0;
}

}  // namespace mv
