#include "catalog_windows/frmFileTypeChild.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <algorithm>

#include "app/Settings.h"
#include "base/Text.h"
#include "store/FileTypeStore.h"
#include "windows/ScrollingPage.h"

namespace mv {

namespace {

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
    : RecordEditor({.width = 5200,
                    .height = 2850,
                    .windowName = "frmFileTypeChild",
                    .record = "filetype",
                    .manager = "FileType Manager",
                    .numberedByDatabase = true}),
      txtFileTypeExtention_(new QLineEdit(this)),
      txtFiletypeDescription_(new QLineEdit(this)),
      chkDownloadByDefault_(new QCheckBox("Download by default", this)) {
  buildFields();
  startIn(txtFileTypeExtention_);
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

  auto* grid = new QGridLayout(makeScrollingPage(this));
  grid->addWidget(makeLabel("lblFileTypeExtension", "Extension:", txtFileTypeExtention_), 0, 0);
  grid->addWidget(txtFileTypeExtention_, 0, 1);
  grid->addWidget(makeLabel("lblFileTypeDescription", "Description:", txtFiletypeDescription_), 1, 0);
  grid->addWidget(txtFiletypeDescription_, 1, 1);
  grid->addWidget(chkDownloadByDefault_, 2, 1);
  grid->setRowStretch(3, 1);
  grid->addWidget(makeIdLabel("lblID"), 4, 0, Qt::AlignLeft | Qt::AlignVCenter);
  grid->addLayout(makeButtons("btnOK", QString(), "btnCancel", "&OK", "&Cancel"), 4, 1);
}

void frmFileTypeChild::initWindow() {
  RecordEditor::initWindow();
  if (isNew()) {
    CanDelete = "yes";
    DownloadByDefault = "no";
  }
  txtFileTypeExtention_->setText(Extension);
  txtFiletypeDescription_->setText(Description);
  okButton().setEnabled(!Extension.isEmpty());
  chkDownloadByDefault_->setChecked(DownloadByDefault != "no");
}

// Pasted and dropped text does not come through the keys.
void frmFileTypeChild::discardPastedPeriods(const QString& typed) {
  if (!typed.contains(kPeriod)) return;
  const QString before = typed.left(txtFileTypeExtention_->cursorPosition());
  txtFileTypeExtention_->setText(QString(typed).remove(kPeriod));
  txtFileTypeExtention_->setCursorPosition(static_cast<int>(before.size() - before.count(kPeriod)));
}

// By another record.
bool frmFileTypeChild::extensionIsTaken() const {
  const std::vector<Id> named = fileTypesNamed(toUtf8(txtFileTypeExtention_->text()));
  return std::any_of(named.begin(), named.end(), [this](Id id) { return isNew() || id != FileTypeId; });
}

RecordEditor::Checks frmFileTypeChild::checks(Choice) const {
  return {{extensionIsTaken(), nullptr, "This Extension is already in the database.", txtFileTypeExtention_,
           MessageIcon::None}};
}

const clsFileType& frmFileTypeChild::record() {
  DownloadByDefault = yesNo(chkDownloadByDefault_->isChecked());
  fileType_.Description = toUtf8(txtFiletypeDescription_->text());
  fileType_.Extension = toUtf8(txtFileTypeExtention_->text());
  fileType_.CanDelete = CanDelete;
  fileType_.DownloadByDefault = DownloadByDefault;
  return fileType_;
}

void frmFileTypeChild::insertRecord() { record().Add(); }

bool frmFileTypeChild::updateRecord() { return record().Update(FileTypeId); }

}  // namespace mv
