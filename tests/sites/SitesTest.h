// What the tests of the site windows share beyond working controls.
#pragma once

#include <string>

#include "base/Text.h"
#include "database/RawStatement.h"
#include "sites_windows/frmNew.h"
#include "testkit/Controls.h"
#include "testkit/Fixture.h"

namespace mvtest {

class SitesTest : public WindowTest {
 protected:
  // The pages of the site editor.
  enum Page { kRequired = -1, kAuthentication, kFiletypes, kFilters, kPaths, kOther = 6 };

  void openNew(Page page = kRequired) { openEdit(0, page, "new"); }
  void openEdit(mv::Id id, Page page = kRequired, const char* mode = "edit") {
    editor = new mv::frmNew;
    editor->Mode = mode;
    editor->SiteID = id;
    editor->open();
    showPage(page);
  }
  void showPage(Page page) {
    control<QTabWidget>(editor, "SSTab1").setCurrentIndex(page == kRequired ? 0 : 1);
    control<QTabWidget>(editor, "SSTab2").setCurrentIndex(page);
    QCoreApplication::processEvents();
  }

  // The first with a plain click, the others with Ctrl.
  static void clickRows(mv::ListView& list, const std::vector<int>& rows) {
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    for (const int row : rows) {
      const QRect place = list.visualRect(list.model()->index(row, 0));
      QTest::mouseClick(list.viewport(), Qt::LeftButton, modifiers, place.center());
      modifiers = Qt::ControlModifier;
    }
  }

  // The first column, in list order.
  static std::string names(const mv::ListView& list) {
    const auto texts = columnTexts(list);
    return QStringList(texts.begin(), texts.end()).join(',').toStdString();
  }

  static mv::ChildWindow* windowTitled(const QString& caption) {
    return mv::WindowRegistry::instance().findByCaption(caption);
  }

  // A column of all rows, as one text with commas.
  static std::string all(const std::string& column, const std::string& tableAndWhere) {
    QStringList texts;
    for (mv::Recordset rows = mv::gDatabase.query(mv::rawStatement("select " + column + " as v from " + tableAndWhere));
         !rows.endOfRows(); rows.moveNext())
      texts << mv::toQString(rows.text("v"));
    return mv::toUtf8(texts.join(','));
  }

  mv::frmNew* editor = nullptr;
};

}  // namespace mvtest
