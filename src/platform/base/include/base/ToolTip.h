// Texts of any origin as tool tips.
#pragma once

#include <QString>

namespace mv {

// What a widget is given so that its tool tip shows exactly `text`: left to itself it reads what looks like markup as
// such.
QString plainToolTip(const QString& text);

}  // namespace mv
