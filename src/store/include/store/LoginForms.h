// The login forms that a site can be given, as its editor shows them. All functions raise DatabaseError.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store/NamedId.h"

namespace mv {

// A field of a form that the user supplies.
struct LoginPrompt {
  std::int64_t fieldId = 0;
  std::string prompt;
  std::string defaultValue;
};

// The forms of type "Authentication", in alphabetical order.
std::vector<NamedId> listLoginForms();
// nullopt when the form is gone.
std::optional<std::string> findLoginFormDescription(std::int64_t formId);
// In the order of the fields' logical numbers.
std::vector<LoginPrompt> listLoginPrompts(std::int64_t formId);

}  // namespace mv
