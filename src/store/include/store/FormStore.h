// The login form definitions, kept in the table `form`, and their fields, in `field_info`. All functions raise
// DatabaseError.
#pragma once

#include <string>
#include <vector>

#include "store/Id.h"

namespace mv {

struct Form {
  Id id = 0;  // of the sequence "form_id"
  std::string name;
  std::string description;
  std::string type;  // "Authentication" or "Query", without regard to case
};

struct FormField {
  Id id = 0;  // of the sequence "field_info_id"
  Id formId = 0;
  std::string name;
  std::string logicalNumber;  // its place in the login request: as typed, not necessarily a number
  std::string searchString;
  bool suppliedByUser = false;
  std::string prompt;
  std::string fieldName;
  std::string fieldValue;
};

// In the order of their identifiers, without the one that stands for "no login".
std::vector<Form> listForms();
bool hasForm(Id id);
void insertForm(const Form& form);
// False: it is gone.
bool updateForm(const Form& form);
// With its fields and its places at sites; values that sites have for its fields stay.
void deleteForm(Id id);

std::vector<FormField> listFormFields(Id formId);
void insertFormField(const FormField& field);
// False: it is gone. The form stays the one that it was.
bool updateFormField(const FormField& field);
void deleteFormField(Id id, Id formId);

}  // namespace mv
