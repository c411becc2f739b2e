#include "catalog_windows/frmFileTypeChild.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "app/Settings.h"
#include "base/Text.h"
#include "desktop/Dialogs.h"
#include "windows/ScrollingPage.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

constexpr int kWidth = 5200;   // twips
constexpr int kHeight = 2850;  // twips
constexpr QChar kPeriod = u'.';
constexpr QChar kDoubleQuote = u'"';

// Swallows one character's key. Filtering the key, not the text, leaves a selection standing when it is typed over.
class KeyDiscarder : public QObject {
 public:
  KeyDiscarder(QLineEdit* box, QChar character) : QObject(box), character_(character) { box->installEventFilter(this); }

  bool eventFilter(QObject*, QEvent* event) override {
    return event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->text() == character_;
  }

 private:
  QChar character_;
};

}  // namespace

frmFileTypeChild::frmFileTypeChild()
    : EditorWindow(QString(), kWidth, kHeight),
      txtFileTypeExtention_(new QLineEdit(this)),
      txtFiletypeDescription_(new QLineEdit(this)),
      chkDownloadByDefault_(new QCheckBox("Download by default", this)),
      lblID_(new QLabel(this)) {
  setObjectName("frmFileTypeChild");
  buildFields();
  new KeyDiscarder(txtFileTypeExtention_, kPeriod);
  new KeyDiscarder(txtFiletypeDescription_, kDoubleQuote);
  connect(txtFileTypeExtention_, &QLineEdit::textEdited, this, &frmFileTypeChild::discardPastedPeriods);
  connect(txtFileTypeExtention_, &QLineEdit::textChanged, this,
          [this](const QString& text) { okButton().setEnabled(!text.isEmpty()); });
}

void frmFileTypeChild::buildFields() {
  txtFileTypeExtention_->setObjectName("txtFileTypeExtention");
  txtFiletypeDescription_->setObjectName("txtFiletypeDescription");
  chkDownloadByDefault_->setObjectName("chkDownloadByDefault");
  chkDownloadByDefault_->setToolTip("Automatically download this filetype from all newly added web sites.");
  lblID_->setObjectName("lblID");
  lblID_->setAccessibleName("Identifier");

  auto* grid = new QGridLayout(makeScrollingPage(this));
  grid->addWidget(makeLabel("lblFileTypeExtension", "Extension:", txtFileTypeExtention_), 0, 0);
  grid->addWidget(txtFileTypeExtention_, 0, 1);
  grid->addWidget(makeLabel("lblFileTypeDescription", "Description:", txtFiletypeDescription_), 1, 0);
  grid->addWidget(txtFiletypeDescription_, 1, 1);
  grid->addWidget(chkDownloadByDefault_, 2, 1);
  grid->setRowStretch(3, 1);
  grid->addWidget(lblID_, 4, 0, Qt::AlignLeft | Qt::AlignVCenter);
  grid->addLayout(makeButtons("btnOK", QString(), "btnCancel", "&OK", "&Cancel"), 4, 1);
}

void frmFileTypeChild::initWindow() {
  if (Mode == "new") {
    CanDelete = "yes";
    DownloadByDefault = "no";
  } else {
    lblID_->setText(QString::number(FileTypeId));
  }
  txtFileTypeExtention_->setText(Extension);
  txtFiletypeDescription_->setText(Description);
  okButton().setEnabled(!Extension.isEmpty());
  chkDownloadByDefault_->setChecked(DownloadByDefault != "no");
  txtFileTypeExtention_->setFocus();
}

// Pasted and dropped text does not come through the keys.
void frmFileTypeChild::discardPastedPeriods(const QString& typed) {
  if (!typed.contains(kPeriod)) return;
  const QString before = typed.left(txtFileTypeExtention_->cursorPosition());
  txtFileTypeExtention_->setText(QString(typed).remove(kPeriod));
  txtFileTypeExtention_->setCursorPosition(static_cast<int>(before.size() - before.count(kPeriod)));
}

bool frmFileTypeChild::extensionIsTaken() const {
  Recordset rows =
      gDatabase.query("select id from valid_filetypes where name = " + quoted(toUtf8(txtFileTypeExtention_->text())));
  for (; !rows.endOfRows(); rows.moveNext())
    if (Mode == "new" || rows.number("id") != FileTypeId) return true;
  return false;
}

bool frmFileTypeChild::accept() {
  if (extensionIsTaken()) {
    showMessage(this, applicationTitle(), "This Extension is already in the database.", MessageIcon::None);
    return false;
  }
  if (!save()) {
    showMessage(this, applicationTitle(), "This filetype has been deleted meanwhile. It was not saved.",
                MessageIcon::Exclamation);
    return false;
  }
  WindowRegistry::instance().markRefreshPending("FileType Manager");
  return true;
}

bool frmFileTypeChild::save() {
  DownloadByDefault = yesNo(chkDownloadByDefault_->isChecked());
  fileType_.Description = toUtf8(txtFiletypeDescription_->text());
  fileType_.Extension = toUtf8(txtFileTypeExtention_->text());
  fileType_.CanDelete = CanDelete;
  fileType_.DownloadByDefault = DownloadByDefault;
  if (Mode == "edit") return fileType_.Update(FileTypeId);
  fileType_.Add();
  return true;
}

}  // namespace mv
