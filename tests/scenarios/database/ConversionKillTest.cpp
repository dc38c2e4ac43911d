#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string_view>

#include "scenarios/database/OldRecords.h"
#include "scenarios/kill/TracedRun.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::SizeIs;

class KilledConversion : public ::testing::Test {
 protected:
  KilledConversion() {
    machine.MakeDatabase("Old.mdb", OldRecords());
    machine.MakeDatabase("New.mdb", NewLists());
  }

  /// Converts a copy of all that lies in `folder`, to the end or until it is killed.
  TracedEnd RunWatched(const TempFolder& folder, std::size_t kill_at) const {
    fs::copy(machine.machine().folder(), folder.path(), fs::copy_options::recursive);
    return RunTraced({{ZENT_PROGRAM, "convert", "New.mdb", "Old.mdb", "--machine",
                       (folder.path() / "machine").string(), "--console", "--unattended"},
                      folder.path()},
                     kill_at);
  }

  KorvoMachine machine{{}};
};

/// Expects every section whole or absent, and none without those before it; how many are there.
int SectionsDone(const std::vector<std::string>& counts) {
  EXPECT_THAT(counts, SizeIs(std::size(kSectionCounts)));
  int done = 0;
  std::string_view last_section;
  bool last_is_there = true;
  for (std::size_t i = 0; i < counts.size() && i < std::size(kSectionCounts); ++i) {
    const SectionCount& row = kSectionCounts[i];
    SCOPED_TRACE(row.counted);
    const bool is_there = counts[i] == std::to_string(row.after);
    EXPECT_EQ(counts[i], std::to_string(is_there ? row.after : row.before));
    if (row.section == last_section) {
      EXPECT_EQ(is_there, last_is_there);
    } else {
      EXPECT_TRUE(last_is_there || !is_there);
      if (is_there) ++done;
    }
    last_section = row.section;
    last_is_there = is_there;
  }
  return done;
}

TEST_F(KilledConversion, LeavesEachSectionWholeOrAbsent) {
  const TempFolder whole;
  const TracedEnd watched = RunWatched(whole, 0);
  ASSERT_EQ(watched.error, "") << "this test needs ptrace";
  ASSERT_EQ(watched.exit_code, 0);
  constexpr int kSections = 14;  // each table of the seventh is one
  ASSERT_EQ(SectionsDone(SectionCountsOf(machine, whole.path() / "Old.mdb")), kSections);
  RecordProperty("instants", static_cast<int>(watched.calls.size()));

  constexpr std::size_t kInstants = 25;
  const std::size_t step = watched.calls.size() / kInstants + 1;
  std::set<int> seen;
  for (std::size_t at = 1; at <= watched.calls.size(); at += step) {
    SCOPED_TRACE("killed before call " + std::to_string(at) + ", " + watched.calls[at - 1]);
    const TempFolder killed;
    ASSERT_TRUE(RunWatched(killed, at).killed);

    const fs::path database = killed.path() / "Old.mdb";
    seen.insert(SectionsDone(SectionCountsOf(machine, database)));
    EXPECT_EQ(machine.Faults(database), "");
  }
  EXPECT_GT(seen.size(), 3U) << "the instants lie in several sections";
}

}  // namespace
}  // namespace zent::testing
