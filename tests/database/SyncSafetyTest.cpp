#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "database/SyncRun.h"

/// What a run that ends in the middle leaves behind.
namespace zent {
namespace {

using testing::SyncRun;

struct Killed {};

/// A database in which every kind of change is to be made.
struct EveryChange : SyncRun {
  EveryChange() {
    database().Add("Contacts", {"Name", "Company"}, {{"Anna", "1"}, {"Bert", "2"}});
    database().Find("Contacts")->definition.indexes = {
        {.name = "ByName", .fields = {{.name = "Name"}}}};
    database().relations = {
        {.name = "R", .table = "Companies", .foreign_table = "Contacts", .fields = {}}};
    pattern().Add("Contacts", {"Name", "Company", "Street"});
    pattern().Find("Contacts")->definition.fields[0].size = 80;
  }
};

TEST(SynchroniseStructure, AKillAtAnyCallLeavesTheStateBeforeOrTheOneAfter) {
  EveryChange whole;
  const std::vector<std::string> before = whole.database().Describe();
  std::size_t calls = 0;
  whole.access.world.on_call = [&](const std::string&) { ++calls; };
  ASSERT_EQ(whole.Sync().outcome, Outcome::Done);
  const std::vector<std::string> after = whole.database().Describe();
  ASSERT_NE(before, after);
  ASSERT_GT(calls, 50U);

  std::size_t unchanged = 0;
  for (std::size_t kill_at = 1; kill_at <= calls; ++kill_at) {
    SCOPED_TRACE(kill_at);
    EveryChange given;
    std::size_t call = 0;
    given.access.world.on_call = [&](const std::string& what) {
      // The closing of a database is what the end of the process does, too.
      if (++call == kill_at && what != "Close") throw Killed();
    };
    try {
      given.Sync();
    } catch (const Killed&) {
    }
    const std::vector<std::string> found = given.database().Describe();
    EXPECT_TRUE(found == before || found == after);
    if (found == before) ++unchanged;
  }
  EXPECT_GT(unchanged, calls / 2) << "all changes become true at once, late";
}

TEST(SynchroniseStructure, AfterAnErrorOfAnyCallEveryRowIsThere) {
  EveryChange whole;
  ASSERT_EQ(whole.Sync().outcome, Outcome::Done);
  std::vector<std::string> calls = whole.access.world.calls;
  std::sort(calls.begin(), calls.end());
  calls.erase(std::unique(calls.begin(), calls.end()), calls.end());

  for (const std::string& call : calls) {
    SCOPED_TRACE(call);
    EveryChange given;
    given.access.world.failures[call] = {.number = 61, .description = "Disk full"};
    given.Sync();
    ASSERT_NE(given.database().Find("Contacts"), nullptr);
    EXPECT_EQ(given.database().Find("Contacts")->rows.size(), 2U);
    EXPECT_EQ(given.database().Find("Contacts")->Text(1, "Name"), "Bert");
    EXPECT_EQ(given.database().Find("Companies")->rows.size(), 2U);
    EXPECT_EQ(given.database().Find("version")->rows.size(), 1U);
    EXPECT_EQ(given.database().relations.size(), 1U);
  }
}

}  // namespace
}  // namespace zent
