#include "store/FormStore.h"

#include "ReadAll.h"
#include "app/Settings.h"
#include "store/BuiltInForms.h"

namespace mv {

namespace {

Form formOf(const Recordset& rows) {
  return {rows.number("id"), rows.text("name"), rows.text("description"), rows.text("form_type")};
}

FormField fieldOf(const Recordset& rows) {
  return {rows.number("id"),           rows.number("form_id"),     rows.text("name"),
          rows.text("logical_number"), rows.text("search_string"), unlessNo(rows.text("supplied_by_user")),
          rows.text("prompt"),         rows.text("field_name"),    rows.text("field_value")};
}

}  // namespace

std::vector<Form> listForms() {
  return readAll(gDatabase.query("select id, name, description, form_type from form where name <> " +
                                 quoted(kNoLoginFormName) + " order by id"),
                 formOf);
}

bool hasForm(Id id) { return gDatabase.count("select count(*) as outCount from form where id = " + number(id)) > 0; }

void insertForm(const Form& form) {
  gDatabase.execute("insert into form (id, name, description, form_type) values (" + number(form.id) + ", " +
                    quoted(form.name) + ", " + quoted(form.description) + ", " + quoted(form.type) + ")");
}

bool updateForm(const Form& form) {
  gDatabase.execute("update form set name = " + quoted(form.name) + ", description = " + quoted(form.description) +
                    ", form_type = " + quoted(form.type) + " where id = " + number(form.id));
  return gDatabase.rowsAffected() > 0;
}

void deleteForm(Id id) {
  gDatabase.execute("delete from form where id = " + number(id));
  gDatabase.execute("delete from field_info where form_id = " + number(id));
  gDatabase.execute("delete from site_form_xref where form_id = " + number(id));
}

std::vector<FormField> listFormFields(Id formId) {
  return readAll(gDatabase.query("select id, form_id, name, logical_number, search_string, supplied_by_user, prompt, "
                                 "field_name, field_value from field_info where form_id = " +
                                 number(formId)),
                 fieldOf);
}

void insertFormField(const FormField& field) {
  gDatabase.execute(
      "insert into field_info (id, form_id, name, logical_number, search_string, supplied_by_user, prompt, field_name, "
      "field_value) values (" +
      number(field.id) + ", " + number(field.formId) + ", " + quoted(field.name) + ", " + quoted(field.logicalNumber) +
      ", " + quoted(field.searchString) + ", " + quoted(yesNo(field.suppliedByUser)) + ", " + quoted(field.prompt) +
      ", " + quoted(field.fieldName) + ", " + quoted(field.fieldValue) + ")");
}

bool updateFormField(const FormField& field) {
  gDatabase.execute("update field_info set name = " + quoted(field.name) + ", logical_number = " +
                    quoted(field.logicalNumber) + ", search_string = " + quoted(field.searchString) +
                    ", supplied_by_user = " + quoted(yesNo(field.suppliedByUser)) +
                    ", prompt = " + quoted(field.prompt) + ", field_name = " + quoted(field.fieldName) +
                    ", field_value = " + quoted(field.fieldValue) + " where id = " + number(field.id));
  return gDatabase.rowsAffected() > 0;
}

void deleteFormField(Id id, Id formId) {
  gDatabase.execute("delete from field_info where id = " + number(id) + " and  form_id = " + number(formId));
}

}  // namespace mv
