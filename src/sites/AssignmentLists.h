// The pairs of lists of the site editor: what could be assigned to the site, and what is. Buttons between them move the
// selected rows. Nothing is stored before the editor saves the assigned side.
#pragma once

#include <QWidget>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/ListView.h"
#include "sites/SiteStore.h"

class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace mv {

class AssignmentLists : public QWidget {
  Q_OBJECT
 public:
  // Neither direction can be chosen until a list has been entered.
  void disableMoves();

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
  struct Texts {
    const char* column;
    const char* availableName;
    const char* availableTitle;
    const char* availableTip;
    const char* assignedName;
    const char* assignedTitle;
    const char* assignedTip;
    ButtonTexts toAssigned;
    ButtonTexts toAvailable;
    ButtonTexts create;
    const char* createCaption;
  };
  // `assignedHidden`: titles of the assigned list's columns that the user does not see, after the identifier.
  AssignmentLists(const Texts& texts, const std::vector<const char*>& assignedHidden);

  // Where a subclass adds what it has below the lists.
  QVBoxLayout& rows() { return *rows_; }
  ListView& available() { return *available_; }
  ListView& assigned() { return *assigned_; }
  const ListView& assigned() const { return *assigned_; }
  QPushButton& toAvailableButton() { return *toAvailable_; }
  QPushButton& createButton() { return *create_; }

  virtual void moveToAssigned() = 0;
  virtual void moveToAvailable() = 0;

  static constexpr int kNameColumn = 0;
  static constexpr int kIdColumn = 1;

 private:
  ListView* makeList(const char* name, const char* toolTip, const char* column, const std::vector<const char*>& hidden);
  QPushButton* makeButton(const ButtonTexts& texts, const QString& caption);
  QWidget* titled(const char* title, ListView* list);
  void connectAll();
  void allowMove(bool toAssigned);

  QVBoxLayout* rows_;
  ListView* available_;
  ListView* assigned_;
  QPushButton* toAssigned_;
  QPushButton* toAvailable_;
  QPushButton* create_;
};

// Tab "Filetypes". Both lists stay in order of the names.
class FileTypeLists : public AssignmentLists {
  Q_OBJECT
 public:
  FileTypeLists();

  // Rebuild both lists from the database. Raise DatabaseError, and leave the lists as they were.
  void buildForNewSite();
  void buildForSite(std::int32_t siteId);
  // In list order.
  std::vector<std::int64_t> assignedIds() const;
  // Below the lists. Raises DatabaseError.
  void showDescription(std::int64_t fileTypeId);

 Q_SIGNALS:
  void typeChosen(std::int64_t fileTypeId);

 protected:
  void moveToAssigned() override;
  void moveToAvailable() override;

 private:
  void build(const std::vector<NamedId>& assignedTypes);

  QLineEdit* txtFiletypeDescription_;
};

// Opens the editor of a new filter. The site editor's button is disabled while none is installed.
void setNewFilterOpener(std::function<void()> opener);
const std::function<void()>& newFilterOpener();

// Tab "Filters". The assigned side also shows the global filters, which apply to every site and cannot be moved.
class FilterLists : public AssignmentLists {
  Q_OBJECT
 public:
  FilterLists();

  // Rebuild from the database. For a new site the assigned side stays as it is. Raise DatabaseError, and leave the
  // lists as they were.
  void buildForNewSite();
  void buildForSite(std::int32_t siteId);
  // Identifier and "Global" text of every assigned row, in list order.
  std::vector<std::pair<std::int64_t, std::string>> assignedIdsAndGlobal() const;

 protected:
  void moveToAssigned() override;
  void moveToAvailable() override;

 private:
  void showAvailable(const std::vector<SiteFilter>& filters);
  bool isGlobal(int row) const;
};

}  // namespace mv
