#include "sites_windows/frmNew.h"

#include <QLineEdit>

#include "app/Events.h"
#include "app/Settings.h"
#include "base/Text.h"
#include "catalog/clsPath.h"
#include "catalog_windows/frmFileTypeChild.h"
#include "catalog_windows/frmNewFilter.h"
#include "catalog_windows/frmSitePaths.h"
#include "desktop/Dialogs.h"
#include "store/SiteDerivations.h"
#include "ui_frmNew.h"
#include "windows/ClearingWait.h"

namespace mv {

namespace {

constexpr int kWidth = 7050;   // twips
constexpr int kHeight = 4800;  // twips

}  // namespace

frmNew::frmNew()
    : RecordEditor({.width = kWidth, .height = kHeight, .record = "web site", .sequence = "site_id"}),
      ui_(std::make_unique<Ui::frmNew>()) {
  ui_->setupUi(this);
  connectButtons(ui_->cmdOK, ui_->cmdApply, ui_->cmdCancel);
  connectPages();
  startIn(ui_->required->locationBox());
}

frmNew::~frmNew() = default;

void frmNew::connectPages() {
  connect(ui_->required, &RequiredInfoPage::limitChanged, this,
          [this](const QString& text) { ui_->cmdOK->setEnabled(!text.isEmpty()); });
  for (ListPair* lists : {static_cast<ListPair*>(ui_->fileTypes), static_cast<ListPair*>(ui_->filters)})
    connect(lists, &ListPair::moved, this, [this] { assignmentsChanged_ = true; });
  connect(ui_->paths, &PathsPage::browseWanted, this, [this] { run([this] { browse(); }); });
  connect(ui_->paths, &PathsPage::managerWanted, this, [this] { run([this] { openPathManager(); }); });
  connect(ui_->other, &OtherPage::clearWanted, this, [this] { run([this] { clearCache(); }); });
  connect(ui_->fileTypes, &FileTypeLists::typeChosen, this,
          [this](Id id) { run([&] { ui_->fileTypes->showDescription(id); }); });
  connect(ui_->login, &LoginFormFields::entryChosen, this,
          [this](int entry) { run([&] { ui_->login->choose(entry); }); });
  connect(ui_->fileTypes, &ListPair::newWanted, this, [this] { run([this] { openNewFileType(); }); });
  connect(ui_->filters, &ListPair::newWanted, this, [this] { run([this] { openNewFilter(); }); });
}

// --- loading

void frmNew::initWindow() {
  RecordEditor::initWindow();
  ui_->required->setOtherSites(listOtherSiteNames(SiteID));
  if (isNew()) showDefaults();
  ui_->fileTypes->disableMoves();
}

void frmNew::showDefaults() {
  ui_->login->buildForms();
  ui_->paths->folderBox()->setText(toQString(gDownloadFolder));
}

void frmNew::loadRecord() {
  listed_ = true;
  if (const auto site = loadSite(SiteID)) showSite(*site);
  ui_->login->buildForms();
  ui_->login->loadSite(SiteID);
}

void frmNew::showSite(const Site& site) {
  ui_->required->showSite(site);
  ui_->paths->showSite(site);
  ui_->autoScan->showSite(site);
  ui_->hopping->showSite(site);
  ui_->other->showSite(site);
}

// Opened, too.
void frmNew::activated() {
  RecordEditor::activated();
  rebuildAssignments();
}

void frmNew::rebuildAssignments() {
  if (isNew()) {
    ui_->fileTypes->buildForNewSite();
    ui_->filters->buildForNewSite();
  } else {
    ui_->fileTypes->buildForSite(SiteID);
    ui_->filters->buildForSite(SiteID);
  }
}

// --- OK, Apply, Cancel

RecordEditor::Checks frmNew::checks(Choice choice) const {
  QLineEdit* const url = ui_->required->locationBox();
  QLineEdit* const folder = ui_->paths->folderBox();
  Checks all;
  if (choice == Choice::Ok)
    all = {
        {url->text().isEmpty(), "URL Not Entered", "Please click the Required Information tab and enter a URL", url},
        {folder->text().isEmpty(), "Default Path Not Defined",
         "Please click the Optional Information tab, \r\nthen click the Paths tab and enter a Default Path", folder}};
  else
    all = {{url->text().isEmpty(), "Error", "Please enter a URL", url}};
  if (QWidget* emptyLimit = ui_->required->emptyLimit())
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
  Site site;
  site.id = SiteID;
  ui_->required->takeSite(site);
  ui_->paths->takeSite(site);
  ui_->autoScan->takeSite(site);
  ui_->hopping->takeSite(site);
  ui_->other->takeSite(site);
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
  SiteName = ui_->required->locationBox()->text();
}

void frmNew::sayGone() {
  showMessage(this, "Error", "This web site has been deleted. Nothing was saved.", MessageIcon::Exclamation);
}

void frmNew::writeAssignments() {
  saveSiteFileTypes(SiteID, ui_->fileTypes->assignedIds());
  saveSiteFilters(SiteID, ui_->filters->assignedFilters());
  saveSiteForm(SiteID, ui_->login->chosenFormId());
  saveSiteFieldValues(SiteID, ui_->login->fieldValues());
}

// --- the buttons on the pages

void frmNew::browse() {
  QLineEdit& box = *ui_->paths->folderBox();
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
  whenLinksAreCleared(this, [this] { ui_->other->markCleared(); });
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
