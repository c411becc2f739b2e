#include "app/UserNotice.h"

#include <cstdio>
#include <utility>

namespace mv {

namespace {

std::function<void(const UserNotice&)>& installedHandler() {
  static std::function<void(const UserNotice&)> handler;
  return handler;
}

}  // namespace

void notifyUser(const UserNotice& notice) {
  if (installedHandler())
    installedHandler()(notice);
  else
    std::fprintf(stderr, "%s\n", notice.text.c_str());
}

void setNoticeHandler(std::function<void(const UserNotice&)> handler) { installedHandler() = std::move(handler); }

}  // namespace mv
