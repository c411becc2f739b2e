#include "scan_windows/frmNewTag.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "app/Settings.h"
#include "base/Text.h"
#include "desktop/Dialogs.h"
#include "store/Sequence.h"
#include "windows/EntryBox.h"
#include "windows/ScrollingPage.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

constexpr int kWidth = 5200;   // twips
constexpr int kHeight = 2100;  // twips

}  // namespace

frmNewTag::frmNewTag()
    : EditorWindow("New Tag", kWidth, kHeight),
      txtTagName_(new EntryBox("txtTagName", EntryBox::Accepts::AnyText, this)),
      lblId_(new QLabel(this)) {
  setObjectName("frmNewTag");
  buildFields();
}

void frmNewTag::buildFields() {
  lblId_->setObjectName("lblId");
  lblId_->setAccessibleName("Identifier");

  auto* grid = new QGridLayout(makeScrollingPage(this));
  grid->addWidget(makeLabel("lblTag", "&Tag:", txtTagName_), 0, 0);
  grid->addWidget(txtTagName_, 0, 1);
  grid->setRowStretch(1, 1);
  grid->addWidget(lblId_, 2, 0, Qt::AlignLeft | Qt::AlignVCenter);
  grid->addLayout(makeButtons("cmdOK", QString(), "cmdCancel", "&OK", "&Cancel"), 2, 1);
}

void frmNewTag::initWindow() {
  txtTagName_->setFocus();
  if (Mode == "new") {
    TagId = nextSequenceValue("tag_id");
    lblId_->setText(QString::number(TagId));
    return;
  }
  const Recordset rows = gDatabase.query("select id, tag from valid_tag where id = " + number(TagId));
  if (rows.endOfRows()) return;
  txtTagName_->setText(toQString(rows.text("tag")));
  txtTagName_->selectAll();
  lblId_->setText(toQString(rows.text("id")));
}

bool frmNewTag::accept() {
  const std::string tag = toUtf8(txtTagName_->text());
  if (tag.empty()) {
    showMessage(this, "No Tag Text Provided", "Please enter the text for this tag", MessageIcon::Exclamation);
    return false;
  }
  if (!save(tag)) {
    showMessage(this, applicationTitle(), "This tag has been deleted meanwhile. It was not saved.",
                MessageIcon::Exclamation);
    return false;
  }
  WindowRegistry::instance().tell("Tag Manager", "init");
  return true;
}

// False when the tag to be changed is gone.
bool frmNewTag::save(const std::string& tag) {
  if (Mode == "edit") {
    gDatabase.execute("update valid_tag set tag = " + quoted(tag) + " where id = " + number(TagId));
    return gDatabase.rowsAffected() > 0;
  }
  gDatabase.execute("insert into valid_tag (tag) values (" + quoted(tag) + ") ");
  return true;
}

}  // namespace mv
