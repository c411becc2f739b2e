#include "store/LoginForms.h"

#include "ReadAll.h"
#include "app/Settings.h"

namespace mv {

namespace {

constexpr const char* kFormType = "Authentication";

}  // namespace

std::vector<NamedId> listLoginForms() {
  return readAll(gDatabase.query("select id, name from form where form_type = " + quoted(kFormType) + " order by name"),
                 namedId);
}

std::optional<std::string> findLoginFormDescription(Id formId) {
  return readFirst(gDatabase.query("select description from form where id = " + number(formId)),
                   [](const Recordset& row) { return row.text("description"); });
}

std::vector<LoginPrompt> listLoginPrompts(Id formId) {
  return readAll(gDatabase.query("select id, prompt, field_value from field_info where form_id = " + number(formId) +
                                 " and supplied_by_user = " + quoted("yes") + " order by logical_number + 0"),
                 [](const Recordset& row) {
                   return LoginPrompt{row.number("id"), row.text("prompt"), row.text("field_value")};
                 });
}

}  // namespace mv
