// What the tests of the site windows share: controls found by name and worked by mouse and keys.
#pragma once

#include <QTabWidget>
#include <QTest>
#include <QTreeWidgetItem>
#include <string>

#include "app/WindowRegistry.h"
#include "platform/ListView.h"
#include "platform/Text.h"
#include "support/Fixture.h"

namespace mvtest {

class SitesTest : public WindowTest {
 protected:
  // A control of `window`; a wrong name fails the test and ends it.
  template <class Control>
  static Control& control(QWidget* window, const char* name) {
    auto* found = window->findChild<Control*>(QString::fromLatin1(name));
    if (!found) throw std::runtime_error(std::string("no control ") + name);
    return *found;
  }

  // A click on a button; one on a hidden or disabled button does what it does for the user: nothing.
  static void click(QWidget* window, const char* name) {
    QTest::mouseClick(&control<QWidget>(window, name), Qt::LeftButton);
  }

  static void clickRow(mv::ListView& list, int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    list.scrollToItem(list.topLevelItem(row));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, modifiers, placeOf(list, row));
  }
  static void clickRows(mv::ListView& list, const std::vector<int>& rows) {
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    for (const int row : rows) {
      clickRow(list, row, modifiers);
      modifiers = Qt::ControlModifier;
    }
  }
  static QPoint placeOf(mv::ListView& list, int row) {
    return QPoint(5, list.visualItemRect(list.topLevelItem(row)).center().y());
  }

  // The first column, in list order.
  static QStringList names(const mv::ListView& list) {
    QStringList texts;
    for (int row = 0; row < list.rowCount(); ++row) texts << list.cell(row, 0);
    return texts;
  }

  static mv::ChildWindow* windowTitled(const QString& caption) {
    return mv::WindowRegistry::instance().findByCaption(caption);
  }

  std::string site(int id, const std::string& column) const {
    return value("select " + column + " from site where id = " + std::to_string(id));
  }
  // A column of all rows, as one text with commas.
  std::string all(const std::string& column, const std::string& tableAndWhere) const {
    std::string texts;
    for (mv::Recordset rows = mv::gDatabase.query("select " + column + " as v from " + tableAndWhere);
         !rows.endOfRows(); rows.moveNext())
      texts += (texts.empty() ? "" : ",") + rows.text("v");
    return texts;
  }
};

}  // namespace mvtest
