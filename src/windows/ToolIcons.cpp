#include "windows/ToolIcons.h"

#include <QFile>

// A static library's resources are linked in only when they are asked for, and only from outside every namespace.
static void initToolIcons() { Q_INIT_RESOURCE(icons); }

namespace mv {

QIcon toolIcon(const QString& name) {
  initToolIcons();
  const QString path = QStringLiteral(":/tools/%1.svg").arg(name);
  return QFile::exists(path) ? QIcon(path) : QIcon();
}

}  // namespace mv
