// What tests stand on: a fresh program folder with the shipped database, process-wide settings as after start-up, a
// main frame on the offscreen platform, dialogs that answer by themselves, and waiting for events with a deadline.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QPointer>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/Settings.h"
#include "desktop/Dialogs.h"
#include "testkit/EventLoop.h"
#include "testkit/ProgramFolder.h"
#include "testkit/SiteRow.h"
#include "windows/ChildWindow.h"
#include "windows/MainFrame.h"

namespace mvtest {

// Answers dialogs at once: an unexpected one is answered with OK or cancelled, and is there to be read.
class ScriptedDialogs : public mv::Dialogs {
 public:
  struct Shown {
    QString title;
    QString text;
    mv::MessageIcon icon = mv::MessageIcon::None;
  };
  // The message boxes shown so far. A test that ends without having looked at all of them has failed.
  const std::vector<Shown>& messages() const {
    seen_ = messages_.size();
    return messages_;
  }
  void forgetMessages() { messages_.clear(), seen_ = 0; }
  bool allSeen() const { return seen_ == messages_.size(); }
  std::vector<mv::FolderRequest> folderRequests;
  std::vector<mv::FileRequest> fileRequests;
  std::vector<Shown> questions;
  std::vector<Shown> inputs;
  std::deque<std::optional<QString>> nextInputs;
  std::deque<std::optional<QString>> nextFolders;
  std::deque<std::optional<QString>> nextFiles;
  bool nextConfirmation = false;
  // Runs while a message box is open, for tests of re-entrancy.
  std::function<void()> duringMessage;

  void message(QWidget* owner, const QString& title, const QString& text, mv::MessageIcon icon) override;
  std::optional<QString> input(QWidget* owner, const QString& title, const QString& prompt,
                               const QString& initial) override;
  std::optional<QString> folder(const mv::FolderRequest& request) override;
  bool confirm(QWidget* owner, const QString& title, const QString& question) override;
  std::optional<QString> openFile(const mv::FileRequest& request) override;

 private:
  std::vector<Shown> messages_;
  mutable std::size_t seen_ = 0;
};

class TestFrame : public QMainWindow, public mv::MainFrame {
 public:
  TestFrame();
  QMdiArea& mdiArea() override { return *area_; }
  QWidget* window() override { return this; }
  void setClipboardItemsEnabled(bool enabled) override { clipboardEnabled = enabled; }
  void setDeleteWebSiteEnabled(bool enabled) override { deleteWebSiteEnabled = enabled; }
  void hideStatusIndicators() override { ++indicatorsHidden; }
  void say(const QString& line) override { said = line; }

  std::optional<bool> clipboardEnabled;
  std::optional<bool> deleteWebSiteEnabled;
  int indicatorsHidden = 0;
  QString said;

 private:
  QMdiArea* area_;
};

// A fresh program folder and the settings reset; the database is open in gDatabase. At the end every child window is
// unloaded and the database closed.
class ProgramTest : public ::testing::Test {
 protected:
  ProgramTest();
  ~ProgramTest() override;

  std::string folder() const { return folder_.path(); }
  // Runs a statement; the first field of the first row as text ("" when there is no row).
  std::string value(const std::string& sql) const;
  long count(const std::string& table, const std::string& where = "1=1") const;
  // Title and text of the latest message box, "" when there was none since the last call.
  std::string lastMessage();

  ScriptedDialogs dialogs;

 private:
  ProgramFolder folder_;
};

// The same with a main frame.
class WindowTest : public ProgramTest {
 protected:
  WindowTest();
  ~WindowTest() override;
  // As the end of a site does: a process's window goes, it does not hide.
  static void endForGood(mv::ChildWindow* window);
  TestFrame frame;
};

std::string readFile(const std::string& path);

}  // namespace mvtest
