// The login forms that a site can be given, as its editor shows them. All functions raise DatabaseError.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "store/Id.h"

namespace mv {

// A field of a form that the user supplies.
struct LoginPrompt {
  Id fieldId = 0;
  std::string prompt;
  std::string defaultValue;
};

// The forms of type "Authentication", in alphabetical order.
std::vector<NamedId> listLoginForms();
// nullopt when the form is gone.
std::optional<std::string> findLoginFormDescription(Id formId);
// In the order of the fields' logical numbers.
std::vector<LoginPrompt> listLoginPrompts(Id formId);

}  // namespace mv
