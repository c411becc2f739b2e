// New login form definitions from the update server: the overview lists what there is, `form_def_update` keeps which
// are known, and every one that is not yet retrieved is fetched and imported, one after another.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "help/FeedChain.h"
#include "help/FeedParsers.h"
#include "store/Id.h"

namespace mv {

class FormUpdates : public FeedChain {
  Q_OBJECT
 public:
  explicit FormUpdates(QObject* parent);

  // Starts the whole check, anew when one is under way. Returns at once.
  void getFormUpdates();
  // Fetches the first definition that is not yet retrieved; ends the chain when there is none. Raises DatabaseError.
  void fetchNextFormUpdate();

  InternetTransfer Inet2{0, this};  // the overview
  InternetTransfer Inet3{0, this};  // one definition

 Q_SIGNALS:
  // The list of the definitions at hand, for whoever shows it: emptied, one more at its end, the one of a row (from 0)
  // taken off.
  void listCleared();
  void definitionListed(const mv::FormUpdate& definition);
  void definitionTakenOff(int row);

 private:
  void clearList();
  void list(const FormUpdate& definition);
  void takeOff(std::size_t row);

  void overviewCompleted();
  bool listDefinition(std::string_view line);
  void registerDefinitions();
  void registerDefinition(const FormUpdate& definition);

  void listUnretrieved();
  bool listNext(UnretrievedFormUpdates& definitions);
  void requestFirst();

  void updateCompleted();
  bool importSome();
  bool importRecord();
  bool importForm(const FormRecord& form);
  bool importField(const FieldRecord& field);
  void markRetrieved();

  std::deque<FormUpdate> list_;
  std::string mode_;  // "getOverview", "getUpdate", or "" when the chain has ended
  std::string update_;
  std::string_view rest_;       // what of update_ is still to be imported
  std::optional<Id> formId_;    // of the form that the next fields belong to
  bool listIsCurrent_ = false;  // the list holds what is not yet retrieved
  std::size_t first_ = 0;       // its first row whose address can be fetched
};

}  // namespace mv
