#include "windows/ToolIcons.h"

#include "desktop/PaletteIcon.h"

// A static library's resources are linked in only when they are asked for, and only from outside every namespace.
static void initToolIcons() { Q_INIT_RESOURCE(icons); }

namespace mv {

QIcon toolIcon(const QString& name) {
  initToolIcons();
  return paletteIcon(QStringLiteral(":/tools/%1.svg").arg(name));
}

}  // namespace mv
