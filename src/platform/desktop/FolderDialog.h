// The folder dialog: a tree of the file system's folders, a line to type a path into, a button that makes a folder.
#pragma once

#include <QDialog>
#include <QTimer>

#include "desktop/DialogRequests.h"

class QFileSystemModel;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeView;

namespace mv {

class FolderDialog : public QDialog {
  Q_OBJECT
 public:
  FolderDialog(const FolderRequest& request, QWidget* parent);

  // The folder in the line, absolute, without a trailing separator (the root keeps its own).
  QString folder() const;
  // Remembers the folder for the next dialogs.
  void accept() override;

 private:
  QTreeView* makeTree();
  void layOut(const QString& promptText);
  QLayout* makeButtons();
  QLayout* makePlaces();
  void treeMoved(const QModelIndex& index);
  void lineEdited();
  void makeFolder();
  void showFolder(const QString& path);
  void updateButtons();

  QString hint_;  // what the status line says while all is well
  QFileSystemModel* model_;
  QTreeView* tree_;
  QLineEdit* line_;
  QLabel* status_;
  QPushButton* ok_ = nullptr;
  QPushButton* newFolder_ = nullptr;
  QTimer settled_;  // runs out when the tree has stopped moving
};

}  // namespace mv
