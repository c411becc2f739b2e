// The pictures of the toolbar buttons.
#pragma once

#include <QIcon>
#include <QString>

namespace mv {

// "new", "edit", "delete", "start", "stop", "connections", "expand"; another name gives an empty icon.
QIcon toolIcon(const QString& name);

}  // namespace mv
