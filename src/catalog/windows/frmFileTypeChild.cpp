#include "catalog_windows/frmFileTypeChild.h"

#include <QKeyEvent>
#include <algorithm>

#include "app/Settings.h"
#include "base/Text.h"
#include "store/FileTypeStore.h"
#include "ui_frmFileTypeChild.h"

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
                    .record = "filetype",
                    .manager = "FileType Manager",
                    .numberedByDatabase = true}),
      ui_(std::make_unique<Ui::frmFileTypeChild>()) {
  ui_->setupUi(this);
  setSpokenName("New Filetype");
  connectButtons(ui_->btnOK, nullptr, ui_->btnCancel);
  showNumberIn(ui_->lblID);
  startIn(ui_->txtFileTypeExtention);
  new KeyDiscarder(ui_->txtFileTypeExtention, kPeriod);
  new KeyDiscarder(ui_->txtFiletypeDescription, kDoubleQuote);
  connect(ui_->txtFileTypeExtention, &QLineEdit::textEdited, this, &frmFileTypeChild::discardPastedPeriods);
  connect(ui_->txtFileTypeExtention, &QLineEdit::textChanged, this,
          [this](const QString& text) { ui_->btnOK->setEnabled(!text.isEmpty()); });
}

frmFileTypeChild::~frmFileTypeChild() = default;

void frmFileTypeChild::initWindow() {
  RecordEditor::initWindow();
  if (isNew()) {
    CanDelete = "yes";
    DownloadByDefault = "no";
  }
  ui_->txtFileTypeExtention->setText(Extension);
  ui_->txtFiletypeDescription->setText(Description);
  ui_->btnOK->setEnabled(!Extension.isEmpty());
  ui_->chkDownloadByDefault->setChecked(DownloadByDefault != "no");
}

// Pasted and dropped text does not come through the keys.
void frmFileTypeChild::discardPastedPeriods(const QString& typed) {
  if (!typed.contains(kPeriod)) return;
  const QString before = typed.left(ui_->txtFileTypeExtention->cursorPosition());
  ui_->txtFileTypeExtention->setText(QString(typed).remove(kPeriod));
  ui_->txtFileTypeExtention->setCursorPosition(static_cast<int>(before.size() - before.count(kPeriod)));
}

// By another record.
bool frmFileTypeChild::extensionIsTaken() const {
  const std::vector<Id> named = fileTypesNamed(toUtf8(ui_->txtFileTypeExtention->text()));
  return std::any_of(named.begin(), named.end(), [this](Id id) { return isNew() || id != FileTypeId; });
}

RecordEditor::Checks frmFileTypeChild::checks(Choice) const {
  return {{extensionIsTaken(), nullptr, "This Extension is already in the database.", ui_->txtFileTypeExtention,
           MessageIcon::None}};
}

const clsFileType& frmFileTypeChild::record() {
  DownloadByDefault = yesNo(ui_->chkDownloadByDefault->isChecked());
  fileType_.Description = toUtf8(ui_->txtFiletypeDescription->text());
  fileType_.Extension = toUtf8(ui_->txtFileTypeExtention->text());
  fileType_.CanDelete = CanDelete;
  fileType_.DownloadByDefault = DownloadByDefault;
  return fileType_;
}

void frmFileTypeChild::insertRecord() { record().Add(); }

bool frmFileTypeChild::updateRecord() { return record().Update(FileTypeId); }

}  // namespace mv
