#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>

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

/// Wall time and processor time, in seconds. The latter tells also on a machine that does other
/// work meanwhile.
struct Times {
  double wall = 1e9;
  double processor = 1e9;

  void Improve(const Times& other) {
    wall = std::min(wall, other.wall);
    processor = std::min(processor, other.processor);
  }
};

/// The times of one call of `work`.
template <typename Work>
Times TimesOf(const Work& work) {
  const std::clock_t start = std::clock();
  const double wall = TimeOf(work);
  return {wall, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC};
}

/// Prints "WHAT: RATIO (GOAL)".
inline void PrintRatio(const char* what, double ratio, const char* goal) {
  std::printf("%-62s %8.2f  (%s)\n", what, ratio, goal);
}

}  // namespace zent::bench
