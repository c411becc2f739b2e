// screenshots <folder>: harvests the bundled gallery with the program's own windows and writes pictures of them, for
// the README and the user guide.

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QIcon>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <cstdio>
#include <functional>

#include "app/Settings.h"
#include "catalog_windows/frmFileTypeChild.h"
#include "catalog_windows/frmFileTypeManager.h"
#include "catalog_windows/frmFilterManager.h"
#include "catalog_windows/frmNewFilter.h"
#include "catalog_windows/frmRuleManager.h"
#include "catalog_windows/frmSitePaths.h"
#include "desktop/Twips.h"
#include "download_windows/frmDownload.h"
#include "files/DiskSpace.h"
#include "forms_windows/frmFormManager.h"
#include "frmNewField.h"
#include "frmNewForm.h"
#include "frmNewRule.h"
#include "frmNewTag.h"
#include "gallery/Gallery.h"
#include "help_windows/frmHelp.h"
#include "help_windows/frmMessage.h"
#include "program/StartUp.h"
#include "scan_windows/frmScan.h"
#include "scan_windows/frmTagManager.h"
#include "shell/frmDownloadManager.h"
#include "shell/frmPictureViewer.h"
#include "shell/frmPreferences.h"
#include "shell/frmProcessManager.h"
#include "shell/frmSplash.h"
#include "sites_windows/frmNew.h"
#include "sites_windows/frmWebSites.h"
#include "testkit/Controls.h"
#include "testkit/EventLoop.h"
#include "testkit/ProgramRun.h"
#include "testkit/SiteRow.h"
#include "windows/frmPleaseWait.h"

namespace {

using namespace mv;
using namespace mvtest;

constexpr const char* kFolderShown = "/home/anna/Pictures/gallery";
constexpr int kPatienceMs = 60'000;
constexpr int kSlowTopicMs = 3000;
constexpr const char* kSlowTopic = "/feeds/topic13.txt";

QString target;

void save(QWidget* widget, const QString& name) {
  QTest::qWait(200);
  const QString path = target + '/' + name + ".png";
  std::printf("%s\n", qPrintable(path));
  if (!widget->grab().save(path)) std::fprintf(stderr, "%s cannot be written\n", qPrintable(path));
}

void save(ChildWindow* window, const QString& name) { save(window->parentWidget(), name); }

// One picture a tab, named after it.
void saveTabs(ChildWindow* window, const char* name, const QString& prefix) {
  auto& tabs = control<QTabWidget>(window, name);
  for (int i = 0; i < tabs.count(); ++i) {
    tabs.setCurrentIndex(i);
    save(window, prefix + tabs.tabText(i).toLower().replace(' ', '-'));
  }
}

bool arrives(const std::function<bool()>& condition) { return waitFor(condition, kPatienceMs); }

QRect frameOf(const ChildWindow* window) { return window->parentWidget()->geometry(); }

// Room for any arrangement, without scroll bars; fit() takes it away again.
void makeRoom(QWidget& window) {
  window.resize(1600, 1200);
  QTest::qWait(100);
}

// The main window just as large as its open windows need.
void fit(frmDownloadManager& window) {
  QRect used;
  for (const QMdiSubWindow* child : window.mdiArea().subWindowList())
    if (child->isVisible()) used |= child->geometry();
  window.resize(window.size() - window.mdiArea().viewport()->size() + QSize(used.right() + 1, used.bottom() + 1));
  QTest::qWait(100);
}

// The list above, the processes side by side, all as large as their contents need.
void arrange() {
  find<frmWebSites>()->setPlace({0, 0, 4500, 11400});
  const int top = pixelsToTwips(frameOf(find<frmWebSites>()).height());
  find<frmScan>()->setPlace({top, 0, kExpandedHeight, kProcessWidth});
  const int left = pixelsToTwips(frameOf(find<frmScan>()).width());
  find<frmDownload>()->setPlace({top, left, kExpandedHeight, kProcessWidth});
}

void harvest(frmDownloadManager& window) {
  makeRoom(window);
  for (ProcessWindow* process :
       {static_cast<ProcessWindow*>(find<frmScan>()), static_cast<ProcessWindow*>(find<frmDownload>())})
    if (process->DetailsCollapsed()) process->toggleDetails();
  arrange();
  fit(window);
  control<QTabWidget>(find<frmDownload>(), "SSTab1").setCurrentIndex(1);
  // In the middle of the work: some pages done, some waiting.
  arrives([] {
    return gDatabase.count(
               "select count(*) as outCount from link where status = \"Done\" and link_type = \"Document\"") >= 4;
  });
  window.splash().hide();
  save(&window, "harvest");
}

void siteEditor(mv::Id site) {
  auto* editor = new frmNew;
  editor->SiteID = site;
  editor->SiteName = "gallery.example";
  editor->Mode = "edit";
  editor->setCaption("Edit: gallery.example");
  editor->open();
  save(editor, "editor-required-info");
  control<QTabWidget>(editor, "SSTab1").setCurrentIndex(1);
  saveTabs(editor, "SSTab2", "editor-");
  editor->unload();
}

// The manager, and the editor of a new record as the site editor opens it.
template <class Manager, class Editor>
void managerAndEditor(const QString& name, const QString& caption) {
  auto* manager = showSingle<Manager>();
  save(manager, name + "-manager");
  click(manager, "New");
  find<Editor>()->setCaption(caption);
  save(find<Editor>(), name + "-editor");
}

void managers(mv::Id site) {
  managerAndEditor<frmFileTypeManager, frmFileTypeChild>("filetype", "New Filetype");
  managerAndEditor<frmTagManager, frmNewTag>("tag", "New Tag");
  auto* paths = new frmSitePaths;
  paths->SiteID = site;
  paths->SiteName = "gallery.example";
  paths->open();
  save(paths, "path-manager");
}

void storeLoginForm() {
  insert("form", {{"90", "Club page", "For members of the club: the name and the password of the membership card.",
                   "Authentication"}});
  insert(
      "field_info (id, form_id, name, logical_number, search_string, supplied_by_user, prompt, field_name, "
      "field_value)",
      {{"90", "90", "Address", "1", "action=\"/login\"", "no", "", "", "club.example/login"},
       {"91", "90", "Token", "2", "name=\"token\" value=", "no", "", "token", ""},
       {"92", "90", "Name", "3", "name=\"who\"", "yes", "Your name", "who", ""},
       {"93", "90", "Password", "4", "name=\"key\"", "yes", "Your password", "key", ""}});
}

void loginForms() {
  auto* manager = showSingle<frmFormManager>();
  auto& forms = control<ListView>(manager, "lvwForms");
  clickRow(forms, forms.findRow(0, "Club page"));
  save(manager, "form-manager");

  click(manager, "Edit");
  auto* form = find<frmNewForm>();
  save(form, "form-editor-general");
  control<QTabWidget>(form, "SSTab1").setCurrentIndex(1);
  clickRow(control<ListView>(form, "lvwFields"), 1);
  save(form, "form-editor-fields");
  click(form, "cmdEditField");
  save(find<frmNewField>(), "field-editor");
}

// A topic of the slow server is on its way, the message has come.
void onlineUpdates(frmDownloadManager& window, const TestSite& server) {
  for (ChildWindow* child : WindowRegistry::instance().windows()) child->hideChild();
  window.resize(790, 500);
  find<frmWebSites>()->showChild();
  find<frmWebSites>()->setPlace({0, 0, 4200, 6500});
  window.getFormUpdates();
  window.getHelp();
  arrives([&] { return server.requestCount(kSlowTopic) > 0; });
  window.getMessage();
  arrives([] { return find<frmMessage>() != nullptr; });
  find<frmMessage>()->setPlace({2000, 3200, 2805, 5430});
  save(&window, "online-updates");
  find<frmMessage>()->unload();
  arrives([&] { return !control<QWidget>(&window, "pictHelpUpdates").isVisible(); });
}

void help() {
  auto* window = new frmHelp;
  window->showChild();
  window->initWindow();
  auto& subjects = control<ListView>(window, "lvwSubjects");
  clickRow(subjects, subjects.findRow(0, "Web sites"));
  Q_EMIT control<QComboBox>(window, "cmboTopics").activated(0);
  save(window, "help");
  window->unload();
}

void preferences() {
  setFreeDiskSpace(std::uint64_t{120} << 30);
  auto* window = showSingle<frmPreferences>();
  control<QLineEdit>(window, "txtDBName").setText("/home/anna/Morvane2000/morvane2000.mdb");
  saveTabs(window, "SSTabPrefs", "preferences-");
  window->unload();
}

void maintenance(QWidget& mainWindow) {
  mainWindow.findChild<QAction*>("mnuToolsPictureViewer")->trigger();
  auto* viewer = find<frmPictureViewer>();
  viewer->setPlace({0, 0, 5400, 6600});
  click(viewer, "cmdPrevious");
  QTest::qWait(300);
  auto& path = control<QLineEdit>(viewer, "txtPicture");
  path.setText(QString(kFolderShown) + '/' + QFileInfo(path.text()).fileName());
  save(viewer, "picture-viewer");
  viewer->unload();
  auto* processes = showSingle<frmProcessManager>();
  save(processes, "process-manager");
  processes->unload();
  preferences();
  frmPleaseWait wait(&mainWindow);
  wait.setText("Compacting Morvane2000 database. Please wait...");
  wait.setPercent(40);
  wait.show();
  save(&wait, "please-wait");
}

void insertFilters(mv::Id site) {
  insert("rule", {{"1", "1", "1", "/banner", "", "Banners", "Contains"},
                  {"2", "2", "3", "gif", kFolderShown, "Small pictures", "Equals"},
                  {"3", "1", "1", "http://", "", "Other hosts", "Begins With"}});
  insert("filter", {{"1", "No advertising", "yes", "Banners of every site"},
                    {"2", "Large pictures only", "no", "No small pictures"},
                    {"3", "Stay at home", "no", "No links to other hosts"}});
  insert("filter_rule_xref", {{"1", "1"}, {"2", "2"}, {"3", "3"}, {"2", "1"}});
  insert("site_filter_xref", {{std::to_string(site), "2"}});
}

template <class Editor, class Manager>
Editor* edit(Manager* manager, const QString& record) {
  auto* list = manager->template findChild<ListView*>();
  clickRow(*list, list->findRow(0, record));
  click(manager, "Edit");
  return find<Editor>();
}

void filterWindows() {
  auto* rules = showSingle<frmRuleManager>();
  save(rules, "rule-manager");
  save(edit<frmNewRule>(rules, "Small pictures"), "rule-editor");
  auto* filters = showSingle<frmFilterManager>();
  save(filters, "filter-manager");
  save(edit<frmNewFilter>(filters, "Large pictures only"), "filter-editor");
}

// The two windows between which filters are dragged, alone in the main window, rows selected in both.
void filterDrag(frmDownloadManager& window) {
  auto* sites = find<frmWebSites>();
  auto* filters = find<frmFilterManager>();
  for (ChildWindow* other : WindowRegistry::instance().windows())
    if (other != sites && other != filters) other->hideChild();
  makeRoom(window);
  sites->setPlace({0, 0, 3600, 6500});
  filters->setPlace({0, pixelsToTwips(frameOf(sites).width()), 3600, 5500});
  sites->findChild<ListView*>()->selectAll();
  for (const int row : {0, 2}) filters->findChild<ListView*>()->setRowSelected(row, true);
  filters->showChild();
  fit(window);
  save(&window, "filter-drag");
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc != 2) {
    std::fprintf(stderr, "usage: screenshots <folder>\n");
    return 2;
  }
  QApplication application(argc, argv);
  QApplication::setApplicationName("Morvane2000");
  QApplication::setWindowIcon(QIcon(MORVANE_ICON));
  target = QString::fromLocal8Bit(argv[1]);

  TestSite gallery;
  fillGallery(gallery);
  gallery.add(kSlowTopic, {.type = "text/plain", .body = "13\nQuestions\nTopic\nText.\n", .delayMs = kSlowTopicMs});
  ProgramRun folder(argv[0]);
  folder.addAutoScanSite(gallery.host(), "10", "1", {"png", "jpg", "bmp"});
  useAsUpdateServer(gallery);
  const mv::Id site = folder.addAutoScanSite("gallery.example", "10", "24", {"png", "jpg", "bmp", "gif"});
  setSite(site, "auto_scan = \"no\", download_path = '" + std::string(kFolderShown) + "'");
  const std::string owner = std::to_string(site);
  insert("site_form_xref", {{owner, "20"}});
  insert("site_field_xref (site_id, field_id, field_value)", {{owner, "17", "anna"}, {owner, "18", "secret"}});
  storeLoginForm();
  insertFilters(site);
  gDatabase.close();

  StartUp startUp;
  if (!startUp.run(gProgramFolder)) return 1;
  harvest(*startUp.mainWindow());
  gDownloadFolder = kFolderShown;
  siteEditor(site);
  managers(site);
  loginForms();
  maintenance(*startUp.mainWindow());
  help();
  onlineUpdates(*startUp.mainWindow(), gallery);
  filterWindows();
  filterDrag(*startUp.mainWindow());
  startUp.mainWindow()->close();
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
