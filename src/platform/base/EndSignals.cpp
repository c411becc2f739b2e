#include "base/EndSignals.h"

#include <sys/socket.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <csignal>

namespace mv {

namespace {

// A signal handler may do little more than write a byte; the other end of the pair wakes the event loop.
int gSignalPair[2] = {-1, -1};

void noteSignal(int) {
  const char byte = 1;
  [[maybe_unused]] const auto written = ::write(gSignalPair[0], &byte, sizeof byte);
}

// One that the starter has the program ignore, as nohup does, stays ignored.
void catchSignal(int number) {
  struct sigaction action = {};
  if (::sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) return;
  action = {};
  action.sa_handler = noteSignal;
  action.sa_flags = SA_RESTART;
  ::sigaction(number, &action, nullptr);
}

}  // namespace

void onEndSignal(std::function<void()> work) {
  static QSocketNotifier* notifier = nullptr;
  if (!notifier) {
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, gSignalPair) != 0) return;
    notifier = new QSocketNotifier(gSignalPair[1], QSocketNotifier::Read, QCoreApplication::instance());
  }
  notifier->disconnect();
  QObject::connect(notifier, &QSocketNotifier::activated, notifier, [work = std::move(work)] {
    char byte = 0;
    [[maybe_unused]] const auto taken = ::read(gSignalPair[1], &byte, sizeof byte);
    work();
  });
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) catchSignal(number);
}

}  // namespace mv
