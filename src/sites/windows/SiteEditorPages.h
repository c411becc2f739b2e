// The plain tabs of the site editor: their controls and fixed texts, without behaviour beyond the typing rules. A page
// scrolls where its window is too small for it.
#pragma once

#include <QWidget>
#include <array>

class QCheckBox;
class QLineEdit;
class QPushButton;

namespace mv {

class EntryBox;

// "Required Info": the location and the four limits.
class RequiredInfoPage : public QWidget {
 public:
  RequiredInfoPage();

  std::array<EntryBox*, 4> limitBoxes() const;
  // The label of the first limit box that is empty, "" when none is.
  QString emptyLimit() const;

  EntryBox* txtURL;
  EntryBox* txtUpperLimit;
  EntryBox* txtLowerLimit;
  EntryBox* txtPagesToScan;
  EntryBox* txtFilesToDownload;
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
