// Working the controls of a window as a user does, found by object name.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <stdexcept>
#include <string>
#include <vector>

#include "desktop/ListView.h"
#include "windows/WindowRegistry.h"

namespace mvtest {

template <class Control>
Control& control(const QWidget* window, const char* name) {
  auto* found = window ? window->findChild<Control*>(QString::fromLatin1(name)) : nullptr;
  if (!found) throw std::logic_error(std::string("no control ") + name);
  return *found;
}

template <class Window>
Window* find() {
  return mv::WindowRegistry::instance().find<Window>();
}

inline bool enabled(const QWidget* window, const char* name) { return control<QWidget>(window, name).isEnabled(); }

// Of a label, a line or a button.
inline QString textOf(const QWidget* window, const char* name) {
  return control<QWidget>(window, name).property("text").toString();
}

// Buttons of a toolbar bear their caption, trimmed.
inline void click(const QWidget* window, const char* button) {
  QTest::mouseClick(&control<QAbstractButton>(window, button), Qt::LeftButton);
}

// In place of what the box holds.
inline void type(const QWidget* window, const char* box, const QString& text) {
  control<QLineEdit>(window, box).selectAll();
  QTest::keyClicks(&control<QLineEdit>(window, box), text);
}

// A check box answers to its box and its text only, which need not reach its middle.
inline void tick(QAbstractButton& box) {
  QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(box.height() / 2, box.height() / 2));
}

// By keyboard; every entry on the way is chosen for a moment.
inline void chooseEntry(QComboBox& box, const QString& text) {
  box.setFocus();
  QTest::keyClick(&box, Qt::Key_Home);
  for (int i = 0; i < box.count() && box.currentText() != text; ++i) QTest::keyClick(&box, Qt::Key_Down);
  if (box.currentText() != text) throw std::logic_error("no entry " + text.toStdString());
}

// In the list's viewport.
inline QPoint middleOf(const mv::ListView& list, int row, int column = 0) {
  return list.visualRect(list.model()->index(row, column)).center();
}

inline void clickRow(mv::ListView& list, int row, int column = 0) {
  if (row < 0 || row >= list.rowCount()) throw std::logic_error("no row " + std::to_string(row));
  list.showRow(row);
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, middleOf(list, row, column));
}

inline void doubleClickRow(mv::ListView& list, int row) {
  clickRow(list, row);
  QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, middleOf(list, row));
}

inline void clickHeader(mv::ListView& list, int column) {
  QHeaderView& header = *list.header();
  const QPoint middle(header.sectionViewportPosition(column) + header.sectionSize(column) / 2, header.height() / 2);
  QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, middle);
}

inline std::vector<QString> columnTexts(const mv::ListView& list, int column = 0) {
  std::vector<QString> texts;
  texts.reserve(static_cast<std::size_t>(list.rowCount()));
  for (int row = 0; row < list.rowCount(); ++row) texts.push_back(list.cell(row, column));
  return texts;
}

// All cells of a row, as one text with bars.
inline std::string rowText(const mv::ListView& list, int row) {
  QStringList cells;
  for (int column = 0; column < list.columnCount(); ++column) cells << list.cell(row, column);
  return cells.join('|').toStdString();
}

}  // namespace mvtest
