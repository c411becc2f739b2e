// The filter editor: name, description, whether the filter is global, and its rules. The opener chooses the caption of
// an existing one.
#pragma once

#include <memory>
#include <vector>

#include "windows/RecordEditor.h"

namespace mv {

struct Filter;
namespace Ui {
class frmNewFilter;
}

class frmNewFilter : public RecordEditor {
  Q_OBJECT
 public:
  frmNewFilter();
  ~frmNewFilter() override;

  Id& FilterId = RecordId;
  QString FilterName;  // as last saved

  // "rules" fills the list of all rules, "filterrules" that of the filter's own; other words do nothing. Raises
  // DatabaseError.
  void buildWorkingLists(const std::string& command, long id = 0) override;
  // "available", "assigned": the button that moves rows out of that list is enabled when the list has any. "bothoff":
  // neither is. "global": the check box shows what the record says.
  void setButtons(const std::string& command);

 protected:
  void initWindow() override;
  void loadRecord() override;
  Checks checks(Choice choice) const override;
  void insertRecord() override;
  bool updateRecord() override;
  void deleteRecord() override;
  void recordChanged() override;
  void activated() override;

 private:
  void rebuildLists();
  void rowsMoved();
  void openNewRule();
  Filter record() const;
  // The assigned rules that there still are.
  std::vector<Id> rules();

  std::unique_ptr<Ui::frmNewFilter> ui_;
  bool global_ = false;
};

}  // namespace mv
