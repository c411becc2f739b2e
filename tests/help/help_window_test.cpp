// The help window, and the help that ships with the program.

#include <QAbstractItemView>
#include <QPlainTextEdit>
#include <fstream>
#include <set>

#include "base/Text.h"
#include "help_windows/frmHelp.h"
#include "testkit/Controls.h"
#include "testkit/Fixture.h"

namespace {

using namespace mv;
using namespace mvtest;
using Texts = std::vector<QString>;

class HelpWindowTest : public WindowTest {
 protected:
  static frmHelp* open() {
    auto* window = new frmHelp;
    window->showChild();
    window->initWindow();
    return window;
  }
  static void addTopic(int id, const std::string& subject, const std::string& topic, const std::string& text) {
    insert("help_info (id, subject, the_text, hide, the_topic)", {{std::to_string(id), subject, text, "no", topic}});
  }
  static ListView& subjects(frmHelp* window) { return control<ListView>(window, "lvwSubjects"); }
  static void choose(frmHelp* window, const QString& subject) {
    clickRow(subjects(window), subjects(window).findRow(0, subject));
  }
  static Texts topics(frmHelp* window) {
    auto& box = control<QComboBox>(window, "cmboTopics");
    Texts texts;
    for (int i = 0; i < box.count(); ++i) texts.push_back(box.itemText(i));
    return texts;
  }
  static QString text(frmHelp* window) { return control<QPlainTextEdit>(window, "txtHelp").toPlainText(); }
  // Opens the drop-down list and takes the entry that it stands on.
  static void pickShownTopic(frmHelp* window) {
    auto& box = control<QComboBox>(window, "cmboTopics");
    box.showPopup();
    QTest::keyClick(box.view(), Qt::Key_Return);
    EXPECT_TRUE(waitFor([&] { return !box.view()->isVisible(); }));
  }
};

TEST_F(HelpWindowTest, ASubjectThenATopicThenItsText) {
  gDatabase.execute("delete from help_info");
  addTopic(12, "Sites", "B", "<b>text</b> of B");
  addTopic(11, "Sites", "A", "text of \"A\"\r\nline two");
  addTopic(13, "Filters", "C", "text of C");
  frmHelp* window = open();
  EXPECT_EQ(columnTexts(subjects(window)), Texts({"Filters", "Sites"}));

  choose(window, "Sites");
  EXPECT_EQ(topics(window), Texts({"A", "B"}));
  EXPECT_EQ(control<QComboBox>(window, "cmboTopics").currentIndex(), 0);
  EXPECT_EQ(text(window), "") << "only a choice of the user shows a text";
  pickShownTopic(window);
  EXPECT_EQ(text(window), "text of \"A\"\nline two");
  QTest::keyClick(&control<QComboBox>(window, "cmboTopics"), Qt::Key_Down);
  EXPECT_EQ(text(window), "<b>text</b> of B");

  frmHelp* other = open();
  choose(other, "Filters");
  EXPECT_EQ(topics(other), Texts({"C"}));
  EXPECT_EQ(topics(window), Texts({"A", "B"})) << "each window has a choice of its own";
  EXPECT_EQ(text(window), "<b>text</b> of B");
  EXPECT_EQ(text(other), "");
  QTest::keyClick(&subjects(other), Qt::Key_Return);
  EXPECT_EQ(text(other), "text of C") << "the only topic";
  QTest::keyClick(other, Qt::Key_Escape);
  EXPECT_EQ(WindowRegistry::instance().windows().size(), 1u);
}

TEST_F(HelpWindowTest, EscapeClosesItWhereverTheFocusIs) {
  for (const char* name : {"lvwSubjects", "cmboTopics", "txtHelp", "SSTab1"}) {
    frmHelp* window = open();
    auto& place = control<QWidget>(window, name);
    auto* tabs = qobject_cast<QTabWidget*>(&place);
    QWidget* focused = tabs ? tabs->tabBar() : &place;
    focused->setFocus();
    QTest::keyClick(focused, Qt::Key_Escape);
    EXPECT_FALSE(WindowRegistry::instance().isLoaded(window)) << name;
  }
}

TEST_F(HelpWindowTest, SubjectsWithoutTopicsLeaveTheDropDownAsItIs) {
  gDatabase.execute("delete from help_info");
  addTopic(11, "Sites", "A", "text of A");
  addTopic(12, "Gone", "B", "text of B");
  addTopic(13, "The \"Other\" One", "C", "text of C");
  frmHelp* window = open();
  choose(window, "Sites");
  pickShownTopic(window);
  EXPECT_EQ(text(window), "text of A");

  gDatabase.execute("delete from help_info where id = 12");
  choose(window, "Gone");
  EXPECT_EQ(topics(window), Texts({"A"}));
  EXPECT_EQ(text(window), "");
  EXPECT_TRUE(dialogs.messages().empty());

  choose(window, "The \"Other\" One");
  EXPECT_EQ(topics(window), Texts({"A"}));
  ASSERT_EQ(dialogs.messages().size(), 1u);
  EXPECT_TRUE(dialogs.messages()[0].text.contains("The \"Other\" One"));
  EXPECT_EQ(subjects(window).rowCount(), 3) << "the list is as it was when the window opened";
}

// The user guide is the one source of the shipped help.
TEST_F(HelpWindowTest, TheShippedHelpIsTheUserGuideInPlainText) {
  std::set<std::string> sections;
  std::ifstream guide(MORVANE_USER_GUIDE);
  for (std::string line; std::getline(guide, line);)
    if (line.starts_with("## ")) sections.insert(line.substr(3));
  ASSERT_GT(sections.size(), 5u);
  std::set<std::string> subjects;
  int id = 1000;
  for (Recordset rows = gDatabase.query("select id, subject, the_text, hide, the_topic from help_info order by id");
       !rows.endOfRows(); rows.moveNext()) {
    EXPECT_EQ(rows.number("id"), id++) << "a help server's numbers have two digits";
    EXPECT_EQ(rows.text("hide"), "no");
    subjects.insert(rows.text("subject"));
    const QString text = toQString(rows.text("the_text")).remove("***");  // what a password reads
    EXPECT_GT(text.size(), 20) << rows.text("the_topic");
    for (const char* mark : {"**", "`", "](", "![", "\n|", "\n#"})
      EXPECT_FALSE(text.contains(mark)) << mark << " in " << rows.text("the_topic");
  }
  EXPECT_EQ(subjects, sections);
  const auto holds = [this](const char* topic, const char* part) {
    const std::string text = value(std::string("select the_text from help_info where the_topic = '") + topic + "'");
    return text.find(part) != std::string::npos;
  };
  EXPECT_TRUE(holds("Web sites", "\r\nEdit (F2): opens"));
  EXPECT_TRUE(holds("Picture Viewer", "\r\nEscape: closes"));
  EXPECT_TRUE(holds("Required Info", "reads ***."));
  EXPECT_TRUE(holds("Login forms", "\r\nToken\r\n    number: 2\r\n    search string: name=\"token\" value=\r\n"));
}

}  // namespace
