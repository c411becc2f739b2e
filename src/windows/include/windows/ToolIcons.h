// The pictures of the toolbar buttons.
#pragma once

#include <QIcon>
#include <QString>

namespace mv {

// "new", "edit", "delete", "start", "stop", "connections", "expand", "updates", "help", in the colours of the palette
// that the program has when it is drawn; another name gives an empty icon.
QIcon toolIcon(const QString& name);

}  // namespace mv
