// The site editor's general settings: loading, typing rules, checks, saving.

#include <QApplication>
#include <QClipboard>
#include <QScrollArea>

#include "SitesTest.h"
#include "sites_windows/frmWebSites.h"
#include "store/SiteStore.h"

namespace mvtest {
namespace {

class SiteEditor : public SitesTest {
 protected:
  QLineEdit& box(const char* name) { return control<QLineEdit>(editor, name); }
  bool isOpen() const { return mv::WindowRegistry::instance().isLoaded(editor); }
  // The settings as the controls show them, and as the rows hold them.
  std::string shown() {
    std::string texts;
    for (const char* name : {"txtURL", "txtUpperLimit", "txtLowerLimit", "txtPagesToScan", "txtFilesToDownload",
                             "txtDefaultPath", "txtHops", "txtPathsBaseName"})
      texts += textOf(editor, name).toStdString() + "|";
    for (const char* name : {"chkAutoScan", "chkAlternateMatchPath", "optPathUniqueNames"})
      texts += control<QCheckBox>(editor, name).isChecked() ? "yes " : "no ";
    return texts;
  }
  static std::string stored() {
    return all(
        "name || '|' || upper_limit || '|' || lower_limit || '|' || pages_to_scan || '|' || files_to_download || '|' "
        "|| download_path || '|' || hops || '|' || base_name || '|' || auto_scan || ' ' || alternate_matchpath || ' ' "
        "|| unique_names || ' ' || domain",
        "site order by id");
  }
};

TEST_F(SiteEditor, ANewSiteIsStoredWithItsDefaults) {
  auto* sites = mv::showSingle<mv::frmWebSites>();
  openNew();
  EXPECT_EQ(editor->caption(), "New Web Site");
  QTest::keyClicks(&box("txtURL"), "http://www.example.test/dir/index.html");
  EXPECT_EQ(shown(), "http://www.example.test/dir/index.html|24|10|10|1000|" + mv::gDownloadFolder + "|||yes no no ");
  click(editor, "cmdOK");
  EXPECT_FALSE(isOpen());
  EXPECT_EQ(lastMessage(), "");
  EXPECT_EQ(stored(), "www.example.test/dir/index.html|24|10|10|1000|" + mv::gDownloadFolder +
                          "|0|NewFile|yes no no www.example.test");
  EXPECT_EQ(names(control<mv::ListView>(sites, "lvwSites")), "www.example.test/dir/index.html");
}

TEST_F(SiteEditor, ALineBelowTheLocationBoxSaysWhatIsWrongWithIt) {
  addSite("www.example.test/a", "/x");
  openNew();
  EXPECT_FALSE(box("txtURL").placeholderText().isEmpty());
  const std::pair<const char*, const char*> cases[] = {{"www.example.test", ""},
                                                       {"www.example.test/a", "Another web site"},
                                                       {"http://www.example.test/a", "Another web site"},
                                                       {"https://www.example.test/", "by https only"},
                                                       {"HTTPS://www.example.test/", "by https only"},
                                                       {"HTTP://www.example.test/", ""},
                                                       {"ftp://www.example.test/", "Only addresses"},
                                                       {"www.example.test/?to=ftp://other.test", ""},
                                                       {" www.example.test", "blank"}};
  for (const auto& [typed, said] : cases) {
    type(editor, "txtURL", typed);
    const QString hint = textOf(editor, "lblURLHint");
    EXPECT_TRUE(*said ? hint.contains(said) : hint.isEmpty()) << typed << ": " << hint.toStdString();
  }
  QApplication::clipboard()->setText("www.example\n.test/\tdir\r\n");
  box("txtURL").selectAll();
  box("txtURL").paste();
  EXPECT_EQ(textOf(editor, "txtURL"), "www.example.test/dir");
  click(editor, "cmdOK");
  openEdit(2);
  EXPECT_EQ(textOf(editor, "lblURLHint"), "") << "its own address is no other site's";
}

TEST_F(SiteEditor, AFailedCheckBringsTheFocusToItsBox) {
  openNew(kOther);
  click(editor, "cmdOK");
  EXPECT_NE(lastMessage().find("URL Not Entered"), std::string::npos);
  EXPECT_TRUE(box("txtURL").hasFocus());
  QTest::keyClicks(&box("txtURL"), "www.example.test");
  box("txtDefaultPath").clear();
  click(editor, "cmdOK");
  EXPECT_NE(lastMessage().find("Default Path Not Defined"), std::string::npos);
  EXPECT_TRUE(box("txtDefaultPath").isVisible());
  EXPECT_TRUE(box("txtDefaultPath").hasFocus());
  box("txtDefaultPath").setText("/x");
  box("txtPagesToScan").clear();
  box("txtUpperLimit").setText("7");
  click(editor, "cmdOK");
  EXPECT_EQ(lastMessage(), "Error: Please enter a value for Queue Size");
  EXPECT_TRUE(box("txtPagesToScan").hasFocus());
}

TEST_F(SiteEditor, AnExistingSiteIsShownAndEveryChangeStored) {
  openEdit(addSite("www.example.test", "/old"));
  mv::gDatabase.execute(
      "update site set upper_limit = 5, pages_to_scan = 6, files_to_download = 7, auto_scan = \"no\", hops = 8, "
      "alternate_matchpath = \"yes\", unique_names = \"yes\", base_name = \"\"");
  editor->unload();
  mv::insertSite({2, "other", 24, 10, 11, 1000, "/x", true, false, 3, false, "NewFile"});
  openEdit(1);
  EXPECT_EQ(shown(), "www.example.test|5|0|6|7|/old|8|NewFile|no yes yes ");

  box("txtURL").setText("example.test/it's/a \"quoted\"|\\dir; -- ümläut");
  box("txtDefaultPath").setText("/new \"path\"");
  box("txtHops").setText("150");
  const QString longest(199, QChar(0xeb));
  box("txtPathsBaseName").setText(longest);
  box("txtUpperLimit").setText("007");
  for (const char* name : {"chkAutoScan", "chkAlternateMatchPath", "optPathUniqueNames"})
    control<QCheckBox>(editor, name).toggle();
  click(editor, "cmdApply");
  EXPECT_TRUE(isOpen());
  EXPECT_EQ(lastMessage(), "");
  EXPECT_EQ(stored(), box("txtURL").text().toStdString() + "|7|0|6|7|/new \"path\"|100|" + longest.toStdString() +
                          "|yes no no example.test,other|24|10|11|1000|/x|3|NewFile|yes no no other");

  box("txtPathsBaseName").setText(QString(200, 'x'));
  box("txtHops").clear();
  click(editor, "cmdOK");
  EXPECT_FALSE(isOpen());
  EXPECT_EQ(all("base_name || hops", "site where id = 1"), "NewFile0");
}

TEST_F(SiteEditor, IncompleteInputIsRefused) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
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
  for (const auto& [emptied, button, message] : cases) {
    openNew();
    box("txtURL").setText("www.example.test");
    box(emptied).clear();
    click(editor, button);
    EXPECT_EQ(lastMessage(), message);
    EXPECT_TRUE(isOpen());
  }
  EXPECT_EQ(count("site"), 0);

  // The button follows the limit box changed last.
  openNew();
  box("txtURL").setText("www.example.test");
  box("txtLowerLimit").clear();
  box("txtFilesToDownload").clear();
  EXPECT_FALSE(enabled(editor, "cmdOK"));
  QTest::keyClick(&box("txtURL"), Qt::Key_Return);
  EXPECT_TRUE(isOpen()) << "Enter is no way around the button";
  QTest::keyClicks(&box("txtFilesToDownload"), "5");
  EXPECT_TRUE(enabled(editor, "cmdOK"));
  click(editor, "cmdOK");
  EXPECT_EQ(lastMessage(), "Error: Please enter a value for Lower Limit");
  EXPECT_EQ(count("site"), 0);

  box("txtLowerLimit").setText("1");
  box("txtDefaultPath").clear();
  click(editor, "cmdApply");
  EXPECT_EQ(count("site", "download_path = \"\""), 1) << "Apply does not ask for the path";
}

TEST_F(SiteEditor, BoxesTakeOnlyTheirCharacters) {
  openNew();
  for (const char* name : {"txtUpperLimit", "txtLowerLimit", "txtPagesToScan", "txtFilesToDownload", "txtHops"}) {
    QLineEdit& number = box(name);
    number.setText("42");
    number.selectAll();
    QTest::keyClicks(&number, "x-+., eE");
    EXPECT_EQ(number.text(), "42") << name << ": an unwanted key does not even replace the selection";
    QGuiApplication::clipboard()->setText("3 000 MB");
    number.selectAll();
    number.paste();
    QTest::keyClicks(&number, "1234567890");
    EXPECT_EQ(number.text(), "300012345") << name;
  }
  QLineEdit& baseName = box("txtPathsBaseName");
  QTest::keyClicks(&baseName, "a'b\"c d");
  QGuiApplication::clipboard()->setText("'x'\"y\"");
  baseName.paste();
  EXPECT_EQ(baseName.text(), "abc dxy");
}

TEST_F(SiteEditor, CancelTakesBackASiteThatApplyMade) {
  const auto& list = control<mv::ListView>(mv::showSingle<mv::frmWebSites>(), "lvwSites");
  openNew();
  QTest::keyClicks(&box("txtURL"), "www.example.test");
  click(editor, "cmdApply");
  EXPECT_EQ(editor->Mode, "edit");
  EXPECT_EQ(list.rowCount(), 1);
  QTest::keyClicks(&box("txtURL"), "/more");
  click(editor, "cmdApply");
  EXPECT_EQ(names(list), "www.example.test/more") << "the second save updates";
  QTest::keyClick(&box("txtURL"), Qt::Key_Escape);
  EXPECT_FALSE(isOpen());
  EXPECT_EQ(count("site") + count("site_filetype_xref") + list.rowCount(), 0);

  openEdit(addSite("kept.example.test", "/x"));
  box("txtURL").setText("changed.example.test");
  click(editor, "cmdCancel");
  openNew();
  QTest::keyClicks(&box("txtURL"), "new.example.test");
  click(editor, "cmdApply");
  editor->closeRequested();
  EXPECT_EQ(all("name", "site"), "kept.example.test,new.example.test") << "the close box is no Cancel";
}

TEST_F(SiteEditor, AFailedSaveKeepsTheTextAndCanBeRepeated) {
  auto* sites = mv::showSingle<mv::frmWebSites>();
  openNew();
  QTest::keyClicks(&box("txtURL"), "www.example.test");
  for (const mv::SqlText table : {mv::SqlText("site"), mv::SqlText("site_form_xref")}) {
    mv::gDatabase.execute("alter table " + table + " rename to elsewhere");
    lastMessage();
    click(editor, "cmdOK");
    ASSERT_TRUE(isOpen()) << table.text();
    EXPECT_EQ(dialogs.messages().size(), 1u);
    EXPECT_EQ(box("txtURL").text(), "www.example.test");
    mv::gDatabase.execute("alter table elsewhere rename to " + table);
  }
  click(editor, "cmdOK");
  EXPECT_FALSE(isOpen());
  EXPECT_EQ(count("site"), 1);
  EXPECT_EQ(control<mv::ListView>(sites, "lvwSites").rowCount(), 1);

  openEdit(1);
  mv::gDatabase.execute("delete from site");
  mv::gDatabase.execute("delete from site_filetype_xref");
  click(editor, "cmdOK");
  EXPECT_TRUE(isOpen()) << "the site was deleted meanwhile";
  EXPECT_EQ(dialogs.messages().size(), 2u);
  EXPECT_EQ(count("site_filetype_xref"), 0);
}

TEST_F(SiteEditor, BrowseStoresTheFolderAtOnce) {
  openEdit(addSite("www.example.test", "/old"), kPaths);
  dialogs.nextFolders = {std::nullopt, QString("/chosen")};
  for (const char* expected : {"/old", "/chosen"}) {
    click(editor, "cmdBrowse");
    EXPECT_EQ(box("txtDefaultPath").text(), expected);
    EXPECT_EQ(all("download_path", "site"), expected);
  }
  box("txtDefaultPath").clear();
  click(editor, "cmdBrowse");
  ASSERT_EQ(dialogs.folderRequests.size(), 3u);
  EXPECT_EQ(dialogs.folderRequests[0].initialFolder, "/old");
  EXPECT_EQ(dialogs.folderRequests[2].initialFolder, mv::toQString(mv::gDownloadFolder));
}

TEST_F(SiteEditor, ClearCacheForgetsTheSitesLinksOnce) {
  openEdit(addSite("www.example.test", "/x"), kOther);
  insert("link (id, site_id, url)", {{"10", "1", "a"}, {"11", "1", "b"}, {"12", "2", "c"}});
  click(editor, "cmdClearCache");
  EXPECT_EQ(all("id", "link"), "12");
  EXPECT_EQ(textOf(editor, "cmdClearCache"), "Cleared");
  EXPECT_FALSE(enabled(editor, "cmdClearCache"));
}

TEST_F(SiteEditor, ClearsALargeCacheUnderThePleaseWaitWindow) {
  openEdit(addSite("www.example.test", "/x"), kOther);
  insertNumbered("link (id, site_id)", 10, 20'010, "i, 1 + i % 2");
  click(editor, "cmdClearCache");
  EXPECT_EQ(textOf(editor, "cmdClearCache"), "Clear Cache");
  EXPECT_TRUE(frame.findChild<QWidget*>("frmPleaseWait"));
  EXPECT_TRUE(waitFor([&] { return textOf(editor, "cmdClearCache") == "Cleared"; }));
  EXPECT_EQ(value("select count(*) || ' of ' || min(site_id) from link"), "10000 of 2");
  EXPECT_TRUE(waitFor([&] { return !frame.findChild<QWidget*>("frmPleaseWait"); }));
}

TEST_F(SiteEditor, TabVisitsTheControlsInReadingOrder) {
  openNew();
  const auto walk = [](QWidget* from, int steps) {
    from->setFocus();
    QStringList order;
    for (int i = 0; i < steps && QApplication::focusWidget(); ++i) {
      order << QApplication::focusWidget()->objectName();
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    return order.join(' ');
  };
  EXPECT_EQ(walk(&box("txtURL"), 8),
            "txtURL txtUpperLimit txtLowerLimit txtPagesToScan txtFilesToDownload cmdOK cmdApply cmdCancel");
  showPage(kPaths);
  EXPECT_EQ(walk(&box("txtDefaultPath"), 6),
            "txtDefaultPath cmdBrowse optPathUniqueNames txtPathsBaseName cmdOpenPathManager cmdOK");
  showPage(kFiletypes);
  EXPECT_EQ(walk(&control<QWidget>(editor, "lvwFiletypesAvailable"), 5),
            "lvwFiletypesAvailable cmdMoveFileTypeToAssigned cmdNewFileType lvwFiletypesAssigned "
            "txtFiletypeDescription");
}

void expectNothingCutOff(QWidget* window, const QString& page) {
  QCoreApplication::processEvents();
  for (const QLabel* label : window->findChildren<QLabel*>()) {
    if (!label->isVisible() || label->text().isEmpty()) continue;
    const QSize needed = label->wordWrap() ? QSize(0, label->heightForWidth(label->width())) : label->sizeHint();
    EXPECT_EQ(label->size().expandedTo(needed), label->size()) << (page + ": " + label->text()).toStdString();
  }
  for (const QScrollArea* area : window->findChildren<QScrollArea*>()) {
    if (!area->isVisible()) continue;
    EXPECT_LE(area->widget()->width(), area->viewport()->width()) << page.toStdString();
  }
}

TEST_F(SiteEditor, NothingIsCutOffAtTheFirstSize) {
  insert("site_form_xref", {{"1", "20"}});
  insert("site_field_xref (site_id, field_id, field_value)", {{"1", "17", "me"}});
  openEdit(addSite("www.example.test", "/x"));
  EXPECT_EQ(editor->place().width, 7050);
  EXPECT_EQ(editor->place().height, 4800);
  expectNothingCutOff(editor, "Required Info");
  auto& optional = control<QTabWidget>(editor, "SSTab2");
  control<QTabWidget>(editor, "SSTab1").setCurrentIndex(1);
  for (int i = 0; i < optional.count(); ++i) {
    optional.setCurrentIndex(i);
    expectNothingCutOff(editor, optional.tabText(i));
  }
  for (const char* name : {"cmdOK", "cmdApply", "cmdCancel"})
    EXPECT_TRUE(editor->rect().contains(control<QPushButton>(editor, name).geometry())) << name;
}

}  // namespace
}  // namespace mvtest
