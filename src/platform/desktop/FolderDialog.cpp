#include "FolderDialog.h"

#include <QDir>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStandardPaths>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "base/ProgramName.h"
#include "base/UserSettings.h"

namespace mv {
namespace {

constexpr QSize kInitialSize(420, 460);
constexpr int kSettleMs = 50;
constexpr const char* kSettings = "FolderDialog";
constexpr const char* kLastFolder = "LastFolder";

QString absoluteFolder(const QString& path) {
  return QDir::toNativeSeparators(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
}

QString freeName(const QDir& parent) {
  const QString first = "New Folder";
  QString name = first;
  for (int number = 2; parent.exists(name); ++number) name = QStringLiteral("%1 (%2)").arg(first).arg(number);
  return name;
}

// `path` itself, or its nearest parent that is a folder.
QString nearestFolder(const QString& path) {
  if (path.isEmpty()) return QDir::homePath();
  QString folder = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
  while (!QFileInfo(folder).isDir()) {
    const QString parent = QFileInfo(folder).path();
    if (parent == folder) return QDir::rootPath();
    folder = parent;
  }
  return folder;
}

}  // namespace

FolderDialog::FolderDialog(const FolderRequest& request, QWidget* parent)
    : QDialog(parent),
      hint_(request.statusText),
      model_(new QFileSystemModel(this)),
      tree_(makeTree()),
      line_(new QLineEdit(this)),
      status_(new QLabel(this)) {
  setWindowTitle(request.title);
  layOut(request.prompt);
  connect(tree_->selectionModel(), &QItemSelectionModel::currentChanged, this, &FolderDialog::treeMoved);
  // The folders above the current one arrive one after the other and are sorted later, each time moving it.
  settled_.setSingleShot(true);
  settled_.setInterval(kSettleMs);
  connect(&settled_, &QTimer::timeout, this,
          [this] { tree_->scrollTo(tree_->currentIndex(), QTreeView::PositionAtCenter); });
  connect(model_, &QFileSystemModel::directoryLoaded, this, [this](const QString& loaded) {
    if (folder().startsWith(absoluteFolder(loaded))) settled_.start();
  });
  connect(line_, &QLineEdit::textEdited, this, &FolderDialog::lineEdited);
  showFolder(nearestFolder(request.initialFolder));
  resize(kInitialSize);
  tree_->setFocus();
}

void FolderDialog::layOut(const QString& promptText) {
  auto* prompt = new QLabel(promptText, this);
  prompt->setObjectName("prompt");
  line_->setObjectName("path");
  status_->setObjectName("status");
  for (QLabel* label : {prompt, status_}) {
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
  }
  auto* lineLabel = new QLabel("&Folder:", this);
  lineLabel->setBuddy(line_);
  auto* lineRow = new QHBoxLayout;
  lineRow->addWidget(lineLabel);
  lineRow->addWidget(line_, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(prompt);
  layout->addLayout(makePlaces());
  layout->addWidget(tree_, 1);
  layout->addLayout(lineRow);
  layout->addWidget(status_);
  layout->addLayout(makeButtons());
}

QTreeView* FolderDialog::makeTree() {
  model_->setFilter(QDir::Dirs | QDir::Drives | QDir::NoDotAndDotDot);
  model_->setRootPath(QDir::rootPath());
  // The model's own icons are the theme's, and there may be no theme.
  static QFileIconProvider icons;
  model_->setIconProvider(&icons);
  auto* tree = new QTreeView(this);
  tree->setObjectName("folders");
  tree->setModel(model_);
  tree->setHeaderHidden(true);
  tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
  for (int column = 1; column < model_->columnCount(); ++column) tree->hideColumn(column);
  return tree;
}

// The folders where files usually go, and the one chosen last.
QLayout* FolderDialog::makePlaces() {
  auto* row = new QHBoxLayout;
  const auto add = [&](const char* name, const QString& caption, const QString& path) {
    if (!QFileInfo(path).isDir()) return;
    auto* button = new QToolButton(this);
    button->setObjectName(QString::fromLatin1(name));
    button->setText(caption);
    button->setToolTip(path.toHtmlEscaped());
    button->setIcon(QFileIconProvider().icon(QFileIconProvider::Folder));
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    connect(button, &QToolButton::clicked, this, [this, path] { showFolder(path); });
    row->addWidget(button);
  };
  add("home", "Home", QDir::homePath());
  add("downloads", "Downloads", QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
  add("pictures", "Pictures", QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
  add("last", "Last One", readUserSetting(kProgramName, kSettings, kLastFolder));
  row->addStretch();
  return row;
}

void FolderDialog::accept() {
  saveUserSetting(kProgramName, kSettings, kLastFolder, folder());
  QDialog::accept();
}

QLayout* FolderDialog::makeButtons() {
  newFolder_ = new QPushButton("&New Folder", this);
  newFolder_->setObjectName("newFolder");
  newFolder_->setAutoDefault(false);
  ok_ = new QPushButton("OK", this);
  ok_->setObjectName("ok");
  ok_->setDefault(true);
  auto* cancel = new QPushButton("Cancel", this);
  cancel->setObjectName("cancel");
  connect(newFolder_, &QPushButton::clicked, this, &FolderDialog::makeFolder);
  connect(ok_, &QPushButton::clicked, this, &QDialog::accept);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  auto* row = new QHBoxLayout;
  row->addWidget(newFolder_);
  row->addStretch();
  row->addWidget(ok_);
  row->addWidget(cancel);
  return row;
}

QString FolderDialog::folder() const { return absoluteFolder(line_->text().trimmed()); }

void FolderDialog::showFolder(const QString& path) {
  const QModelIndex index = model_->index(path);
  tree_->setCurrentIndex(index);
  tree_->expand(index);
  tree_->scrollTo(index);
  line_->setText(absoluteFolder(path));
  updateButtons();
}

void FolderDialog::treeMoved(const QModelIndex& index) {
  if (!index.isValid()) return;
  line_->setText(absoluteFolder(model_->filePath(index)));
  updateButtons();
}

void FolderDialog::lineEdited() {
  const QFileInfo typed(line_->text().trimmed());
  if (typed.isAbsolute() && typed.isDir()) {
    // The tree follows, but does not rewrite what is being typed.
    const QSignalBlocker quiet(tree_->selectionModel());
    const QModelIndex index = model_->index(typed.absoluteFilePath());
    tree_->setCurrentIndex(index);
    tree_->scrollTo(index);
    tree_->viewport()->update();
  }
  updateButtons();
}

void FolderDialog::makeFolder() {
  QDir parent(folder());
  bool confirmed = false;
  const QString name = QInputDialog::getText(this, "New Folder", "Name of the new folder:", QLineEdit::Normal,
                                             freeName(parent), &confirmed)
                           .trimmed();
  if (!confirmed) return;
  const bool isName = !name.isEmpty() && name != ".." && !name.contains('/') && !name.contains('\\');
  if (isName && parent.mkdir(name))
    showFolder(parent.filePath(name));
  else
    status_->setText("A folder of this name cannot be made here.");
}

void FolderDialog::updateButtons() {
  const QFileInfo chosen(line_->text().trimmed());
  const bool usable = chosen.isAbsolute() && chosen.isDir();
  ok_->setEnabled(usable);
  newFolder_->setEnabled(usable);
  status_->setText(usable ? hint_ : "There is no such folder.");
}

}  // namespace mv
