#include "sites_windows/frmNew.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "AssignmentLists.h"
#include "LoginFormFields.h"
#include "SiteEditorPages.h"
#include "app/Events.h"
#include "app/Settings.h"
#include "base/Text.h"
#include "catalog/clsPath.h"
#include "catalog_windows/frmFileTypeChild.h"
#include "catalog_windows/frmNewFilter.h"
#include "catalog_windows/frmSitePaths.h"
#include "desktop/Dialogs.h"
#include "store/SiteDerivations.h"
#include "windows/EntryBox.h"
#include "windows/PageTabs.h"
#include "windows/ScrollingPage.h"

namespace mv {

namespace {

constexpr int kWidth = 7050;   // twips
constexpr int kHeight = 4800;  // twips

QWidget* scrolling(QWidget* content) {
  auto* page = new QWidget;
  (new QVBoxLayout(makeScrollingPage(page)))->addWidget(content);
  return page;
}

std::set<std::string> namesOfOthers(Id siteId) {
  std::set<std::string> names;
  for (const SiteListRow& site : listSites())
    if (site.id != siteId) names.insert(site.name);
  return names;
}

}  // namespace

frmNew::frmNew()
    : RecordEditor({.caption = "New Web Site",
                    .width = kWidth,
                    .height = kHeight,
                    .windowName = "frmNew",
                    .record = "web site",
                    .sequence = "site_id"}) {
  buildPages();

  auto* requiredTabs = new PageTabs("SSTab1", this);
  requiredTabs->addTab(required_, "Required Info");
  requiredTabs->addTab(makeOptionalTabs(), "Optional Info");

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  layout->addWidget(requiredTabs, 1);
  layout->addLayout(makeButtons("cmdOK", "cmdApply", "cmdCancel", "OK", "&Cancel"));
  connectPages();
  startIn(required_->txtURL);
}

void frmNew::buildPages() {
  required_ = new RequiredInfoPage;
  login_ = new LoginFormFields;
  fileTypes_ = new FileTypeLists;
  filters_ = new FilterLists;
  paths_ = new PathsPage;
  autoScan_ = new AutoScanPage;
  hopping_ = new DomainHoppingPage;
  other_ = new OtherPage;
}

QTabWidget* frmNew::makeOptionalTabs() {
  auto* tabs = new PageTabs("SSTab2");
  tabs->addTab(login_, "Authentication");
  tabs->addTab(scrolling(fileTypes_), "Filetypes");
  tabs->addTab(scrolling(filters_), "Filters");
  tabs->addTab(paths_, "Paths");
  tabs->addTab(autoScan_, "AutoScan");
  tabs->addTab(hopping_, "Domain Hopping");
  tabs->addTab(other_, "Other");
  return tabs;
}

void frmNew::connectPages() {
  for (const EntryBox* box : required_->limitBoxes())
    connect(box, &QLineEdit::textChanged, this,
            [this](const QString& text) { okButton().setEnabled(!text.isEmpty()); });
  for (ListPair* lists : {static_cast<ListPair*>(fileTypes_), static_cast<ListPair*>(filters_)})
    connect(lists, &ListPair::moved, this, [this] { assignmentsChanged_ = true; });
  const auto onClick = [this](const QPushButton* button, void (frmNew::*work)()) {
    connect(button, &QPushButton::clicked, this, [this, work] { run([&] { (this->*work)(); }); });
  };
  onClick(paths_->cmdBrowse, &frmNew::browse);
  onClick(paths_->cmdOpenPathManager, &frmNew::openPathManager);
  onClick(other_->cmdClearCache, &frmNew::clearCache);
  connect(fileTypes_, &FileTypeLists::typeChosen, this,
          [this](Id id) { run([&] { fileTypes_->showDescription(id); }); });
  connect(login_, &LoginFormFields::entryChosen, this, [this](int entry) { run([&] { login_->choose(entry); }); });
  connect(fileTypes_, &ListPair::newWanted, this, [this] { run([this] { openNewFileType(); }); });
  connect(filters_, &ListPair::newWanted, this, [this] { run([this] { openNewFilter(); }); });
}

// --- loading

void frmNew::initWindow() {
  RecordEditor::initWindow();
  required_->setOtherSites(namesOfOthers(SiteID));
  if (isNew()) showDefaults();
  fileTypes_->disableMoves();
}

void frmNew::showDefaults() {
  rebuildAssignments();
  login_->buildForms();
  paths_->txtDefaultPath->setText(toQString(gDownloadFolder));
  autoScan_->chkAutoScan->setChecked(true);
}

void frmNew::loadRecord() {
  listed_ = true;
  if (const auto site = loadSite(SiteID)) showSite(*site);
  rebuildAssignments();
  login_->buildForms();
  login_->loadSite(SiteID);
}

void frmNew::showSite(const Site& site) {
  required_->txtURL->setText(toQString(site.name));
  required_->txtUpperLimit->setText(QString::number(site.upperLimit));
  required_->txtLowerLimit->setText(QString::number(site.lowerLimit));
  required_->txtPagesToScan->setText(QString::number(site.pagesToScan));
  required_->txtFilesToDownload->setText(QString::number(site.filesToDownload));
  paths_->txtDefaultPath->setText(toQString(site.downloadPath));
  paths_->optPathUniqueNames->setChecked(site.uniqueNames);
  paths_->txtPathsBaseName->setText(toQString(site.baseName));
  autoScan_->chkAutoScan->setChecked(site.autoScan);
  other_->chkAlternateMatchPath->setChecked(site.alternateMatchPath);
  hopping_->txtHops->setText(QString::number(site.hops));
}

void frmNew::activated() {
  RecordEditor::activated();
  rebuildAssignments();
}

void frmNew::rebuildAssignments() {
  if (isNew()) {
    fileTypes_->buildForNewSite();
    filters_->buildForNewSite();
  } else {
    fileTypes_->buildForSite(SiteID);
    filters_->buildForSite(SiteID);
  }
}

// --- OK, Apply, Cancel

RecordEditor::Checks frmNew::checks(Choice choice) const {
  const bool noLocation = required_->txtURL->text().isEmpty();
  Checks all;
  if (choice == Choice::Ok)
    all = {
        {noLocation, "URL Not Entered", "Please click the Required Information tab and enter a URL", required_->txtURL},
        {paths_->txtDefaultPath->text().isEmpty(), "Default Path Not Defined",
         "Please click the Optional Information tab, \r\nthen click the Paths tab and enter a Default Path",
         paths_->txtDefaultPath}};
  else
    all = {{noLocation, "Error", "Please enter a URL", required_->txtURL}};
  if (QWidget* emptyLimit = required_->emptyLimit())
    all.push_back({true, "Error", "Please enter a value for " + emptyLimit->accessibleName(), emptyLimit});
  return all;
}

void frmNew::cancel() {
  if (!isCreator()) return;
  discardNewSite(SiteID);
  Q_EMIT events().siteTakenBack(SiteID);
}

// --- saving

Site frmNew::takeSite() {
  QLineEdit& url = *required_->txtURL;
  const std::string typed = toUtf8(url.text());
  if (const std::string location = siteLocation(typed); location != typed) url.setText(toQString(location));
  if (hopping_->txtHops->text().isEmpty()) hopping_->txtHops->setText("0");

  Site site;
  site.id = SiteID;
  site.name = toUtf8(url.text());
  site.upperLimit = required_->txtUpperLimit->text().toLongLong();
  site.lowerLimit = required_->txtLowerLimit->text().toLongLong();
  site.pagesToScan = required_->txtPagesToScan->text().toLongLong();
  site.filesToDownload = required_->txtFilesToDownload->text().toLongLong();
  site.downloadPath = toUtf8(paths_->txtDefaultPath->text());
  site.autoScan = autoScan_->chkAutoScan->isChecked();
  site.alternateMatchPath = other_->chkAlternateMatchPath->isChecked();
  site.hops = siteHops(toUtf8(hopping_->txtHops->text()));
  site.uniqueNames = paths_->optPathUniqueNames->isChecked();
  site.baseName = siteBaseName(toUtf8(paths_->txtPathsBaseName->text()));
  return site;
}

void frmNew::insertRecord() { insertSite(takeSite()); }

bool frmNew::updateRecord() { return updateSite(takeSite()); }

void frmNew::recordChanged() {
  writeAssignments();
  if (listed_)
    Q_EMIT events().siteEdited(SiteID);
  else
    Q_EMIT events().siteAdded(SiteID);
  listed_ = true;
  assignmentsChanged_ = false;
  SiteName = required_->txtURL->text();
}

void frmNew::sayGone() {
  showMessage(this, "Error", "This web site has been deleted. Nothing was saved.", MessageIcon::Exclamation);
}

void frmNew::writeAssignments() {
  saveSiteFileTypes(SiteID, fileTypes_->assignedIds());
  saveSiteFilters(SiteID, filters_->assignedFilters());
  saveSiteForm(SiteID, login_->chosenFormId());
  saveSiteFieldValues(SiteID, login_->fieldValues());
}

// --- the buttons on the pages

void frmNew::browse() {
  QLineEdit& box = *paths_->txtDefaultPath;
  FolderRequest request;
  request.title = "Add New Path";
  request.prompt = "Please select a folder to define a path.";
  request.statusText = "Path will be added to database.";
  request.initialFolder = box.text().isEmpty() ? toQString(gDownloadFolder) : box.text();
  request.owner = this;
  const auto folder = browseForFolder(request);
  if (!folder || isUnloaded()) return;
  box.setText(*folder);
  clsPath path;
  path.SiteID = SiteID;
  path.AddDefaultPathForSite(toUtf8(*folder));
}

void frmNew::clearCache() {
  clearLinkCache(SiteID);
  other_->cmdClearCache->setText("Cleared");
  other_->cmdClearCache->setEnabled(false);
}

void frmNew::mustSaveFirst(const QString& title, const QString& text) {
  showMessage(this, title, text, MessageIcon::Information);
}

void frmNew::openNewFileType() {
  if (isNew()) {
    mustSaveFirst("Must save before adding new filetype", "Please click the Apply button before modifying filetypes.");
    return;
  }
  auto* editor = new frmFileTypeChild;
  editor->Mode = "new";
  editor->setCaption("New Filetype");
  editor->open();
}

void frmNew::openNewFilter() {
  if (isNew() || assignmentsChanged_) {
    mustSaveFirst("Must save before adding new filter", "Please click the Apply button before modifying filters.");
    return;
  }
  auto* editor = new frmNewFilter;
  editor->Mode = "new";
  editor->open();
}

void frmNew::openPathManager() {
  if (isNew() || assignmentsChanged_) {
    mustSaveFirst("Must save before modifying paths",
                  "Please click the Apply button before accessing the Path Manager");
    return;
  }
  auto* manager = new frmSitePaths;
  manager->SiteID = SiteID;
  manager->SiteName = SiteName;
  manager->open();
}

}  // namespace mv
