// A pair of lists: what could be assigned to a record, and what is. Buttons between them, a double click, Alt+Right and
// Alt+Left move the selected rows. Nothing is stored before the editor that owns the pair saves the assigned side.
#pragma once

#include <QWidget>
#include <cstdint>
#include <vector>

#include "desktop/ListView.h"

class QPushButton;
class QVBoxLayout;

namespace mv {

class ListPair : public QWidget {
  Q_OBJECT
 public:
  // Neither direction can be chosen until a list has been entered.
  void disableMoves();
  // The identifiers of the assigned side, in list order.
  std::vector<std::int64_t> assignedIds() const;

 Q_SIGNALS:
  // Rows were moved.
  void moved();
  // The button for a new record was pressed.
  void newWanted();

 protected:
  struct ButtonTexts {
    const char* name;
    const char* toolTip;
  };
  struct ListTexts {
    const char* name;
    const char* title;
    const char* toolTip = "";
    const char* labelName = "";
  };
  struct Texts {
    const char* column;
    ListTexts available;
    ListTexts assigned;
    ButtonTexts toAssigned;
    ButtonTexts toAvailable;
    ButtonTexts create;
    const char* createCaption;
  };
  // Both lists have the visible column and behind it the hidden identifier. `assignedHidden`: titles of the assigned
  // list's further columns that the user does not see.
  explicit ListPair(const Texts& texts, const std::vector<const char*>& assignedHidden = {});

  // Where a subclass adds what it has below the lists.
  QVBoxLayout& rows() { return *rows_; }
  ListView& available() { return *available_; }
  const ListView& available() const { return *available_; }
  ListView& assigned() { return *assigned_; }
  const ListView& assigned() const { return *assigned_; }
  QPushButton& toAssignedButton() { return *toAssigned_; }
  QPushButton& toAvailableButton() { return *toAvailable_; }

  virtual void moveToAssigned();
  virtual void moveToAvailable();

  static constexpr int kNameColumn = 0;
  static constexpr int kIdColumn = 1;

 private:
  ListView* makeList(const ListTexts& texts, const char* column, const std::vector<const char*>& hidden);
  QPushButton* makeButton(const ButtonTexts& texts, const QString& caption);
  QWidget* titled(const ListTexts& texts, ListView* list);
  void connectAll();
  void allowMove(bool toAssigned);

  QVBoxLayout* rows_;
  ListView* available_;
  ListView* assigned_;
  QPushButton* toAssigned_;
  QPushButton* toAvailable_;
  QPushButton* create_;
};

}  // namespace mv
