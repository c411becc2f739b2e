#include "help/FormUpdates.h"

#include <memory>

#include "app/ReportError.h"
#include "base/Text.h"
#include "base/WebAddress.h"
#include "help/VendorServers.h"
#include "net/TextBody.h"
#include "store/BuiltInForms.h"
#include "store/FormStore.h"
#include "store/Sequence.h"

namespace mv {

namespace {

constexpr const char* kOverviewPath = "/morvane2000/formupdates/overview.txt";
constexpr const char* kGetOverview = "getOverview";
constexpr const char* kGetUpdate = "getUpdate";

}  // namespace

FormUpdates::FormUpdates(QObject* parent) : FeedChain("FormUpdates", parent) {
  handle(Inet2, "Inet2", [this] { overviewCompleted(); });
  handle(Inet3, "Inet3", [this] { updateCompleted(); });
}

void FormUpdates::clearList() {
  list_.clear();
  first_ = 0;
  Q_EMIT listCleared();
}

void FormUpdates::list(const FormUpdate& definition) {
  list_.push_back(definition);
  Q_EMIT definitionListed(definition);
}

void FormUpdates::takeOff(std::size_t row) {
  list_.erase(list_.begin() + static_cast<std::ptrdiff_t>(row));
  Q_EMIT definitionTakenOff(static_cast<int>(row));
}

// --- the overview

void FormUpdates::getFormUpdates() {
  endChain();
  Inet3.cancel();
  listIsCurrent_ = false;
  Q_EMIT progress("Checking for new Form Definitions");
  mode_ = kGetOverview;
  get(Inet2, updatePage(kOverviewPath));
}

void FormUpdates::overviewCompleted() {
  if (mode_ != kGetOverview) return;
  std::string overview = readTextBody(Inet2);
  if (!holdsEndMark(overview)) return endChain();
  Q_EMIT progress("Processing overview information");
  clearList();
  readOverview(
      std::move(overview), [this](std::string_view line) { return listDefinition(line); },
      [this] { registerDefinitions(); });
}

bool FormUpdates::listDefinition(std::string_view line) {
  const auto entry = readDefinitionEntry(line);
  if (entry) list(*entry);
  return entry.has_value();
}

void FormUpdates::registerDefinitions() {
  Q_EMIT progress("Processing update information");
  inSlices(
      [this, row = std::size_t{0}]() mutable {
        if (row == list_.size()) return false;
        registerDefinition(list_[row++]);
        return true;
      },
      [this] { fetchNextFormUpdate(); });
}

void FormUpdates::registerDefinition(const FormUpdate& definition) {
  const auto& [name, releaseDate, url] = definition;
  const std::string what = "form definition " + name;
  if (isRefused(what, {name, releaseDate, url})) return;
  if (!isWebAddress(toQString(url))) return refuse(what, "its address is not http or https");
  if (!hasFormUpdate(name)) insertFormUpdate(definition);
}

// --- one definition after another

void FormUpdates::fetchNextFormUpdate() {
  if (listIsCurrent_)
    requestFirst();
  else
    listUnretrieved();
}

void FormUpdates::listUnretrieved() {
  clearList();
  const auto definitions = std::make_shared<UnretrievedFormUpdates>();
  inSlices([this, definitions] { return listNext(*definitions); },
           [this] {
             listIsCurrent_ = true;
             requestFirst();
           });
}

bool FormUpdates::listNext(UnretrievedFormUpdates& definitions) {
  try {
    const auto definition = definitions.next();
    if (definition) list(*definition);
    return definition.has_value();
  } catch (const DatabaseError& error) {
    // Maintenance has come between two slices: the rows are gone, the database is open anew.
    if (error.number() != DatabaseError::kNotOpen) throw;
    listUnretrieved();
    return true;
  }
}

void FormUpdates::requestFirst() {
  while (first_ < list_.size() && !isWebAddress(toQString(list_[first_].url))) ++first_;
  if (first_ < list_.size()) {
    mode_ = kGetUpdate;
    return get(Inet3, toQString(list_[first_].url));
  }
  mode_.clear();
  listIsCurrent_ = false;
  endChain();
}

void FormUpdates::updateCompleted() {
  if (mode_ != kGetUpdate || first_ >= list_.size()) return;
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
    if (!rest_.empty()) refuse("the rest of " + list_[first_].name, "it cannot be read");
    return false;
  }
  if (const auto* form = std::get_if<FormRecord>(&*record)) return importForm(*form);
  return importField(std::get<FieldRecord>(*record));
}

bool FormUpdates::importForm(const FormRecord& form) {
  formId_.reset();
  const std::string what = "form " + form.name;
  if (isRefused(what, {form.name, form.description, form.formType})) return true;
  if (standsForNoLogin(form.name)) {
    refuse(what, "its name stands for no login");
    return true;
  }
  const Id id = nextSequenceValue("form_id");
  if (id == 0) return false;  // reported there
  insertForm({id, form.name, form.description, form.formType});
  formId_ = id;
  return true;
}

bool FormUpdates::importField(const FieldRecord& field) {
  if (!formId_) {
    refuse("field " + field.name, "its form has not been taken");
    return true;
  }
  if (isRefused("field " + field.name, {field.name, field.logicalNumber, field.searchString, field.suppliedByUser,
                                        field.prompt, field.fieldName, field.fieldValue}))
    return true;
  const Id id = nextSequenceValue("field_info_id");
  if (id == 0) return false;
  insertFormField({id, *formId_, field.name, field.logicalNumber, field.searchString, field.suppliedByUser != "no",
                   field.prompt, field.fieldName, field.fieldValue});
  return true;
}

void FormUpdates::markRetrieved() {
  // The list as it would be read anew, without reading ten thousand rows ten thousand times.
  if (markFormUpdateRetrieved(list_[first_].name) > 1)
    listIsCurrent_ = false;
  else
    takeOff(first_);
  fetchNextFormUpdate();
}

}  // namespace mv
