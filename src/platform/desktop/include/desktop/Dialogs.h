// The modal questions of the program: message box, question, input box, folder and file dialog. Windows call the free
// functions; a test installs its own Dialogs, which answers at once and keeps what was shown.
#pragma once

#include <QString>
#include <functional>
#include <optional>

#include "desktop/DialogRequests.h"

class QWidget;

namespace mv {

enum class MessageIcon { None, Information, Exclamation, Critical };

class Dialogs {
 public:
  virtual ~Dialogs() = default;
  // An OK button only; returns when the box has been closed.
  virtual void message(QWidget* owner, const QString& title, const QString& text, MessageIcon icon) = 0;
  // A question with Yes and No; No is the default, and what closing the box means.
  virtual bool confirm(QWidget* owner, const QString& title, const QString& question) = 0;
  // nullopt when cancelled.
  virtual std::optional<QString> input(QWidget* owner, const QString& title, const QString& prompt,
                                       const QString& initial) = 0;
  // The full path of the confirmed folder, nullopt when cancelled. Rooted at the whole file system.
  virtual std::optional<QString> folder(const FolderRequest& request) = 0;
  // The full path of an existing file, nullopt when cancelled.
  virtual std::optional<QString> openFile(const FileRequest& request) = 0;

  // The installed one; the real dialogs when there is none.
  static Dialogs& current();
  // Installs `dialogs` (not owned); nullptr brings the real ones back. Returns what was installed before.
  static Dialogs* install(Dialogs* dialogs);
};

// The program's name, the title of boxes that have none of their own.
QString applicationTitle();

void showMessage(QWidget* owner, const QString& title, const QString& text, MessageIcon icon);
bool askConfirmation(QWidget* owner, const QString& title, const QString& question);
std::optional<QString> askText(QWidget* owner, const QString& title, const QString& prompt, const QString& initial);
std::optional<QString> browseForFolder(const FolderRequest& request);
std::optional<QString> browseForFile(const FileRequest& request);

}  // namespace mv
