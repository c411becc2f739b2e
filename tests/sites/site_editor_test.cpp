// The site editor's general settings: loading, typing rules, checks, saving.

#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>

#include "SitesTest.h"
#include "sites/frmNew.h"
#include "sites/frmWebSites.h"

namespace mvtest {
namespace {

class SiteEditor : public SitesTest {
 protected:
  void openNew() {
    editor = new mv::frmNew;
    editor->Mode = "new";
    editor->open();
  }
  void openEdit(int id) {
    editor = new mv::frmNew;
    editor->Mode = "edit";
    editor->SiteID = id;
    editor->setCaption("Edit: " + mv::toQString(site(id, "name")));
    editor->open();
  }
  QLineEdit& box(const char* name) { return control<QLineEdit>(editor, name); }
  QCheckBox& check(const char* name) { return control<QCheckBox>(editor, name); }
  bool okEnabled() { return control<QPushButton>(editor, "cmdOK").isEnabled(); }
  void showTab(const char* tabs, const char* title) {
    auto& tabWidget = control<QTabWidget>(editor, tabs);
    for (int i = 0; i < tabWidget.count(); ++i)
      if (tabWidget.tabText(i) == QLatin1String(title)) tabWidget.setCurrentIndex(i);
  }
  void showOptional(const char* title) {
    showTab("SSTab1", "Optional Info");
    showTab("SSTab2", title);
  }
  bool isOpen() const { return mv::WindowRegistry::instance().isLoaded(editor); }
  std::string lastMessage() const {
    if (dialogs.messages.empty()) return "";
    const auto& last = dialogs.messages.back();
    return (last.title + ": " + last.text).toStdString();
  }

  mv::frmNew* editor = nullptr;
};

TEST_F(SiteEditor, ANewSiteIsStoredWithItsDefaults) {
  auto* sites = mv::showSingle<mv::frmWebSites>();
  openNew();
  EXPECT_EQ(editor->caption(), "New Web Site");
  QTest::keyClicks(&box("txtURL"), "http://www.example.test/dir/index.html");
  click(editor, "cmdOK");
  EXPECT_FALSE(isOpen());
  EXPECT_TRUE(dialogs.messages.empty()) << lastMessage();
  const mv::Recordset row = mv::gDatabase.query("select * from site");
  EXPECT_EQ(row.text("name"), "www.example.test/dir/index.html");
  EXPECT_EQ(row.text("domain"), "www.example.test");
  EXPECT_EQ(row.text("upper_limit"), "24");
  EXPECT_EQ(row.text("lower_limit"), "10");
  EXPECT_EQ(row.text("pages_to_scan"), "10");
  EXPECT_EQ(row.text("files_to_download"), "1000");
  EXPECT_EQ(row.text("download_path"), mv::gDownloadFolder);
  EXPECT_EQ(row.text("auto_scan"), "yes");
  EXPECT_EQ(row.text("alternate_matchpath"), "no");
  EXPECT_EQ(row.text("hops"), "0");
  EXPECT_EQ(row.text("unique_names"), "no");
  EXPECT_EQ(row.text("base_name"), "NewFile");
  EXPECT_EQ(names(control<mv::ListView>(sites, "lvwSites")), QStringList("www.example.test/dir/index.html"));
}

TEST_F(SiteEditor, AnExistingSiteIsShownAndEveryChangeStored) {
  const int id = addSite("www.example.test", "/old");
  mv::gDatabase.execute(
      "update site set upper_limit = 5, pages_to_scan = 6, files_to_download = 7, auto_scan = \"no\", hops = 8, "
      "alternate_matchpath = \"yes\", unique_names = \"yes\", base_name = \"\"");
  openEdit(id);
  EXPECT_EQ(box("txtURL").text(), "www.example.test");
  EXPECT_EQ(box("txtUpperLimit").text(), "5");
  EXPECT_EQ(box("txtLowerLimit").text(), "0");
  EXPECT_EQ(box("txtPagesToScan").text(), "6");
  EXPECT_EQ(box("txtFilesToDownload").text(), "7");
  EXPECT_EQ(box("txtDefaultPath").text(), "/old");
  EXPECT_EQ(box("txtHops").text(), "8");
  EXPECT_EQ(box("txtPathsBaseName").text(), "NewFile");
  EXPECT_FALSE(check("chkAutoScan").isChecked());
  EXPECT_TRUE(check("chkAlternateMatchPath").isChecked());
  EXPECT_TRUE(check("optPathUniqueNames").isChecked());

  const QString location = "example.test/it's/a \"quoted\"|\\dir; -- ümläut";
  box("txtURL").setText(location);
  box("txtDefaultPath").setText("/new \"path\"");
  box("txtHops").setText("150");
  box("txtPathsBaseName").setText("Stem");
  box("txtUpperLimit").setText("007");
  check("chkAutoScan").setChecked(true);
  check("chkAlternateMatchPath").setChecked(false);
  check("optPathUniqueNames").setChecked(false);
  click(editor, "cmdApply");
  EXPECT_TRUE(isOpen());
  EXPECT_TRUE(dialogs.messages.empty()) << lastMessage();
  EXPECT_EQ(box("txtHops").text(), "150");
  EXPECT_EQ(editor->SiteName, location);
  EXPECT_EQ(site(id, "name"), location.toStdString());
  EXPECT_EQ(site(id, "domain"), "example.test");
  EXPECT_EQ(site(id, "download_path"), "/new \"path\"");
  EXPECT_EQ(site(id, "hops"), "100");
  EXPECT_EQ(site(id, "base_name"), "Stem");
  EXPECT_EQ(site(id, "upper_limit"), "7");
  EXPECT_EQ(site(id, "auto_scan"), "yes");
  EXPECT_EQ(site(id, "alternate_matchpath"), "no");
  EXPECT_EQ(site(id, "unique_names"), "no");

  box("txtPathsBaseName").setText(QString(200, 'x'));
  box("txtHops").clear();
  click(editor, "cmdOK");
  EXPECT_FALSE(isOpen());
  EXPECT_EQ(site(id, "base_name"), "NewFile");
  EXPECT_EQ(site(id, "hops"), "0");
}

TEST_F(SiteEditor, IncompleteInputIsRefused) {
  struct Case {
    const char* emptied;
    const char* button;
    const char* message;
  };
  const Case cases[] = {
      {"txtURL", "cmdOK", "URL Not Entered: Please click the Required Information tab and enter a URL"},
      {"txtURL", "cmdApply", "Error: Please enter a URL"},
      {"txtDefaultPath", "cmdOK",
       "Default Path Not Defined: Please click the Optional Information tab, \r\nthen click the Paths tab and enter a "
       "Default Path"},
      {"txtUpperLimit", "cmdApply", "Error: Please enter a value for Upper Limit"},
      {"txtLowerLimit", "cmdApply", "Error: Please enter a value for Lower Limit"},
      {"txtPagesToScan", "cmdApply", "Error: Please enter a value for Queue Size"},
      {"txtFilesToDownload", "cmdApply", "Error: Please enter a value for Files To Download"},
  };
  for (const Case& each : cases) {
    openNew();
    box("txtURL").setText("www.example.test");
    box(each.emptied).clear();
    click(editor, each.button);
    EXPECT_EQ(lastMessage(), each.message);
    EXPECT_EQ(dialogs.messages.back().icon, mv::MessageIcon::Exclamation);
    EXPECT_TRUE(isOpen());
  }
  openNew();
  box("txtDefaultPath").clear();
  click(editor, "cmdOK");
  EXPECT_EQ(dialogs.messages.back().title, "URL Not Entered") << "the location comes first";
  EXPECT_EQ(count("site"), 0);

  box("txtURL").setText("www.example.test");
  click(editor, "cmdApply");
  EXPECT_EQ(count("site", "download_path = \"\""), 1) << "Apply does not ask for the path";
}

TEST_F(SiteEditor, OkWaitsForEveryLimit) {
  openNew();
  ASSERT_TRUE(okEnabled());
  box("txtLowerLimit").clear();
  box("txtFilesToDownload").clear();
  EXPECT_FALSE(okEnabled());
  QTest::keyClicks(&box("txtFilesToDownload"), "5");
  EXPECT_FALSE(okEnabled());
  box("txtURL").setText("www.example.test");
  QTest::keyClick(&box("txtURL"), Qt::Key_Return);
  EXPECT_TRUE(isOpen()) << "Enter is no way around the button";
  QTest::keyClicks(&box("txtLowerLimit"), "0");
  EXPECT_TRUE(okEnabled());
}

TEST_F(SiteEditor, BoxesTakeOnlyTheirCharacters) {
  openNew();
  for (const char* name : {"txtUpperLimit", "txtLowerLimit", "txtPagesToScan", "txtFilesToDownload", "txtHops"}) {
    QLineEdit& number = box(name);
    number.setText("42");
    number.selectAll();
    QTest::keyClicks(&number, "x-+., eE");
    EXPECT_EQ(number.text(), "42") << name << ": an unwanted key does not even replace the selection";
    QTest::keyClicks(&number, "a1b2");
    EXPECT_EQ(number.text(), "12") << name;
    QTest::keyClick(&number, Qt::Key_Backspace);
    EXPECT_EQ(number.text(), "1") << name;
    QGuiApplication::clipboard()->setText("3 000 MB");
    number.selectAll();
    number.paste();
    EXPECT_EQ(number.text(), "3000") << name;
    QTest::keyClicks(&number, "1234567890");
    EXPECT_EQ(number.text(), "300012345") << name;
  }
  QLineEdit& baseName = box("txtPathsBaseName");
  QTest::keyClicks(&baseName, "a'b\"c d");
  QGuiApplication::clipboard()->setText("'x'\"y\"");
  baseName.paste();
  EXPECT_EQ(baseName.text(), "abc dxy");
}

TEST_F(SiteEditor, FocusSelectsTheWholeText) {
  openNew();
  QTest::mouseClick(&box("txtUpperLimit"), Qt::LeftButton, {}, QPoint(3, 5));
  EXPECT_EQ(box("txtUpperLimit").selectedText(), "24");
  QTest::mouseClick(&box("txtUpperLimit"), Qt::LeftButton, {}, QPoint(3, 5));
  EXPECT_EQ(box("txtUpperLimit").selectedText(), "") << "the second click places the cursor";
}

TEST_F(SiteEditor, TabVisitsTheControlsInReadingOrder) {
  openNew();
  QStringList order;
  for (int i = 0; i < 8 && QApplication::focusWidget(); ++i) {
    order << QApplication::focusWidget()->objectName();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  EXPECT_EQ(order.join(' '),
            "txtURL txtUpperLimit txtLowerLimit txtPagesToScan txtFilesToDownload cmdOK cmdApply cmdCancel");
}

TEST_F(SiteEditor, CancelTakesBackASiteThatApplyMade) {
  auto* sites = mv::showSingle<mv::frmWebSites>();
  auto& list = control<mv::ListView>(sites, "lvwSites");
  openNew();
  click(editor, "cmdCancel");
  EXPECT_EQ(value("select next_value from valid_sid where sid_name = 'site_id'"), "2");
  EXPECT_EQ(count("site"), 0);

  openNew();
  QTest::keyClicks(&box("txtURL"), "www.example.test");
  click(editor, "cmdApply");
  EXPECT_EQ(editor->Mode, "edit");
  EXPECT_EQ(list.rowCount(), 1);
  QTest::keyClicks(&box("txtURL"), "/more");
  click(editor, "cmdApply");
  EXPECT_EQ(names(list), QStringList("www.example.test/more")) << "the second save updates";
  QTest::keyClick(&box("txtURL"), Qt::Key_Escape);
  EXPECT_FALSE(isOpen());
  EXPECT_EQ(count("site"), 0);
  EXPECT_EQ(count("site_filetype_xref"), 0);
  EXPECT_EQ(list.rowCount(), 0);

  const int id = addSite("kept.example.test", "/x");
  openEdit(id);
  box("txtURL").setText("changed.example.test");
  click(editor, "cmdCancel");
  EXPECT_EQ(site(id, "name"), "kept.example.test");
}

TEST_F(SiteEditor, ASiteDeletedMeanwhileIsNotHalfWritten) {
  const int id = addSite("www.example.test", "/x", {"jpg"});
  openEdit(id);
  mv::gDatabase.execute("delete from site");
  mv::gDatabase.execute("delete from site_filetype_xref");
  click(editor, "cmdOK");
  EXPECT_TRUE(isOpen());
  EXPECT_EQ(dialogs.messages.size(), 1u);
  EXPECT_EQ(count("site_filetype_xref"), 0);
}

TEST_F(SiteEditor, AFailedSaveCanBeRepeated) {
  auto* sites = mv::showSingle<mv::frmWebSites>();
  openNew();
  QTest::keyClicks(&box("txtURL"), "www.example.test");
  mv::gDatabase.execute("alter table site_form_xref rename to elsewhere");
  click(editor, "cmdOK");
  EXPECT_TRUE(isOpen());
  EXPECT_EQ(dialogs.messages.size(), 1u);
  mv::gDatabase.execute("alter table elsewhere rename to site_form_xref");
  click(editor, "cmdOK");
  EXPECT_FALSE(isOpen());
  EXPECT_EQ(dialogs.messages.size(), 1u) << lastMessage();
  EXPECT_EQ(count("site"), 1);
  EXPECT_EQ(control<mv::ListView>(sites, "lvwSites").rowCount(), 1);
}

TEST_F(SiteEditor, BrowseStoresTheFolderAtOnce) {
  const int id = addSite("www.example.test", "/old");
  openEdit(id);
  showOptional("Paths");
  dialogs.nextFolders = {std::nullopt, QString("/chosen")};
  click(editor, "cmdBrowse");
  EXPECT_EQ(box("txtDefaultPath").text(), "/old");
  EXPECT_EQ(site(id, "download_path"), "/old");
  click(editor, "cmdBrowse");
  EXPECT_EQ(box("txtDefaultPath").text(), "/chosen");
  EXPECT_EQ(site(id, "download_path"), "/chosen");
  box("txtDefaultPath").clear();
  click(editor, "cmdBrowse");
  ASSERT_EQ(dialogs.folderRequests.size(), 3u);
  EXPECT_EQ(dialogs.folderRequests[0].title, "Add New Path");
  EXPECT_EQ(dialogs.folderRequests[0].prompt, "Please select a folder to define a path.");
  EXPECT_EQ(dialogs.folderRequests[0].statusText, "Path will be added to database.");
  EXPECT_EQ(dialogs.folderRequests[0].initialFolder, "/old");
  EXPECT_EQ(dialogs.folderRequests[2].initialFolder, mv::toQString(mv::gDownloadFolder));
}

TEST_F(SiteEditor, ClearCacheForgetsTheSitesLinksOnce) {
  const int id = addSite("www.example.test", "/x");
  for (const int owner : {id, id, id + 1})
    mv::gDatabase.execute("insert into link (id, site_id, url, status) values (" +
                          value("select count(*) + 10 from link") + ", " + std::to_string(owner) + ", \"u" +
                          value("select count(*) from link") + "\", \"Done\")");
  openEdit(id);
  showOptional("Other");
  click(editor, "cmdClearCache");
  EXPECT_EQ(count("link"), 1);
  EXPECT_EQ(control<QPushButton>(editor, "cmdClearCache").text(), "Cleared");
  EXPECT_FALSE(control<QPushButton>(editor, "cmdClearCache").isEnabled());
}

// At its first size no label may be cut off: a page that does not fit scrolls.
TEST_F(SiteEditor, NothingIsCutOffAtTheFirstSize) {
  const int id = addSite("www.example.test", "/x");
  mv::gDatabase.execute("insert into site_form_xref (site_id, form_id) values (" + std::to_string(id) + ", 20)");
  mv::gDatabase.execute("insert into site_field_xref (site_id, field_id, field_value) values (" + std::to_string(id) +
                        ", 17, \"me\")");
  openEdit(id);
  EXPECT_EQ(editor->place().width, 7050);
  EXPECT_EQ(editor->place().height, 4800);
  const auto checkPage = [this](const QString& page) {
    QCoreApplication::processEvents();
    for (const QLabel* label : editor->findChildren<QLabel*>()) {
      if (!label->isVisible() || label->text().isEmpty()) continue;
      const QSize hint = label->sizeHint();
      const QSize needed = label->wordWrap() ? QSize(0, label->heightForWidth(label->width())) : hint;
      EXPECT_EQ(label->size().expandedTo(needed), label->size()) << (page + ": " + label->text()).toStdString();
    }
    for (const QScrollArea* area : editor->findChildren<QScrollArea*>()) {
      if (!area->isVisible()) continue;
      EXPECT_LE(area->widget()->width(), area->viewport()->width()) << page.toStdString();
    }
  };
  checkPage("Required Info");
  showTab("SSTab1", "Optional Info");
  auto& optional = control<QTabWidget>(editor, "SSTab2");
  for (int i = 0; i < optional.count(); ++i) {
    optional.setCurrentIndex(i);
    checkPage(optional.tabText(i));
  }
  for (const char* name : {"cmdOK", "cmdApply", "cmdCancel"})
    EXPECT_TRUE(editor->rect().contains(control<QPushButton>(editor, name).geometry())) << name;
}

}  // namespace
}  // namespace mvtest
