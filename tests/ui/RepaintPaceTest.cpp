#include <gtest/gtest.h>

#include "ui/RepaintPace.h"

namespace zent {
namespace {

using std::chrono::milliseconds;

struct PaceCase {
  const char* what;
  int messages;
  milliseconds apart;
  int least;  ///< paintings
  int most;
};

constexpr PaceCase kPaceCases[] = {
    {"a message alone is painted", 1, milliseconds(0), 1, 1},
    {"a report of some lines is painted line by line", 40, milliseconds(0), 40, 40},
    {"slow messages are all painted", 1000, milliseconds(20), 1000, 1000},
    {"of a burst without end about fifty are painted", 100000, milliseconds(0), 50, 51},
    {"of a stream one each twenty milliseconds", 10000, milliseconds(1), 500, 560},
};

TEST(RepaintPace, PaintsEveryMessageButThoseOfALongBurst) {
  for (const PaceCase& row : kPaceCases) {
    SCOPED_TRACE(row.what);
    RepaintPace pace;
    RepaintPace::TimePoint now{std::chrono::hours(5)};
    int painted = 0;
    for (int i = 0; i < row.messages; ++i, now += row.apart) painted += pace.Due(now) ? 1 : 0;
    EXPECT_GE(painted, row.least);
    EXPECT_LE(painted, row.most);
  }
}

struct CostCase {
  const char* what;
  milliseconds cost;  ///< of a painting
  int least;          ///< paintings in ten seconds
  int most;
};

constexpr CostCase kCostCases[] = {
    {"a fast one leaves one each twenty milliseconds", milliseconds(10), 500, 560},
    {"a slow one takes half of the time", milliseconds(50), 100, 111},
    {"a very slow one as well", milliseconds(500), 10, 12},
};

TEST(RepaintPace, LeavesHalfOfTheTimeToTheMessages) {
  for (const CostCase& row : kCostCases) {
    SCOPED_TRACE(row.what);
    RepaintPace pace;
    const RepaintPace::TimePoint start{std::chrono::hours(5)};
    int painted = 0;
    for (RepaintPace::TimePoint now = start; now < start + std::chrono::seconds(10);) {
      now += milliseconds(1);
      if (!pace.Due(now)) continue;
      ++painted;
      now += row.cost;
      pace.Took(row.cost);
    }
    EXPECT_GE(painted, row.least);
    EXPECT_LE(painted, row.most);
  }
}

TEST(RepaintPace, PaintsSinglyAgainAfterAPause) {
  RepaintPace pace;
  RepaintPace::TimePoint now{std::chrono::hours(5)};
  while (pace.Due(now)) {
  }
  EXPECT_FALSE(pace.Due(now));
  EXPECT_TRUE(pace.Due(now + milliseconds(1)));
  EXPECT_FALSE(pace.Due(now + milliseconds(20)));
  EXPECT_TRUE(pace.Due(now + milliseconds(21)));

  now += std::chrono::seconds(2);
  for (int i = 0; i < 40; ++i) EXPECT_TRUE(pace.Due(now)) << i;
}

}  // namespace
}  // namespace zent
