#include "help_windows/frmHelp.h"

#include <QListView>

#include "base/Text.h"
#include "desktop/ListColumns.h"
#include "store/HelpStore.h"
#include "ui_frmHelp.h"
#include "windows/ListHelpers.h"
#include "windows/MainFrame.h"

namespace mv {

namespace {

constexpr int kWidth = 6855;   // twips
constexpr int kHeight = 4455;  // twips
constexpr int kSubjectCharacters = 24;

}  // namespace

frmHelp::frmHelp() : ChildWindow(kWidth, kHeight), ui_(std::make_unique<Ui::frmHelp>()) {
  ui_->setupUi(this);
  setFocusProxy(ui_->lvwSubjects);
  setOpens(Opens::Cascaded);
  ui_->lvwSubjects->setColumns({{"Subject", kSubjectCharacters}});
  ui_->lvwSubjects->setMinimumWidth(columnsWidth(*ui_->lvwSubjects));
  ui_->txtHelp->setMinimumWidth(ui_->txtHelp->sizeHint().width());
  // Thousands of topics, or a very long one, must neither widen the window nor be measured one by one.
  if (auto* popup = qobject_cast<QListView*>(ui_->cmboTopics->view())) popup->setUniformItemSizes(true);
  connect(ui_->lvwSubjects, &ListView::rowChosen, this, [this](int row) { run([&] { subjectChosen(row); }); });
  // The box names a topic already, and one that is the only one cannot be moved to by keys.
  connect(ui_->lvwSubjects, &ListView::rowActivated, this,
          [this] { run([this] { topicChosen(ui_->cmboTopics->currentIndex()); }); });
  connect(ui_->cmboTopics, &QComboBox::activated, this, [this](int index) { run([&] { topicChosen(index); }); });
}

frmHelp::~frmHelp() = default;

void frmHelp::initWindow() { buildWorkingLists("init"); }

void frmHelp::buildWorkingLists(const std::string& command, long) {
  run([&] {
    if (command == "init") listSubjects();
    if (command == "topics") listTopics();
    if (command == "text") showText();
  });
}

void frmHelp::listSubjects() {
  ui_->lvwSubjects->setRows(
      rowsOf(listHelpSubjects(), [](const std::string& subject) { return QStringList(toQString(subject)); }));
}

void frmHelp::listTopics() {
  const std::vector<HelpTopicName> topics = listHelpTopics(toUtf8(subject_));
  if (topics.empty()) return;
  ui_->cmboTopics->clear();
  for (const HelpTopicName& each : topics)
    ui_->cmboTopics->addItem(toQString(each.topic), static_cast<qlonglong>(each.id));
}

void frmHelp::showText() {
  if (const auto text = findHelpText(topicId_)) ui_->txtHelp->showText(toQString(*text));
}

void frmHelp::subjectChosen(int row) {
  subject_ = ui_->lvwSubjects->cell(row, 0);
  buildWorkingLists("topics");
  if (ui_->cmboTopics->count() > 0) {
    ui_->cmboTopics->setCurrentIndex(0);
    topicChosen(0);
  }
  ui_->txtHelp->showText({});
}

void frmHelp::topicChosen(int index) {
  if (index < 0) return;
  topicId_ = ui_->cmboTopics->itemData(index).toLongLong();
  buildWorkingLists("text");
}

void frmHelp::activated() { MainFrame::current()->setClipboardItemsEnabled(true); }

}  // namespace mv
