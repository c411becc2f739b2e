// What the benchmarks share: clocks, the median of several runs, and the one form in which a figure is printed.
//
// Times are the calling thread's own: another program on the same machine makes a run longer, but not dearer.
#pragma once

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <string>
#include <utility>
#include <vector>

namespace mvbench {

inline double secondsOf(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// Seconds.
struct Timing {
  double cpu = 0;  // of the calling thread
  double wall = 0;
  double process = 0;  // processor time of all threads
};

template <class Work>
Timing timed(Work&& work) {
  const double cpu = secondsOf(CLOCK_THREAD_CPUTIME_ID);
  const double wall = secondsOf(CLOCK_MONOTONIC);
  const double process = secondsOf(CLOCK_PROCESS_CPUTIME_ID);
  std::forward<Work>(work)();
  return {secondsOf(CLOCK_THREAD_CPUTIME_ID) - cpu, secondsOf(CLOCK_MONOTONIC) - wall,
          secondsOf(CLOCK_PROCESS_CPUTIME_ID) - process};
}

inline double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t half = values.size() / 2;
  return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

// The medians of `runs` runs.
template <class Work>
Timing medianOf(int runs, Work&& work) {
  std::vector<double> cpu, wall, process;
  for (int run = 0; run < runs; ++run) {
    const Timing timing = timed(work);
    cpu.push_back(timing.cpu);
    wall.push_back(timing.wall);
    process.push_back(timing.process);
  }
  return {median(cpu), median(wall), median(process)};
}

enum class Goal { AtLeast, AtMost };

// One line: name  value unit  goal value unit.
inline void printFigure(const std::string& name, double value, const std::string& unit, Goal kind, double goal) {
  std::printf("%-52s %12.6g %-12s goal %s %.6g %s\n", name.c_str(), value, unit.c_str(),
              kind == Goal::AtLeast ? ">=" : "<=", goal, unit.c_str());
  std::fflush(stdout);
}

}  // namespace mvbench
