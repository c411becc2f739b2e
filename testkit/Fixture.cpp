#include "testkit/Fixture.h"

#include <fstream>
#include <sstream>

#include "app/EndProgram.h"
#include "app/Events.h"
#include "base/Clock.h"
#include "base/Text.h"
#include "database/RawStatement.h"
#include "desktop/Browser.h"
#include "files/DiskSpace.h"
#include "windows/NoticeBoxes.h"
#include "windows/WindowRegistry.h"

namespace mvtest {
namespace {

constexpr int kUnloadDeadlineMs = 5000;
constexpr QSize kFrameSize(1200, 800);

void resetSettings() {
  mv::gAutoScan = mv::gHideProcesses = mv::gAutoUpdate = mv::gHelpServer = mv::gOverwriteExisting = "no";
  mv::gQuitTime = 8;
  mv::gQuitAt = QDateTime();
  mv::gAppClosing = mv::gClosingProcesses = false;
  mv::gDragKind.clear();
  mv::setNow(QDateTime());
  mv::setBrowserOpener({});
  mv::setFreeDiskSpace({});
  // A real end would leave with success, and the tests behind it would not be missed.
  mv::setEndProgram([] { ADD_FAILURE() << "the program was ended"; });
}

template <class Answer>
std::optional<Answer> takeNext(std::deque<std::optional<Answer>>& answers) {
  if (answers.empty()) return std::nullopt;
  std::optional<Answer> next;
  next.swap(answers.front());
  answers.pop_front();
  return next;
}

}  // namespace

void ScriptedDialogs::message(QWidget*, const QString& title, const QString& text, mv::MessageIcon icon) {
  messages_.push_back({title, text, icon});
  // A copy: what runs may set another.
  if (const auto during = duringMessage) during();
}

std::optional<QString> ScriptedDialogs::input(QWidget*, const QString& title, const QString& prompt, const QString&) {
  inputs.push_back({title, prompt, mv::MessageIcon::None});
  return takeNext(nextInputs);
}

std::optional<QString> ScriptedDialogs::folder(const mv::FolderRequest& request) {
  folderRequests.push_back(request);
  return takeNext(nextFolders);
}

bool ScriptedDialogs::confirm(QWidget*, const QString& title, const QString& question) {
  questions.push_back({title, question, mv::MessageIcon::None});
  return nextConfirmation;
}

std::optional<QString> ScriptedDialogs::openFile(const mv::FileRequest& request) {
  fileRequests.push_back(request);
  return takeNext(nextFiles);
}

TestFrame::TestFrame() : area_(new QMdiArea(this)) {
  setCentralWidget(area_);
  resize(kFrameSize);
}

ProgramTest::ProgramTest() {
  mv::Dialogs::install(&dialogs);
  mv::showNoticesInBoxes();
  resetSettings();
}

ProgramTest::~ProgramTest() {
  Q_EMIT mv::events().programEnding();
  EXPECT_TRUE(dialogs.allSeen()) << "an unexpected message: " << mv::toUtf8(dialogs.messages().back().text);
  resetSettings();
  mv::Dialogs::install(nullptr);
}

std::string ProgramTest::value(const std::string& sql) const {
  // The first field has whatever name the statement gives it: the engine is asked to call it `firstField`.
  const mv::Recordset row =
      mv::gDatabase.query("with answer(firstField) as (" + mv::rawStatement(sql) + ") select firstField from answer");
  return row.endOfRows() ? std::string() : row.text("firstField");
}

long ProgramTest::count(const std::string& table, const std::string& where) const {
  return static_cast<long>(
      mv::gDatabase.count("select count(*) as outCount from " + mv::rawStatement(table + " where " + where)));
}

std::string ProgramTest::lastMessage() {
  if (dialogs.messages().empty()) return "";
  const ScriptedDialogs::Shown shown = dialogs.messages().back();
  dialogs.forgetMessages();
  return mv::toUtf8(shown.title + ": " + shown.text);
}

WindowTest::WindowTest() {
  frame.show();
  QCoreApplication::processEvents();
}

WindowTest::~WindowTest() {
  mv::gAppClosing = true;
  for (mv::ChildWindow* window : mv::WindowRegistry::instance().windows())
    if (mv::WindowRegistry::instance().isLoaded(window)) window->unload();
  waitFor([this] { return frame.mdiArea().subWindowList().isEmpty(); }, kUnloadDeadlineMs);
}

void WindowTest::endForGood(mv::ChildWindow* window) {
  mv::gClosingProcesses = true;
  window->unload();
  mv::gClosingProcesses = false;
}

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

}  // namespace mvtest
