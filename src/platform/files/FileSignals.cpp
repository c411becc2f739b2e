#include "files/FileSignals.h"

#include <csignal>
#include <initializer_list>

namespace mv {

void makeFileSignalsErrors() {
  for (const int number : {SIGXFSZ, SIGPIPE}) std::signal(number, SIG_IGN);
}

}  // namespace mv
