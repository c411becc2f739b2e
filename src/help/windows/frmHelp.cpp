#include "help_windows/frmHelp.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QListView>
#include <QVBoxLayout>

#include "ReadingBox.h"
#include "base/Text.h"
#include "desktop/ListColumns.h"
#include "desktop/ListView.h"
#include "store/HelpStore.h"
#include "windows/MainFrame.h"
#include "windows/PageTabs.h"
#include "windows/ScrollingPage.h"

namespace mv {

namespace {

constexpr int kWidth = 6855;   // twips
constexpr int kHeight = 4455;  // twips
constexpr int kSubjectCharacters = 20;
constexpr int kShortestTopics = 12;  // characters

QLabel* makeLabel(const char* name, const QString& text, QWidget* buddy) {
  auto* label = new QLabel(text);
  label->setObjectName(QString::fromLatin1(name));
  label->setBuddy(buddy);
  return label;
}

}  // namespace

frmHelp::frmHelp()
    : ChildWindow(kWidth, kHeight),
      lvwSubjects_(new ListView(this)),
      cmboTopics_(new QComboBox(this)),
      txtHelp_(new ReadingBox("txtHelp", "Help text", this)) {
  setObjectName("frmHelp");
  setCaption("Help");
  buildControls();
  setOpens(Opens::Cascaded);
  connect(lvwSubjects_, &ListView::rowChosen, this, [this](int row) { run([&] { subjectChosen(row); }); });
  connect(cmboTopics_, &QComboBox::activated, this, [this](int index) { run([&] { topicChosen(index); }); });
}

void frmHelp::buildControls() {
  lvwSubjects_->setObjectName("lvwSubjects");
  lvwSubjects_->setColumns({{"Subject", kSubjectCharacters}});
  lvwSubjects_->setMinimumWidth(columnsWidth(*lvwSubjects_));
  cmboTopics_->setObjectName("cmboTopics");
  // Thousands of topics, or a very long one, must neither widen the window nor be measured one by one.
  cmboTopics_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  cmboTopics_->setMinimumContentsLength(kShortestTopics);
  if (auto* popup = qobject_cast<QListView*>(cmboTopics_->view())) popup->setUniformItemSizes(true);
  txtHelp_->setPlaceholderText("Choose a subject, then a topic.");

  auto* lblNoOptions = new QLabel("No options for this window.");
  lblNoOptions->setObjectName("lblNoOptions");
  lblNoOptions->setAlignment(Qt::AlignCenter);
  auto* SSTab1 = new PageTabs("SSTab1");
  SSTab1->addTab(makeHelpPage(), "Help");
  SSTab1->addTab(lblNoOptions, "Options");
  (new QVBoxLayout(makeScrollingPage(this)))->addWidget(SSTab1);
  setFocusProxy(lvwSubjects_);
}

QWidget* frmHelp::makeHelpPage() {
  auto* page = new QWidget;
  auto* grid = new QGridLayout(page);
  grid->addWidget(makeLabel("lblSubjects", "Select a Subject", lvwSubjects_), 0, 0);
  grid->addWidget(lvwSubjects_, 1, 0, 2, 1);
  grid->addWidget(makeLabel("lblTopics", "Then Select a Topic", cmboTopics_), 0, 1);
  grid->addWidget(cmboTopics_, 1, 1);
  grid->addWidget(txtHelp_, 2, 1);
  grid->setColumnStretch(0, 2);
  grid->setColumnStretch(1, 3);
  grid->setRowStretch(2, 1);
  return page;
}

void frmHelp::initWindow() { buildWorkingLists("init"); }

void frmHelp::buildWorkingLists(const std::string& command, long) {
  run([&] {
    if (command == "init") listSubjects();
    if (command == "topics") listTopics();
    if (command == "text") showText();
  });
}

void frmHelp::listSubjects() {
  lvwSubjects_->clearRows();
  for (const std::string& subject : listHelpSubjects()) lvwSubjects_->addRow({toQString(subject)});
}

void frmHelp::listTopics() {
  const std::vector<HelpTopicName> topics = listHelpTopics(toUtf8(subject_));
  if (topics.empty()) return;
  cmboTopics_->clear();
  for (const HelpTopicName& each : topics) cmboTopics_->addItem(toQString(each.topic), static_cast<qlonglong>(each.id));
}

void frmHelp::showText() {
  if (const auto text = findHelpText(topicId_)) txtHelp_->showText(toQString(*text));
}

void frmHelp::subjectChosen(int row) {
  subject_ = lvwSubjects_->cell(row, 0);
  buildWorkingLists("topics");
  if (cmboTopics_->count() > 0) {
    cmboTopics_->setCurrentIndex(0);
    topicChosen(0);
  }
  txtHelp_->showText({});
}

void frmHelp::topicChosen(int index) {
  if (index < 0) return;
  topicId_ = cmboTopics_->itemData(index).toLongLong();
  buildWorkingLists("text");
}

void frmHelp::activated() { MainFrame::current()->setClipboardItemsEnabled(true); }

}  // namespace mv
