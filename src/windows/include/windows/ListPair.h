// A pair of lists: what could be assigned to a record, and what is. Buttons between them, a double click, Alt+Right and
// Alt+Left move the selected rows. Nothing is stored before the editor that owns the pair saves the assigned side.
#pragma once

#include <QWidget>
#include <cstdint>
#include <vector>

#include "desktop/ListView.h"

class QPushButton;

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
  using QWidget::QWidget;

  // What the subclass's form has of a pair.
  struct Controls {
    ListView* available;
    ListView* assigned;
    QPushButton* toAssigned;
    QPushButton* toAvailable;
    QPushButton* create;
  };
  // Makes them work. Both lists have the visible column and behind it the hidden identifier. `assignedHidden`: titles
  // of the assigned list's further columns that the user does not see.
  void connectControls(const Controls& controls, const QString& column, const QStringList& assignedHidden = {});

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
  void allowMove(bool toAssigned);

  ListView* available_ = nullptr;
  ListView* assigned_ = nullptr;
  QPushButton* toAssigned_ = nullptr;
  QPushButton* toAvailable_ = nullptr;
};

}  // namespace mv
