// New login form definitions from the update server: the overview lists what there is, `form_def_update` keeps which
// are known, and every one that is not yet retrieved is fetched and imported, one after another.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "help_windows/FeedChain.h"

namespace mv {

class ListView;
class Recordset;
struct FieldRecord;
struct FormRecord;

class FormUpdates : public FeedChain {
  Q_OBJECT
 public:
  // `lvwOverview` is filled with the definitions at hand: name, release date, address. Neither is owned.
  FormUpdates(UpdatePanel& panel, ListView& lvwOverview, QObject* parent);

  // Starts the whole check, anew when one is under way. Returns at once.
  void getFormUpdates();
  // Fetches the first definition that is not yet retrieved; hides the panel when there is none. Raises DatabaseError.
  void fetchNextFormUpdate();

  InternetTransfer Inet2{0, this};  // the overview
  InternetTransfer Inet3{0, this};  // one definition

 private:
  void overviewCompleted();
  bool listDefinition(std::string_view line);
  void registerDefinitions();
  void registerDefinition(int row);

  void listUnretrieved();
  bool listNext(Recordset& rows);
  void requestFirst();

  void updateCompleted();
  bool importSome();
  bool importRecord();
  bool importForm(const FormRecord& form);
  bool importField(const FieldRecord& field);
  void markRetrieved();
  QString listed(int column) const;

  ListView& lvwOverview_;
  std::string mode_;  // "getOverview", "getUpdate", or "" when the chain has ended
  std::string update_;
  std::string_view rest_;               // what of update_ is still to be imported
  std::optional<std::int32_t> formId_;  // of the form that the next fields belong to
  bool listIsCurrent_ = false;          // the list holds what is not yet retrieved
  int first_ = 0;                       // its first row whose address can be fetched
};

}  // namespace mv
