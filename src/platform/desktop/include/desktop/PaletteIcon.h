// Drawings whose lines can be seen on the windows' background, whatever palette the program has.
#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

namespace mv {

// An icon of the SVG drawing in the file or resource `path`, drawn anew when the program's palette changes. In the
// drawing "currentColor" stands for the colour of the windows' text; any other colour ("#rrggbb") keeps its hue and is
// shown as dark or as light as the background asks for. Areas that shall stay faint have a "fill-opacity".
QIcon paletteIcon(const QString& path);

// `colour`, made darker or lighter until it stands out from `ground` by 4.5 : 1 in the measure of WCAG 2.1 (that asks 3
// for the lines of a picture; where a thin line covers its pixels in part, some of that is lost).
QColor readableOn(const QColor& ground, const QColor& colour);

}  // namespace mv
