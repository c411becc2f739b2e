// A fast web site on the loopback interface, made up from numbers: nothing is read from disk, and it runs in a process
// of its own, so that its processor time is not that of the program under test.
//
//   /                    page 0
//   /p/<n>.html          page n: links to the pages and files that follow it, half and half, each spelt once
//   /f/<n>.jpg           file n
//   /links/<n>.html      a page of n links
//   /bytes/<n>.html      a page of n bytes, a link in every kilobyte or so
//   /big/<n>.jpg         a file of n bytes
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

namespace mvbench {

struct SiteShape {
  std::int64_t pages = 2000;
  std::int64_t links = 100;  // of a page
  std::int64_t files = 2000;
  std::int64_t fileBytes = std::int64_t{16} * 1024;
};

// Serves for ever on 127.0.0.1 to 127.0.0.<hosts>; `port` 0 takes a free one. `ready` is told the port. Raises
// std::system_error when the port is taken.
void serve(const SiteShape& shape, int hosts, std::uint16_t port, void (*ready)(std::uint16_t port, void* data),
           void* data);

// The same in a process of its own, which ends with this object or with the program. To be made before the program has
// threads.
class ServerProcess {
 public:
  explicit ServerProcess(const SiteShape& shape, int hosts = 1);
  ~ServerProcess();
  ServerProcess(const ServerProcess&) = delete;
  ServerProcess& operator=(const ServerProcess&) = delete;

  // "127.0.0.1:port", and those behind it.
  std::string host(int number = 1) const;

 private:
  pid_t process_ = -1;
  std::uint16_t port_ = 0;
};

}  // namespace mvbench
