#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace zent::bench {

/// The time of one call of `work`, in seconds.
template <typename Work>
double TimeOf(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  return time.count();
}

/// The best time of three calls of `work`, in seconds.
template <typename Work>
double BestTime(const Work& work) {
  double best = 1e9;
  for (int i = 0; i < 3; ++i) best = std::min(best, TimeOf(work));
  return best;
}

/// Prints "WHAT: RATIO (GOAL)".
inline void PrintRatio(const char* what, double ratio, const char* goal) {
  std::printf("%-62s %8.2f  (%s)\n", what, ratio, goal);
}

}  // namespace zent::bench
