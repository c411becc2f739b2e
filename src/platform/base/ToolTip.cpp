#include "base/ToolTip.h"

namespace mv {

// Escaped in any case an "&" would show as "&amp;": what holds no tag is not read as markup.
QString plainToolTip(const QString& text) {
  const bool looksLikeMarkup = text.contains(u'<') || text.contains(QLatin1String("&lt;"));
  return looksLikeMarkup ? "<span>" + text.toHtmlEscaped() + "</span>" : text;
}

}  // namespace mv
