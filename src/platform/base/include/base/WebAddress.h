// What is a page of the web, and may therefore be fetched or handed to a browser.
#pragma once

#include <QString>

namespace mv {

// `url` is the whole address of a page: scheme http or https, and a host.
bool isWebAddress(const QString& url);

}  // namespace mv
