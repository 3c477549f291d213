// bench/Timing.h - how benchmarks take times.
#pragma once

#include <time.h>

#include <algorithm>
#include <vector>

/// Runs a piece of work. \return milliseconds of the processor, so that what else the machine does
/// counts less
template <class Work>
double Milliseconds(const Work& work) {
  const auto now = [] {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
  };
  const double begin = now();
  work();
  return now() - begin;
}

inline double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}
