#include "frmNewTag.h"

#include <QGridLayout>
#include <QLabel>

#include "base/Text.h"
#include "html/StarTag.h"
#include "store/TagStore.h"
#include "windows/EntryBox.h"
#include "windows/ScrollingPage.h"

namespace mv {

frmNewTag::frmNewTag()
    : RecordEditor({.caption = "New Tag",
                    .width = 5200,
                    .height = 2100,
                    .windowName = "frmNewTag",
                    .record = "tag",
                    .manager = "Tag Manager",
                    .rebuildsManager = true,
                    .sequence = "tag_id",
                    .numberedByDatabase = true}),
      txtTagName_(new EntryBox("txtTagName", EntryBox::Accepts::AnyText, this)) {
  auto* grid = new QGridLayout(makeScrollingPage(this));
  grid->addWidget(makeLabel("lblTag", "&Tag:", txtTagName_), 0, 0);
  grid->addWidget(txtTagName_, 0, 1);
  auto* kinds = new QLabel("As it is written: <img src=     With a star, in any spelling: <img * src=");
  kinds->setObjectName("lblKinds");
  kinds->setTextFormat(Qt::PlainText);
  grid->addWidget(kinds, 1, 1);
  grid->setRowStretch(2, 1);
  grid->addWidget(makeIdLabel("lblId"), 3, 0, Qt::AlignLeft | Qt::AlignVCenter);
  grid->addLayout(makeButtons("cmdOK", QString(), "cmdCancel", "&OK", "&Cancel"), 3, 1);
  startIn(txtTagName_);
}

void frmNewTag::loadRecord() {
  const auto tag = findTag(TagId);
  if (!tag) return;
  txtTagName_->setText(toQString(tag->text));
  txtTagName_->selectAll();
}

Tag frmNewTag::record() const { return {TagId, toUtf8(txtTagName_->text())}; }

RecordEditor::Checks frmNewTag::checks(Choice) const {
  const char* const problem = starTagProblem(record().text);
  return {{txtTagName_->text().isEmpty(), "No Tag Text Provided", "Please enter the text for this tag", txtTagName_},
          {*problem != '\0', "No Tag With A Star", problem, txtTagName_}};
}

void frmNewTag::insertRecord() { insertTag(record()); }

bool frmNewTag::updateRecord() { return updateTag(record()); }

}  // namespace mv
