// Tab "Authentication" of the site editor: the login form of the site, and the user's values for up to five of its
// fields.
#pragma once

#include <QWidget>
#include <array>
#include <memory>
#include <vector>

#include "store/LoginForms.h"
#include "store/SiteStore.h"

class QLabel;
class QLineEdit;

namespace mv {

namespace Ui {
class LoginFormFields;
}

class LoginFormFields : public QWidget {
  Q_OBJECT
 public:
  explicit LoginFormFields(QWidget* parent = nullptr);
  ~LoginFormFields() override;

  // Fills the drop-down list with the login forms; none is chosen. Raises DatabaseError.
  void buildForms();
  // Chooses the site's form and shows the site's values. Raises DatabaseError.
  void loadSite(Id siteId);

  // Shows the prompts of an entry of the drop-down list. Raises DatabaseError.
  void choose(int entry);
  // 0 until a form is chosen.
  Id chosenFormId() const { return chosenFormId_; }
  // Field and value of every prompt, at most five.
  std::vector<SiteFieldValue> fieldValues() const;

 Q_SIGNALS:
  void entryChosen(int entry);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  static constexpr int kRows = 5;

  void loadPrompts(Id formId);
  void hideRows();
  void showRows();
  int shownPrompts() const;

  std::unique_ptr<Ui::LoginFormFields> ui_;
  std::vector<NamedId> forms_;  // the entries of the drop-down list
  Id chosenFormId_ = 0;
  std::vector<LoginPrompt> fieldInfo_;  // of the chosen form
  std::array<QLabel*, kRows> lblFieldName_;
  std::array<QLineEdit*, kRows> txtFieldName_;
};

}  // namespace mv
