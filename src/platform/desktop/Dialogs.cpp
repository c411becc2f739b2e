#include "desktop/Dialogs.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>
#include <utility>

#include "FolderDialog.h"
#include "base/ProgramName.h"

namespace mv {
namespace {

Dialogs* installed = nullptr;

// The window that a box stands before. A child window may be gone before its box is; its frame is not.
QWidget* topLevel(QWidget* owner) { return owner ? owner->window() : nullptr; }

QMessageBox::Icon boxIcon(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::Information:
      return QMessageBox::Information;
    case MessageIcon::Exclamation:
      return QMessageBox::Warning;
    case MessageIcon::Critical:
      return QMessageBox::Critical;
    case MessageIcon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

class DesktopDialogs : public Dialogs {
 public:
  void message(QWidget* owner, const QString& title, const QString& text, MessageIcon icon) override {
    const QPointer<QMessageBox> box = new QMessageBox(topLevel(owner));
    box->setWindowTitle(title);
    box->setTextFormat(Qt::PlainText);
    box->setText(QString(text).replace("\r\n", "\n"));
    box->setIcon(boxIcon(icon));
    box->setStandardButtons(QMessageBox::Ok);
    box->exec();
    delete box;
  }

  bool confirm(QWidget* owner, const QString& title, const QString& question) override {
    const QPointer<QMessageBox> box =
        new QMessageBox(QMessageBox::Question, title, question, QMessageBox::Yes | QMessageBox::No, topLevel(owner));
    box->setTextFormat(Qt::PlainText);
    box->setDefaultButton(QMessageBox::No);
    const bool yes = box->exec() == QMessageBox::Yes && box;
    delete box;
    return yes;
  }

  std::optional<QString> input(QWidget* owner, const QString& title, const QString& prompt,
                               const QString& initial) override {
    const QPointer<QInputDialog> box = new QInputDialog(topLevel(owner));
    box->setWindowTitle(title);
    box->setLabelText(prompt);
    box->setTextValue(initial);
    std::optional<QString> answer;
    if (box->exec() == QDialog::Accepted && box) answer = box->textValue();
    delete box;
    return answer;
  }

  std::optional<QString> folder(const FolderRequest& request) override {
    const QPointer<FolderDialog> box = new FolderDialog(request, topLevel(request.owner));
    std::optional<QString> answer;
    if (box->exec() == QDialog::Accepted && box) answer = box->folder();
    delete box;
    return answer;
  }

  std::optional<QString> openFile(const FileRequest& request) override {
    const QPointer<QFileDialog> box =
        new QFileDialog(topLevel(request.owner), request.title, request.initialFolder, request.filter);
    box->setFileMode(QFileDialog::ExistingFile);
    std::optional<QString> answer;
    if (box->exec() == QDialog::Accepted && box && !box->selectedFiles().isEmpty()) answer = box->selectedFiles()[0];
    delete box;
    return answer;
  }
};

}  // namespace

Dialogs& Dialogs::current() {
  static DesktopDialogs desktop;
  return installed ? *installed : desktop;
}

Dialogs* Dialogs::install(Dialogs* dialogs) { return std::exchange(installed, dialogs); }

QString applicationTitle() { return kProgramName; }

void showMessage(QWidget* owner, const QString& title, const QString& text, MessageIcon icon) {
  Dialogs::current().message(owner, title, text, icon);
}

bool askConfirmation(QWidget* owner, const QString& title, const QString& question) {
  return Dialogs::current().confirm(owner, title, question);
}

std::optional<QString> askText(QWidget* owner, const QString& title, const QString& prompt, const QString& initial) {
  return Dialogs::current().input(owner, title, prompt, initial);
}

std::optional<QString> browseForFolder(const FolderRequest& request) { return Dialogs::current().folder(request); }

std::optional<QString> browseForFile(const FileRequest& request) { return Dialogs::current().openFile(request); }

}  // namespace mv
