// What the program's memory amounts to, in bytes.
#pragma once

#include <fstream>
#include <string>

namespace mvbench {

// A line of /proc/self/status that is given in kB: "VmRSS", "VmHWM", "RssAnon".
inline double memory(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with(name + ":")) return std::stod(line.substr(name.size() + 1)) * 1024;
  return 0;
}

// From here on "VmHWM" is the peak.
inline void forgetPeak() { std::ofstream("/proc/self/clear_refs") << "5"; }

}  // namespace mvbench
