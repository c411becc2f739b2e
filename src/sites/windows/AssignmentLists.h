// The pairs of lists of the site editor: file types and filters.
#pragma once

#include <vector>

#include "store/SiteStore.h"
#include "windows/ListPair.h"

class QLineEdit;

namespace mv {

// Tab "Filetypes". Both lists stay in order of the names.
class FileTypeLists : public ListPair {
  Q_OBJECT
 public:
  FileTypeLists();

  // Rebuild both lists from the database. Raise DatabaseError, and leave the lists as they were.
  void buildForNewSite();
  void buildForSite(Id siteId);
  // Below the lists. Raises DatabaseError.
  void showDescription(Id fileTypeId);

 Q_SIGNALS:
  void typeChosen(Id fileTypeId);

 private:
  void build(const std::vector<NamedId>& assignedTypes);

  QLineEdit* txtFiletypeDescription_;
};

// Tab "Filters". The assigned side also shows the global filters, which apply to every site and cannot be moved.
class FilterLists : public ListPair {
  Q_OBJECT
 public:
  FilterLists();

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
};

}  // namespace mv
