// Host names of the vendor's servers: defaults under a reserved name, each to be overridden in the per-user settings
// (application "Morvane2000", section "Servers").
#pragma once

#include <QString>

namespace mv {

// A feed of the update server; `path` begins with "/".
QString updatePage(const QString& path);
// Pages and the root of the support server.
QString supportPage(const QString& path);
// The root page of the maker's web server.
QString makerPage();

}  // namespace mv
