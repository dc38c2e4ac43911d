#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace zent::bench {

/// The best time of three calls of `work`, in seconds.
template <typename Work>
double BestTime(const Work& work) {
  double best = 1e9;
  for (int i = 0; i < 3; ++i) {
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    best = std::min(best, time.count());
  }
  return best;
}

/// Prints "WHAT: RATIO (GOAL)".
inline void PrintRatio(const char* what, double ratio, const char* goal) {
  std::printf("%-62s %8.2f  (%s)\n", what, ratio, goal);
}

}  // namespace zent::bench
