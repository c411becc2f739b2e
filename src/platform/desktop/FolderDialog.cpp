#include "FolderDialog.h"

#include <QDir>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QInputDialog>
#include <QSignalBlocker>
#include <QStandardPaths>
#include <QToolButton>

#include "base/ProgramName.h"
#include "base/UserSettings.h"
#include "ui_FolderDialog.h"

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
      ui_(std::make_unique<Ui::FolderDialog>()),
      hint_(request.statusText),
      model_(new QFileSystemModel(this)) {
  ui_->setupUi(this);
  setWindowTitle(request.title);
  ui_->prompt->setText(request.prompt);
  addPlaces();
  showTree();
  connect(ui_->path, &QLineEdit::textEdited, this, &FolderDialog::lineEdited);
  connect(ui_->newFolder, &QPushButton::clicked, this, &FolderDialog::makeFolder);
  connect(ui_->ok, &QPushButton::clicked, this, &QDialog::accept);
  connect(ui_->cancel, &QPushButton::clicked, this, &QDialog::reject);
  showFolder(nearestFolder(request.initialFolder));
  resize(kInitialSize);
  ui_->folders->setFocus();
}

FolderDialog::~FolderDialog() = default;

void FolderDialog::showTree() {
  model_->setFilter(QDir::Dirs | QDir::Drives | QDir::NoDotAndDotDot);
  model_->setRootPath(QDir::rootPath());
  // The model's own icons are the theme's, and there may be no theme.
  static QFileIconProvider icons;
  model_->setIconProvider(&icons);
  QTreeView* tree = ui_->folders;
  tree->setModel(model_);
  for (int column = 1; column < model_->columnCount(); ++column) tree->hideColumn(column);
  connect(tree->selectionModel(), &QItemSelectionModel::currentChanged, this, &FolderDialog::treeMoved);
  // The folders above the current one arrive one after the other and are sorted later, each time moving it.
  settled_.setSingleShot(true);
  settled_.setInterval(kSettleMs);
  connect(&settled_, &QTimer::timeout, this,
          [tree] { tree->scrollTo(tree->currentIndex(), QTreeView::PositionAtCenter); });
  connect(model_, &QFileSystemModel::directoryLoaded, this, [this](const QString& loaded) {
    if (folder().startsWith(absoluteFolder(loaded))) settled_.start();
  });
}

// The folders where files usually go, and the one chosen last.
void FolderDialog::addPlaces() {
  addPlace("home", "Home", QDir::homePath());
  addPlace("downloads", "Downloads", QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
  addPlace("pictures", "Pictures", QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
  addPlace("last", "Last One", readUserSetting(kProgramName, kSettings, kLastFolder));
}

void FolderDialog::addPlace(const char* name, const QString& caption, const QString& path) {
  if (!QFileInfo(path).isDir()) return;
  auto* button = new QToolButton(this);
  button->setObjectName(QString::fromLatin1(name));
  button->setText(caption);
  button->setToolTip(path.toHtmlEscaped());
  button->setIcon(QFileIconProvider().icon(QFileIconProvider::Folder));
  button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  connect(button, &QToolButton::clicked, this, [this, path] { showFolder(path); });
  ui_->places->insertWidget(ui_->places->count() - 1, button);
}

void FolderDialog::accept() {
  saveUserSetting(kProgramName, kSettings, kLastFolder, folder());
  QDialog::accept();
}

QString FolderDialog::folder() const { return absoluteFolder(ui_->path->text().trimmed()); }

void FolderDialog::showFolder(const QString& path) {
  const QModelIndex index = model_->index(path);
  ui_->folders->setCurrentIndex(index);
  ui_->folders->expand(index);
  ui_->folders->scrollTo(index);
  ui_->path->setText(absoluteFolder(path));
  updateButtons();
}

void FolderDialog::treeMoved(const QModelIndex& index) {
  if (!index.isValid()) return;
  ui_->path->setText(absoluteFolder(model_->filePath(index)));
  updateButtons();
}

void FolderDialog::lineEdited() {
  const QFileInfo typed(ui_->path->text().trimmed());
  if (typed.isAbsolute() && typed.isDir()) {
    // The tree follows, but does not rewrite what is being typed.
    const QSignalBlocker quiet(ui_->folders->selectionModel());
    const QModelIndex index = model_->index(typed.absoluteFilePath());
    ui_->folders->setCurrentIndex(index);
    ui_->folders->scrollTo(index);
    ui_->folders->viewport()->update();
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
    ui_->status->setText("A folder of this name cannot be made here.");
}

void FolderDialog::updateButtons() {
  const QFileInfo chosen(ui_->path->text().trimmed());
  const bool usable = chosen.isAbsolute() && chosen.isDir();
  ui_->ok->setEnabled(usable);
  ui_->newFolder->setEnabled(usable);
  ui_->status->setText(usable ? hint_ : "There is no such folder.");
}

}  // namespace mv
