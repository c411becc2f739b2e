// The filter editor: name, description, whether the filter is global, and its rules. The opener chooses the caption.
#pragma once

#include <cstdint>

#include "windows/EditorWindow.h"

class QCheckBox;
class QLabel;
class QLineEdit;

namespace mv {

class EntryBox;
class RuleLists;

class frmNewFilter : public EditorWindow {
  Q_OBJECT
 public:
  frmNewFilter();

  // Set by the opener in mode "edit"; in mode "new" the editor draws the identifier.
  std::int64_t FilterId = 0;
  QString FilterName;  // as last saved

  // "rules" fills the list of all rules, "filterrules" that of the filter's own; other words do nothing. Raises
  // DatabaseError.
  void buildWorkingLists(const std::string& command, long id = 0) override;
  // "available", "assigned": the button that moves rows out of that list is enabled when the list has any. "bothoff":
  // neither is. "global": the check box shows what the record says.
  void setButtons(const std::string& command);

 protected:
  void initWindow() override;
  bool accept() override;
  void apply() override;
  void cancel() override;
  void activated() override;

 private:
  void buildFields();
  void loadFilter();
  void rebuildLists();
  void rowsMoved();
  void openNewRule();
  bool nameIsFilled(const QString& title);
  bool save();
  bool writeFilter();
  void writeFilterRow() const;
  void writeRules() const;

  EntryBox* txtFilterName_;
  QLineEdit* txtDescription_;
  QCheckBox* chkGlobal_;
  RuleLists* rules_;
  QLabel* lblId_;
  bool global_ = false;
  bool createdByApply_ = false;  // Cancel takes the filter back
};

}  // namespace mv
