#include "base/WebAddress.h"

#include <QUrl>

namespace mv {

bool isWebAddress(const QString& url) {
  const QUrl address(url.trimmed());
  return (address.scheme() == "http" || address.scheme() == "https") && !address.host().isEmpty();
}

}  // namespace mv
