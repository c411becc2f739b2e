#include "windows/CommandMenu.h"

#include <QAbstractItemView>
#include <QMenu>
#include <utility>

namespace mv {

namespace {

void open(QWidget& owner, const QPoint& place, const Commands& commands) {
  if (commands.empty()) return;
  auto* menu = new QMenu(&owner);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (const Command& command : commands) {
    if (command.caption.isEmpty()) {
      menu->addSeparator();
      continue;
    }
    QAction* entry = menu->addAction(command.caption, command.work);
    entry->setObjectName(QString::fromLatin1(command.name));
    entry->setEnabled(command.enabled);
  }
  menu->popup(place);
}

}  // namespace

void offerCommands(QAbstractItemView& list, std::function<Commands(int row)> commandsOf,
                   std::function<Commands()> elsewhere) {
  list.setContextMenuPolicy(Qt::CustomContextMenu);
  QObject::connect(&list, &QWidget::customContextMenuRequested, &list,
                   [&list, commandsOf = std::move(commandsOf), elsewhere = std::move(elsewhere)](const QPoint& at) {
                     const QModelIndex row = list.indexAt(at);
                     open(list, list.viewport()->mapToGlobal(at), row.isValid() ? commandsOf(row.row()) : elsewhere());
                   });
}

void offerCommands(QWidget& control, std::function<Commands()> commands) {
  control.setContextMenuPolicy(Qt::CustomContextMenu);
  QObject::connect(&control, &QWidget::customContextMenuRequested, &control,
                   [&control, commands = std::move(commands)](const QPoint& at) {
                     open(control, control.mapToGlobal(at), commands());
                   });
}

}  // namespace mv
