// What the context menu of the web-site list offers besides the toolbar: the way to a site's files and its address.
#pragma once

#include "store/Id.h"
#include "windows/CommandMenu.h"

class QWidget;

namespace mv {

// Of the site; its name as the list shows it. Raises DatabaseError.
Commands siteCommands(QWidget* owner, Id siteId, const QString& name);

}  // namespace mv
