// The rules of a filter beside all the others, in the filter editor.
#pragma once

#include <memory>

#include "store/Id.h"
#include "windows/ListPair.h"

namespace mv {

namespace Ui {
class RuleLists;
}

class RuleLists : public ListPair {
  Q_OBJECT
 public:
  explicit RuleLists(QWidget* parent = nullptr);
  ~RuleLists() override;

  // Fills the available side with every rule. Raises DatabaseError, and leaves the list as it was.
  void buildAvailable();
  // Fills the assigned side with the stored rules of a filter. The same.
  void buildAssigned(Id filterId);
  // Brings the assigned side up to date without asking which rules are stored: rules deleted meanwhile go, renamed ones
  // show their new name. Raises DatabaseError.
  void refreshAssigned();
  // Takes the assigned rules off the available side.
  void hideAssigned();

  bool hasAvailable() const { return available().rowCount() > 0; }
  bool hasAssigned() const { return assigned().rowCount() > 0; }
  void allowMoveToAssigned(bool allowed);
  void allowMoveToAvailable(bool allowed);

 private:
  std::unique_ptr<Ui::RuleLists> ui_;
};

}  // namespace mv
