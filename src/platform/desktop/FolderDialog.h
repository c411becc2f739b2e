// The folder dialog: a tree of the file system's folders, a line to type a path into, a button that makes a folder.
#pragma once

#include <QDialog>
#include <QTimer>
#include <memory>

#include "desktop/DialogRequests.h"

class QFileSystemModel;

namespace mv {

namespace Ui {
class FolderDialog;
}

class FolderDialog : public QDialog {
  Q_OBJECT
 public:
  FolderDialog(const FolderRequest& request, QWidget* parent);
  ~FolderDialog() override;

  // The folder in the line, absolute, without a trailing separator (the root keeps its own).
  QString folder() const;
  // Remembers the folder for the next dialogs.
  void accept() override;

 private:
  void showTree();
  void addPlaces();
  void addPlace(const char* name, const QString& caption, const QString& path);
  void treeMoved(const QModelIndex& index);
  void lineEdited();
  void makeFolder();
  void showFolder(const QString& path);
  void updateButtons();

  std::unique_ptr<Ui::FolderDialog> ui_;
  QString hint_;  // what the status line says while all is well
  QFileSystemModel* model_;
  QTimer settled_;  // runs out when the tree has stopped moving
};

}  // namespace mv
