// The plain tabs of the site editor: their controls and fixed texts, without behaviour beyond the typing rules. A page
// scrolls where its window is too small for it.
#pragma once

#include <QWidget>
#include <array>
#include <set>
#include <string>

class QCheckBox;
class QLineEdit;
class QPushButton;

namespace mv {

class ElidedLabel;
class EntryBox;

// "Required Info": the location and the four limits.
class RequiredInfoPage : public QWidget {
 public:
  RequiredInfoPage();

  std::array<EntryBox*, 4> limitBoxes() const;
  // The first limit box that is empty, nullptr when none is.
  QWidget* emptyLimit() const;
  // The locations of the other sites, which the line below the location box speaks of.
  void setOtherSites(std::set<std::string> names);

  EntryBox* txtURL;
  EntryBox* txtUpperLimit;
  EntryBox* txtLowerLimit;
  EntryBox* txtPagesToScan;
  EntryBox* txtFilesToDownload;

 private:
  void showHint(const QString& typed);

  ElidedLabel* lblURLHint_;
  std::set<std::string> otherSites_;
};

// "Paths": the default folder, unique file names, the way to the path manager.
class PathsPage : public QWidget {
 public:
  PathsPage();

  QLineEdit* txtDefaultPath;
  QPushButton* cmdBrowse;
  QCheckBox* optPathUniqueNames;
  EntryBox* txtPathsBaseName;
  QPushButton* cmdOpenPathManager;

 private:
  QWidget* makeUniqueNames();
  QWidget* makePathManagement();
};

class AutoScanPage : public QWidget {
 public:
  AutoScanPage();
  QCheckBox* chkAutoScan;
};

class DomainHoppingPage : public QWidget {
 public:
  DomainHoppingPage();
  EntryBox* txtHops;
};

// "Other": the way of building addresses, the link cache.
class OtherPage : public QWidget {
 public:
  OtherPage();
  QCheckBox* chkAlternateMatchPath;
  QPushButton* cmdClearCache;

 private:
  QWidget* makePathMatching();
  QWidget* makeLinkCache();
};

}  // namespace mv
