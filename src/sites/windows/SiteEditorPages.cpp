#include "SiteEditorPages.h"

#include "base/Text.h"
#include "store/SiteDerivations.h"
#include "transfer/SiteLocation.h"
#include "ui_AutoScanPage.h"
#include "ui_DomainHoppingPage.h"
#include "ui_OtherPage.h"
#include "ui_PathsPage.h"
#include "ui_RequiredInfoPage.h"

namespace mv {

namespace {

// Than http and https, which a location's address is without.
bool hasOtherScheme(const SiteLocation& location) {
  const auto scheme = location.address().find("://");
  return scheme != std::string::npos && location.address().find('/') == scheme + 1;
}

}  // namespace

// --- Required Info

RequiredInfoPage::RequiredInfoPage(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::RequiredInfoPage>()) {
  ui_->setupUi(this);
  connect(ui_->txtURL, &QLineEdit::textChanged, this, &RequiredInfoPage::showHint);
  for (const EntryBox* box : limitBoxes()) connect(box, &QLineEdit::textChanged, this, &RequiredInfoPage::limitChanged);
}

RequiredInfoPage::~RequiredInfoPage() = default;

QLineEdit* RequiredInfoPage::locationBox() const { return ui_->txtURL; }

std::array<EntryBox*, 4> RequiredInfoPage::limitBoxes() const {
  return {ui_->txtUpperLimit, ui_->txtLowerLimit, ui_->txtPagesToScan, ui_->txtFilesToDownload};
}

QWidget* RequiredInfoPage::emptyLimit() const {
  for (EntryBox* box : limitBoxes())
    if (box->text().isEmpty()) return box;
  return nullptr;
}

void RequiredInfoPage::showSite(const Site& site) {
  ui_->txtURL->setText(toQString(site.name));
  ui_->txtUpperLimit->setText(QString::number(site.upperLimit));
  ui_->txtLowerLimit->setText(QString::number(site.lowerLimit));
  ui_->txtPagesToScan->setText(QString::number(site.pagesToScan));
  ui_->txtFilesToDownload->setText(QString::number(site.filesToDownload));
}

void RequiredInfoPage::takeSite(Site& site) {
  const std::string typed = toUtf8(ui_->txtURL->text());
  if (const std::string location = siteLocation(typed); location != typed) ui_->txtURL->setText(toQString(location));
  site.name = toUtf8(ui_->txtURL->text());
  site.upperLimit = ui_->txtUpperLimit->text().toLongLong();
  site.lowerLimit = ui_->txtLowerLimit->text().toLongLong();
  site.pagesToScan = ui_->txtPagesToScan->text().toLongLong();
  site.filesToDownload = ui_->txtFilesToDownload->text().toLongLong();
}

void RequiredInfoPage::setOtherSites(const std::vector<std::string>& names) {
  otherSites_ = {names.begin(), names.end()};
  showHint(ui_->txtURL->text());
}

void RequiredInfoPage::showHint(const QString& typed) {
  const SiteLocation location(toUtf8(typed));
  QString hint;
  if (typed != typed.trimmed())
    hint = "There is a blank at the beginning or the end of the address.";
  else if (otherSites_.contains(siteLocation(toUtf8(typed))))
    hint = "Another web site has this address already.";
  else if (location.isHttps())
    hint = "With https:// the pages and files of this site come by https only.";
  else if (hasOtherScheme(location))
    hint = "Only addresses that begin with http:// or https://, or with neither, can be harvested.";
  ui_->lblURLHint->setText(hint);
}

// --- Paths

PathsPage::PathsPage(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::PathsPage>()) {
  ui_->setupUi(this);
  connect(ui_->cmdBrowse, &QPushButton::clicked, this, &PathsPage::browseWanted);
  connect(ui_->cmdOpenPathManager, &QPushButton::clicked, this, &PathsPage::managerWanted);
}

PathsPage::~PathsPage() = default;

QLineEdit* PathsPage::folderBox() const { return ui_->txtDefaultPath; }

void PathsPage::showSite(const Site& site) {
  ui_->txtDefaultPath->setText(toQString(site.downloadPath));
  ui_->optPathUniqueNames->setChecked(site.uniqueNames);
  ui_->txtPathsBaseName->setText(toQString(site.baseName));
}

void PathsPage::takeSite(Site& site) const {
  site.downloadPath = toUtf8(ui_->txtDefaultPath->text());
  site.uniqueNames = ui_->optPathUniqueNames->isChecked();
  site.baseName = siteBaseName(toUtf8(ui_->txtPathsBaseName->text()));
}

// --- AutoScan

AutoScanPage::AutoScanPage(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::AutoScanPage>()) {
  ui_->setupUi(this);
}

AutoScanPage::~AutoScanPage() = default;

void AutoScanPage::showSite(const Site& site) { ui_->chkAutoScan->setChecked(site.autoScan); }

void AutoScanPage::takeSite(Site& site) const { site.autoScan = ui_->chkAutoScan->isChecked(); }

// --- Domain Hopping

DomainHoppingPage::DomainHoppingPage(QWidget* parent)
    : QWidget(parent), ui_(std::make_unique<Ui::DomainHoppingPage>()) {
  ui_->setupUi(this);
}

DomainHoppingPage::~DomainHoppingPage() = default;

void DomainHoppingPage::showSite(const Site& site) { ui_->txtHops->setText(QString::number(site.hops)); }

void DomainHoppingPage::takeSite(Site& site) {
  if (ui_->txtHops->text().isEmpty()) ui_->txtHops->setText("0");
  site.hops = siteHops(toUtf8(ui_->txtHops->text()));
}

// --- Other

OtherPage::OtherPage(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::OtherPage>()) {
  ui_->setupUi(this);
  connect(ui_->cmdClearCache, &QPushButton::clicked, this, &OtherPage::clearWanted);
}

OtherPage::~OtherPage() = default;

void OtherPage::showSite(const Site& site) { ui_->chkAlternateMatchPath->setChecked(site.alternateMatchPath); }

void OtherPage::takeSite(Site& site) const { site.alternateMatchPath = ui_->chkAlternateMatchPath->isChecked(); }

void OtherPage::markCleared() {
  ui_->cmdClearCache->setText("Cleared");
  ui_->cmdClearCache->setEnabled(false);
}

}  // namespace mv
