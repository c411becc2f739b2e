// The plain tabs of the site editor. Each shows its part of a site and takes it back from its controls; what they have
// before a site is shown is that of a new site. A page scrolls where its window is too small for it.
#pragma once

#include <QWidget>
#include <array>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "store/SiteStore.h"

class QLineEdit;

namespace mv {

class EntryBox;

namespace Ui {
class AutoScanPage;
class DomainHoppingPage;
class OtherPage;
class PathsPage;
class RequiredInfoPage;
}  // namespace Ui

// "Required Info": the location and the four limits.
class RequiredInfoPage : public QWidget {
  Q_OBJECT
 public:
  explicit RequiredInfoPage(QWidget* parent = nullptr);
  ~RequiredInfoPage() override;

  void showSite(const Site& site);
  // Writes the location in its box as it is stored.
  void takeSite(Site& site);

  QLineEdit* locationBox() const;
  // The first limit box that is empty, nullptr when none is.
  QWidget* emptyLimit() const;
  // The locations of the other sites, which the line below the location box speaks of.
  void setOtherSites(const std::vector<std::string>& names);

 Q_SIGNALS:
  void limitChanged(const QString& text);

 private:
  std::array<EntryBox*, 4> limitBoxes() const;
  void showHint(const QString& typed);

  std::unique_ptr<Ui::RequiredInfoPage> ui_;
  std::unordered_set<std::string> otherSites_;
};

// "Paths": the default folder, unique file names, the way to the path manager.
class PathsPage : public QWidget {
  Q_OBJECT
 public:
  explicit PathsPage(QWidget* parent = nullptr);
  ~PathsPage() override;

  void showSite(const Site& site);
  void takeSite(Site& site) const;
  QLineEdit* folderBox() const;

 Q_SIGNALS:
  void browseWanted();
  void managerWanted();

 private:
  std::unique_ptr<Ui::PathsPage> ui_;
};

class AutoScanPage : public QWidget {
  Q_OBJECT
 public:
  explicit AutoScanPage(QWidget* parent = nullptr);
  ~AutoScanPage() override;

  void showSite(const Site& site);
  void takeSite(Site& site) const;

 private:
  std::unique_ptr<Ui::AutoScanPage> ui_;
};

class DomainHoppingPage : public QWidget {
  Q_OBJECT
 public:
  explicit DomainHoppingPage(QWidget* parent = nullptr);
  ~DomainHoppingPage() override;

  void showSite(const Site& site);
  // Writes 0 into an empty box.
  void takeSite(Site& site);

 private:
  std::unique_ptr<Ui::DomainHoppingPage> ui_;
};

// "Other": the way of building addresses, the link cache.
class OtherPage : public QWidget {
  Q_OBJECT
 public:
  explicit OtherPage(QWidget* parent = nullptr);
  ~OtherPage() override;

  void showSite(const Site& site);
  void takeSite(Site& site) const;
  // The cache has been cleared, for the rest of the window's life.
  void markCleared();

 Q_SIGNALS:
  void clearWanted();

 private:
  std::unique_ptr<Ui::OtherPage> ui_;
};

}  // namespace mv
