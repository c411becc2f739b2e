// screenshots <folder>: harvests the bundled gallery with the program's own windows and writes pictures of them, for
// the README and the user guide.

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QIcon>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <algorithm>
#include <cstdio>
#include <functional>

#include "app/Settings.h"
#include "app/WindowRegistry.h"
#include "catalog/frmFileTypeChild.h"
#include "catalog/frmFileTypeManager.h"
#include "catalog/frmFilterManager.h"
#include "catalog/frmNewFilter.h"
#include "catalog/frmNewRule.h"
#include "catalog/frmRuleManager.h"
#include "catalog/frmSitePaths.h"
#include "demo/Feeds.h"
#include "demo/Gallery.h"
#include "download/frmDownload.h"
#include "forms/frmFormManager.h"
#include "forms/frmNewField.h"
#include "forms/frmNewForm.h"
#include "help/UpdatePanel.h"
#include "help/frmHelp.h"
#include "help/frmMessage.h"
#include "platform/ListView.h"
#include "platform/Shell.h"
#include "platform/Text.h"
#include "scan/frmNewTag.h"
#include "scan/frmScan.h"
#include "scan/frmTagManager.h"
#include "shell/StartUp.h"
#include "shell/frmDownloadManager.h"
#include "shell/frmPictureViewer.h"
#include "shell/frmPleaseWait.h"
#include "shell/frmPreferences.h"
#include "shell/frmProcessManager.h"
#include "shell/frmSplash.h"
#include "sites/frmNew.h"
#include "sites/frmWebSites.h"
#include "support/ProgramRun.h"

namespace {

using namespace mv;

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

QWidget* frameOf(ChildWindow* window) { return window->parentWidget(); }

template <class Window>
Window* find() {
  return WindowRegistry::instance().find<Window>();
}

// In twips, within the main window of the picture.
void arrange() {
  find<frmWebSites>()->setPlace({0, 0, 4800, 6600});
  find<frmScan>()->setPlace({0, 6700, 5175, 7400});
  find<frmDownload>()->setPlace({5250, 6700, 5175, 7400});
}

void harvest(frmDownloadManager& window) {
  window.resize(960, 740);
  QTest::qWait(100);
  for (ProcessWindow* process :
       {static_cast<ProcessWindow*>(find<frmScan>()), static_cast<ProcessWindow*>(find<frmDownload>())})
    if (process->DetailsCollapsed()) process->toggleDetails();
  arrange();
  find<frmDownload>()->findChild<QTabWidget*>("SSTab1")->setCurrentIndex(1);
  // In the middle of the work: some pages done, some waiting.
  QElapsedTimer clock;
  clock.start();
  while (gDatabase.count("select count(*) as outCount from link where status = \"Done\" and link_type = \"Document\"") <
             4 &&
         clock.elapsed() < kPatienceMs)
    QTest::qWait(100);
  window.splash().hide();
  save(&window, "harvest");
}

void siteEditor(std::int32_t site) {
  auto* editor = new frmNew;
  editor->SiteID = site;
  editor->SiteName = "gallery.example";
  editor->Mode = "edit";
  editor->setCaption("Edit: gallery.example");
  editor->open();
  save(frameOf(editor), "editor-required-info");
  editor->findChild<QTabWidget*>("SSTab1")->setCurrentIndex(1);
  auto* tabs = editor->findChild<QTabWidget*>("SSTab2");
  for (int i = 0; i < tabs->count(); ++i) {
    tabs->setCurrentIndex(i);
    save(frameOf(editor), "editor-" + tabs->tabText(i).toLower().replace(' ', '-'));
  }
  editor->unload();
}

void managers(std::int32_t site) {
  save(frameOf(showSingle<frmFileTypeManager>()), "filetype-manager");
  auto* fileType = new frmFileTypeChild;
  fileType->setCaption("New Filetype");
  fileType->open();
  save(frameOf(fileType), "filetype-editor");
  save(frameOf(showSingle<frmTagManager>()), "tag-manager");
  auto* tag = new frmNewTag;
  tag->setCaption("New Tag");
  tag->open();
  save(frameOf(tag), "tag-editor");
  auto* paths = new frmSitePaths;
  paths->SiteID = site;
  paths->SiteName = "gallery.example";
  paths->setCaption("Path Manager for: gallery.example");
  paths->open();
  save(frameOf(paths), "path-manager");
}

void storeLoginForm() {
  gDatabase.execute(
      "insert into form (id, name, description, form_type) values (90, \"Club page\", \"For members of the club: the "
      "name and the password of the membership card.\", \"Authentication\")");
  const std::vector<std::string> fields[] = {
      {"Address", "1", "action='/login'", "no", "", "", "club.example/login"},
      {"Token", "2", "name='token' value=", "no", "", "token", ""},
      {"Name", "3", "name='who'", "yes", "Your name", "who", ""},
      {"Password", "4", "name='key'", "yes", "Your password", "key", ""},
  };
  int id = 90;
  for (const auto& field : fields) {
    std::string values = std::to_string(id++) + ", 90";
    for (std::string value : field) {
      std::replace(value.begin(), value.end(), '\'', '"');
      values += ", " + mv::quoted(value);
    }
    gDatabase.execute(
        "insert into field_info (id, form_id, name, logical_number, search_string, supplied_by_user, prompt, "
        "field_name, field_value) values (" +
        values + ")");
  }
}

void loginForms() {
  auto* manager = showSingle<frmFormManager>();
  auto& forms = *manager->findChild<ListView*>("lvwForms");
  const int row = forms.findRow(0, "Club page");
  forms.setRowSelected(row, true);
  Q_EMIT forms.rowChosen(row);
  save(frameOf(manager), "form-manager");

  Q_EMIT forms.rowActivated(row);
  auto* form = find<frmNewForm>();
  save(frameOf(form), "form-editor-general");
  form->findChild<QTabWidget*>("SSTab1")->setCurrentIndex(1);
  auto& fields = *form->findChild<ListView*>("lvwFields");
  fields.setRowSelected(1, true);
  Q_EMIT fields.rowChosen(1);
  save(frameOf(form), "form-editor-fields");
  Q_EMIT fields.rowActivated(1);
  save(frameOf(find<frmNewField>()), "field-editor");
}

void waitFor(const std::function<bool()>& condition) { (void)QTest::qWaitFor(condition, kPatienceMs); }

// A topic of the slow server is on its way, the message has come.
void onlineUpdates(frmDownloadManager& window, const mvtest::TestSite& server) {
  for (ChildWindow* child : WindowRegistry::instance().windows()) child->hideChild();
  window.resize(720, 480);
  find<frmWebSites>()->showChild();
  find<frmWebSites>()->setPlace({0, 0, 4200, 6600});
  window.getFormUpdates();
  window.getHelp();
  waitFor([&] { return server.requestCount(kSlowTopic) > 0; });
  window.getMessage();
  waitFor([] { return find<frmMessage>() != nullptr; });
  find<frmMessage>()->setPlace({2000, 3200, 2805, 5430});
  save(&window, "online-updates");
  find<frmMessage>()->unload();
  const auto* panel = window.findChild<UpdatePanel*>("pictHelpUpdates");
  waitFor([&] { return !panel->isVisible(); });
}

void help() {
  auto* window = new frmHelp;
  window->showChild();
  window->initWindow();
  auto* subjects = window->findChild<ListView*>("lvwSubjects");
  const int row = subjects->findRow(0, "Web sites");
  subjects->setRowSelected(row, true);
  Q_EMIT subjects->rowChosen(row);
  Q_EMIT window->findChild<QComboBox*>("cmboTopics")->activated(0);
  save(frameOf(window), "help");
  window->unload();
}

void preferences() {
  setFreeDiskSpace(std::uint64_t{120} << 30);
  auto* window = showSingle<frmPreferences>();
  window->findChild<QLineEdit*>("txtDBName")->setText("/home/anna/Morvane2000/morvane2000.mdb");
  auto* tabs = window->findChild<QTabWidget*>("SSTabPrefs");
  for (int i = 0; i < tabs->count(); ++i) {
    tabs->setCurrentIndex(i);
    save(frameOf(window), "preferences-" + tabs->tabText(i).toLower());
  }
  window->unload();
}

void control(QWidget& mainWindow) {
  auto* viewer = showSingle<frmPictureViewer>();
  viewer->setPlace({0, 0, 5400, 6600});
  viewer->findChild<QPushButton*>("cmdPrevious")->click();
  QTest::qWait(300);
  auto* path = viewer->findChild<QLineEdit*>("txtPicture");
  path->setText(QString(kFolderShown) + '/' + QFileInfo(path->text()).fileName());
  save(frameOf(viewer), "picture-viewer");
  viewer->unload();
  auto* processes = showSingle<frmProcessManager>();
  save(frameOf(processes), "process-manager");
  processes->unload();
  preferences();
  frmPleaseWait wait(&mainWindow);
  wait.setText("Compacting Morvane2000 database. Please wait...");
  wait.setPercent(40);
  wait.show();
  save(&wait, "please-wait");
}

void insertFilters(std::int32_t site) {
  for (const char* rule : {"1, 1, 1, \"/banner\", \"\", \"Banners\", \"Contains\"",
                           "2, 2, 3, \"gif\", \"/home/anna/Pictures/gallery\", \"Small pictures\", \"Equals\"",
                           "3, 1, 1, \"http://\", \"\", \"Other hosts\", \"Begins With\""})
    gDatabase.execute(std::string("insert into rule (id, valid_rule_type_id, valid_field_id, search_value, path, name, "
                                  "operator) values (") +
                      rule + ")");
  for (const char* filter : {"1, \"No advertising\", \"yes\", \"Banners of every site\"",
                             "2, \"Large pictures only\", \"no\", \"No small pictures\"",
                             "3, \"Stay at home\", \"no\", \"No links to other hosts\""})
    gDatabase.execute(std::string("insert into filter (id, name, global, description) values (") + filter + ")");
  for (const char* link : {"1, 1", "2, 2", "3, 3", "2, 1"})
    gDatabase.execute(std::string("insert into filter_rule_xref (filter_id, rule_id) values (") + link + ")");
  gDatabase.execute("insert into site_filter_xref (site_id, filter_id) values (" + std::to_string(site) + ", 2)");
}

// Opens the editor of the record in the manager's first or last row: Home or End.
template <class Editor, class Manager>
Editor* edit(Manager* manager, Qt::Key row) {
  auto* list = manager->template findChild<ListView*>();
  list->setFocus();
  // The first key chooses the row that has the focus.
  for (const Qt::Key key : {row, row, Qt::Key_F2}) QTest::keyClick(list, key);
  return find<Editor>();
}

void filterWindows() {
  auto* rules = showSingle<frmRuleManager>();
  save(frameOf(rules), "rule-manager");
  save(frameOf(edit<frmNewRule>(rules, Qt::Key_End)), "rule-editor");
  auto* filters = showSingle<frmFilterManager>();
  save(frameOf(filters), "filter-manager");
  save(frameOf(edit<frmNewFilter>(filters, Qt::Key_Home)), "filter-editor");
}

// The two windows between which filters are dragged, alone in the main window, rows selected in both.
void filterDrag(frmDownloadManager& window) {
  auto* sites = find<frmWebSites>();
  auto* filters = find<frmFilterManager>();
  for (ChildWindow* other : WindowRegistry::instance().windows())
    if (other != sites && other != filters) other->hideChild();
  window.resize(830, 275);
  sites->setPlace({0, 0, 3600, 6500});
  filters->setPlace({0, 6600, 3600, 5500});
  sites->findChild<ListView*>()->selectAll();
  for (const int row : {0, 2}) filters->findChild<ListView*>()->topLevelItem(row)->setSelected(true);
  filters->showChild();
  save(&window, "filter-drag");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: screenshots <folder>\n");
    return 2;
  }
  QApplication application(argc, argv);
  QApplication::setApplicationName("Morvane2000");
  QApplication::setWindowIcon(QIcon(MORVANE_ICON));
  target = QString::fromLocal8Bit(argv[1]);

  mvtest::TestSite gallery;
  mvtest::fillGallery(gallery);
  mvtest::fillFeeds(gallery, kSlowTopic, kSlowTopicMs);
  mvtest::ProgramRun folder(argv[0], MORVANE_SHIPPED_DATABASE);
  folder.addAutoScanSite(gallery.host(), "10", "1", {"png", "jpg", "bmp"});
  mvtest::useAsUpdateServer(gallery);
  const std::int32_t site = folder.addAutoScanSite("gallery.example", "10", "24", {"png", "jpg", "bmp", "gif"});
  gDatabase.execute("update site set auto_scan = \"no\", download_path = " + mv::quoted(kFolderShown) +
                    " where id = " + std::to_string(site));
  const std::string owner = std::to_string(site);
  gDatabase.execute("insert into site_form_xref (site_id, form_id) values (" + owner + ", 20)");
  for (const char* field : {"17, \"anna\"", "18, \"secret\""})
    gDatabase.execute("insert into site_field_xref (site_id, field_id, field_value) values (" + owner + ", " + field +
                      ")");
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
  control(*startUp.mainWindow());
  help();
  onlineUpdates(*startUp.mainWindow(), gallery);
  filterWindows();
  filterDrag(*startUp.mainWindow());
  startUp.mainWindow()->close();
  return 0;
}
