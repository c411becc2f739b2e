#include "frmNewTag.h"

#include "base/Text.h"
#include "html/StarTag.h"
#include "store/TagStore.h"
#include "ui_frmNewTag.h"

namespace mv {

frmNewTag::frmNewTag()
    : RecordEditor({.width = 5200,
                    .height = 2100,
                    .record = "tag",
                    .manager = "Tag Manager",
                    .rebuildsManager = true,
                    .sequence = "tag_id",
                    .numberedByDatabase = true}),
      ui_(std::make_unique<Ui::frmNewTag>()) {
  ui_->setupUi(this);
  connectButtons(ui_->cmdOK, nullptr, ui_->cmdCancel);
  showNumberIn(ui_->lblId);
  startIn(ui_->txtTagName);
}

frmNewTag::~frmNewTag() = default;

void frmNewTag::loadRecord() {
  const auto tag = findTag(TagId);
  if (!tag) return;
  ui_->txtTagName->setText(toQString(tag->text));
  ui_->txtTagName->selectAll();
}

Tag frmNewTag::record() const { return {TagId, toUtf8(ui_->txtTagName->text())}; }

RecordEditor::Checks frmNewTag::checks(Choice) const {
  const char* const problem = starTagProblem(record().text);
  return {{ui_->txtTagName->text().isEmpty(), "No Tag Text Provided", "Please enter the text for this tag",
           ui_->txtTagName},
          {*problem != '\0', "No Tag With A Star", problem, ui_->txtTagName}};
}

void frmNewTag::insertRecord() { insertTag(record()); }

bool frmNewTag::updateRecord() { return updateTag(record()); }

}  // namespace mv
