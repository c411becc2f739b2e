// The pairs of lists of the site editor: file types and filters.
#pragma once

#include <memory>
#include <vector>

#include "store/SiteStore.h"
#include "windows/ListPair.h"

namespace mv {

namespace Ui {
class FileTypeLists;
class FilterLists;
}  // namespace Ui

// Tab "Filetypes". Both lists stay in order of the names.
class FileTypeLists : public ListPair {
  Q_OBJECT
 public:
  explicit FileTypeLists(QWidget* parent = nullptr);
  ~FileTypeLists() override;

  // Rebuild both lists from the database. Raise DatabaseError, and leave the lists as they were.
  void buildForNewSite();
  void buildForSite(Id siteId);
  // Below the lists. Raises DatabaseError.
  void showDescription(Id fileTypeId);

 Q_SIGNALS:
  void typeChosen(Id fileTypeId);

 private:
  void build(const std::vector<NamedId>& assignedTypes);

  std::unique_ptr<Ui::FileTypeLists> ui_;
};

// Tab "Filters". The assigned side also shows the global filters, which apply to every site and cannot be moved.
class FilterLists : public ListPair {
  Q_OBJECT
 public:
  explicit FilterLists(QWidget* parent = nullptr);
  ~FilterLists() override;

  // Rebuild from the database. For a new site the assigned side stays as it is. Raise DatabaseError, and leave the
  // lists as they were.
  void buildForNewSite();
  void buildForSite(Id siteId);
  // The assigned side, in list order.
  std::vector<SiteFilter> assignedFilters() const;

 protected:
  void moveToAvailable() override;

 private:
  void showAvailable(const std::vector<SiteFilter>& filters);
  bool isGlobal(int row) const;

  std::unique_ptr<Ui::FilterLists> ui_;
};

}  // namespace mv
