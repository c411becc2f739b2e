// The list of login form definitions, "Form Manager". The built-in ones can be neither edited nor deleted here.
#pragma once

#include "windows/ListWindow.h"

class QToolButton;

namespace mv {

// Where editors send "init" after they have saved.
inline constexpr const char* kFormManager = "Form Manager";

class frmFormManager : public ListWindow {
  Q_OBJECT
 public:
  frmFormManager();

  // "init" rebuilds the list, "cannotmodify" enables Edit and Delete unless a built-in form is chosen.
  void buildWorkingLists(const std::string& command, long id = 0) override;

 protected:
  void fillList() override;
  void openNew() override;
  void editChosen() override;
  void deleteChosen() override;

 private:
  QToolButton* edit_;
  QToolButton* delete_;
};

}  // namespace mv
