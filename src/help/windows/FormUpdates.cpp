#include "help_windows/FormUpdates.h"

#include <memory>

#include "app/ReportError.h"
#include "app/Settings.h"
#include "base/Text.h"
#include "desktop/Browser.h"
#include "desktop/ListView.h"
#include "help/FeedParsers.h"
#include "help/VendorServers.h"
#include "help_windows/UpdatePanel.h"
#include "net/TextBody.h"
#include "store/Sequence.h"

namespace mv {

namespace {

constexpr const char* kOverviewPath = "/morvane2000/formupdates/overview.txt";
constexpr const char* kGetOverview = "getOverview";
constexpr const char* kGetUpdate = "getUpdate";

enum Column { kName, kReleaseDate, kUrl };

}  // namespace

FormUpdates::FormUpdates(UpdatePanel& panel, ListView& lvwOverview, QObject* parent)
    : FeedChain("FormUpdates", &panel, parent), lvwOverview_(lvwOverview) {
  lvwOverview_.setColumns({{"name"}, {"release date"}, {"url"}});
  handle(Inet2, "Inet2", [this] { overviewCompleted(); });
  handle(Inet3, "Inet3", [this] { updateCompleted(); });
}

QString FormUpdates::listed(int column) const { return lvwOverview_.cell(first_, column); }

// --- the overview

void FormUpdates::getFormUpdates() {
  endChain();
  Inet3.cancel();
  listIsCurrent_ = false;
  say("Checking for new Form Definitions");
  mode_ = kGetOverview;
  get(Inet2, updatePage(kOverviewPath));
}

void FormUpdates::overviewCompleted() {
  if (mode_ != kGetOverview) return;
  std::string overview = readTextBody(Inet2);
  if (!holdsEndMark(overview)) return endChain();
  say("Processing overview information");
  lvwOverview_.clearRows();
  readOverview(
      std::move(overview), [this](std::string_view line) { return listDefinition(line); },
      [this] { registerDefinitions(); });
}

bool FormUpdates::listDefinition(std::string_view line) {
  const auto entry = readDefinitionEntry(line);
  if (entry) lvwOverview_.addRow({toQString(entry->name), toQString(entry->releaseDate), toQString(entry->url)});
  return entry.has_value();
}

void FormUpdates::registerDefinitions() {
  say("Processing update information");
  inSlices(
      [this, row = 0]() mutable {
        if (row == lvwOverview_.rowCount()) return false;
        registerDefinition(row++);
        return true;
      },
      [this] { fetchNextFormUpdate(); });
}

void FormUpdates::registerDefinition(int row) {
  const QString address = lvwOverview_.cell(row, kUrl);
  const std::string name = toUtf8(lvwOverview_.cell(row, kName));
  const std::string date = toUtf8(lvwOverview_.cell(row, kReleaseDate));
  const std::string url = toUtf8(address);
  if (isRefused("form definition " + name, {name, date, url})) return;
  if (!isWebAddress(address)) return logRefusal("form definition " + name, "its address is not http or https");
  if (gDatabase.count("select count(*) as outCount from form_def_update where name = " + quoted(name)) > 0) return;
  gDatabase.execute("insert into form_def_update (name,release_date,retrieved,url) values (" + quoted(name) + ", " +
                    quoted(date) + ", " + quoted("no") + ", " + quoted(url) + ")");
}

// --- one definition after another

void FormUpdates::fetchNextFormUpdate() {
  if (listIsCurrent_)
    requestFirst();
  else
    listUnretrieved();
}

void FormUpdates::listUnretrieved() {
  lvwOverview_.clearRows();
  first_ = 0;
  const auto rows = std::make_shared<Recordset>(
      gDatabase.query("select name, release_date, url from form_def_update where retrieved= " + quoted("no")));
  inSlices([this, rows] { return listNext(*rows); },
           [this] {
             listIsCurrent_ = true;
             requestFirst();
           });
}

bool FormUpdates::listNext(Recordset& rows) {
  try {
    if (rows.endOfRows()) return false;
    lvwOverview_.addRow(
        {toQString(rows.text("name")), toQString(rows.text("release_date")), toQString(rows.text("url"))});
    rows.moveNext();
  } catch (const DatabaseError& error) {
    // Maintenance has come between two slices: the rows are gone, the database is open anew.
    if (error.number() != DatabaseError::kNotOpen) throw;
    listUnretrieved();
  }
  return true;
}

void FormUpdates::requestFirst() {
  while (first_ < lvwOverview_.rowCount() && !isWebAddress(listed(kUrl))) ++first_;
  if (first_ < lvwOverview_.rowCount()) {
    mode_ = kGetUpdate;
    get(Inet3, listed(kUrl));
    return;
  }
  mode_.clear();
  listIsCurrent_ = false;
  endChain();
}

void FormUpdates::updateCompleted() {
  if (mode_ != kGetUpdate) return;
  update_ = withCrLf(readTextBody(Inet3));
  rest_ = update_;
  formId_.reset();
  inSlices([this] { return importSome(); }, [this] { markRetrieved(); });
}

// A definition that cannot be imported to its end is given up, and the next one is taken up.
bool FormUpdates::importSome() {
  bool more = false;
  guarded(source(), [&] { more = importRecord(); });
  return more;
}

bool FormUpdates::importRecord() {
  const auto record = takeDefinitionRecord(rest_);
  if (!record) {
    if (!rest_.empty()) logRefusal("the rest of " + toUtf8(listed(kName)), "it cannot be read");
    return false;
  }
  if (const auto* form = std::get_if<FormRecord>(&*record)) return importForm(*form);
  return importField(std::get<FieldRecord>(*record));
}

bool FormUpdates::importForm(const FormRecord& form) {
  formId_.reset();
  if (isRefused("form " + form.name, {form.name, form.description, form.formType})) return true;
  const std::int32_t id = nextSequenceValue("form_id");
  if (id == 0) return false;  // reported there
  gDatabase.execute("insert into form (id, name, description, form_type) values (" + number(id) + ", " +
                    quoted(form.name) + ", " + quoted(form.description) + ", " + quoted(form.formType) + ")");
  formId_ = id;
  return true;
}

bool FormUpdates::importField(const FieldRecord& field) {
  if (!formId_) {
    logRefusal("field " + field.name, "its form has not been taken");
    return true;
  }
  if (isRefused("field " + field.name, {field.name, field.logicalNumber, field.searchString, field.suppliedByUser,
                                        field.prompt, field.fieldName, field.fieldValue}))
    return true;
  const std::int32_t id = nextSequenceValue("field_info_id");
  if (id == 0) return false;
  Statement values = number(id) + ", " + number(*formId_);
  for (const auto* text : {&field.name, &field.logicalNumber, &field.searchString, &field.suppliedByUser, &field.prompt,
                           &field.fieldName, &field.fieldValue})
    values += ", " + quoted(*text);
  gDatabase.execute(
      "insert into field_info (id, form_id, name, logical_number, search_string, supplied_by_user, prompt, field_name, "
      "field_value) values (" +
      values + ")");
  return true;
}

void FormUpdates::markRetrieved() {
  gDatabase.execute("update form_def_update set retrieved = " + quoted("yes") +
                    " where name = " + quoted(toUtf8(listed(kName))));
  // The list as it would be read anew, without reading ten thousand rows ten thousand times.
  if (gDatabase.rowsAffected() > 1)
    listIsCurrent_ = false;
  else
    lvwOverview_.removeRow(first_);
  fetchNextFormUpdate();
}

}  // namespace mv
