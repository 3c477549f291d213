// bench/Bench.h - what every benchmark does: takes times in turns, and sees that both sides agree.
#pragma once

#include <errno.h>
#include <time.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

/// Ends the program, and says why.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "%s: %s\n", program_invocation_short_name, what);
  std::exit(1);
}

/// The number that stands there among the program's arguments.
inline long long Argument(int argc, char** argv, int index, long long otherwise) {
  return argc > index ? std::atoll(argv[index]) : otherwise;
}

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

/// Lets pieces of work take turns, so that all meet the same machine. A first round, which fills
/// caches, doesn't count. \return the milliseconds of each, round by round
template <class... Work>
std::array<std::vector<double>, sizeof...(Work)> InTurns(long long rounds, const Work&... work) {
  std::array<std::vector<double>, sizeof...(Work)> times;
  (work(), ...);
  for (long long round = 0; round < rounds; ++round) {
    std::size_t which = 0;
    (times[which++].push_back(Milliseconds(work)), ...);
  }
  return times;
}

inline double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// What else the machine does only adds to a time.
inline double Fastest(const std::vector<double>& values) {
  return *std::min_element(values.begin(), values.end());
}
