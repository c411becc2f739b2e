#include "base/SingleRun.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <utility>

namespace mv {

namespace {

// In the abstract name space, unix(7): a name that is no file, and that goes with its socket.
struct Address {
  explicit Address(const std::string& name) {
    parts.sun_family = AF_UNIX;
    const std::size_t length = std::min(name.size(), sizeof parts.sun_path - 1);
    std::copy_n(name.data(), length, parts.sun_path + 1);
    size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + length);
  }
  const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&parts); }

  sockaddr_un parts = {};
  socklen_t size = 0;
};

}  // namespace

SingleRun::SingleRun(const std::string& folder) {
  struct stat status {};
  if (stat(folder.c_str(), &status) != 0) return;
  name_ = "morvane2000-" + std::to_string(getuid()) + '-' + std::to_string(status.st_dev) + '-' +
          std::to_string(status.st_ino);
  socket_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  const Address own(name_);
  if (socket_ >= 0) first_ = bind(socket_, own.get(), own.size) == 0 || errno != EADDRINUSE;
}

SingleRun::~SingleRun() {
  notifier_.reset();
  if (socket_ >= 0) close(socket_);
}

void SingleRun::callFirst() const {
  const Address first(name_);
  const char call = 1;
  sendto(socket_, &call, sizeof call, 0, first.get(), first.size);
}

void SingleRun::onCall(std::function<void()> work) {
  if (socket_ < 0) return;
  notifier_ = std::make_unique<QSocketNotifier>(socket_, QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                   [socket = socket_, work = std::move(work)] {
                     char call = 0;
                     while (recv(socket, &call, sizeof call, 0) > 0) continue;
                     work();
                   });
}

}  // namespace mv
