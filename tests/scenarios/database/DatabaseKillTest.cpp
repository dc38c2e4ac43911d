#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenarios/database/KorvoMachine.h"
#include "scenarios/kill/TracedRun.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::AnyOf;
using ::testing::StartsWith;

struct KilledCase {
  const char* what;
  std::vector<std::string> lines;
  const char* query;
  const char* before;  ///< what the rows begin with
  const char* after;
};

void PrintTo(const KilledCase& row, std::ostream* stream) { *stream << row.what; }

const KilledCase kKilledCases[] = {
    {"Synchronisation",
     {KorvoMachine::kSynchronise},
     "SELECT [Version] FROM [version]",
     "3.5\n",
     "3.6\n"},
    {"UpdateScript",
     {R"(mkdr,$(apppath)\Customize)", R"(copy,Template.mdb,$(apppath)\Customize\KorvoTPL.mdb)",
      "upddb,Fields.xml"},
     "SELECT Street FROM Companies WHERE Name = 'Anvil'",
     "jetdb: 3061",
     "\n"},
    {"Import", {"importlookup,Items.txt"}, "SELECT COUNT(*) FROM Lookup", "1\n", "41\n"},
};

struct Given {
  explicit Given(const KilledCase& row) : machine(row.lines) {
    std::string items;
    for (int i = 0; i < 40; ++i) items += "City,Town " + std::to_string(i) + "\r\n";
    machine.machine().Put("package/Items.txt", items);
    machine.machine().Put(
        "package/Fields.xml",
        "<UpdateDB><Version>3.7</Version><Table><Name>Companies</Name><AddField><Name>Street</Name>"
        "<Type>Text</Type><Size>20</Size></AddField></Table></UpdateDB>");
  }
  TracedEnd RunWatched(std::size_t kill_at) const {
    return RunTraced({machine.machine().Command(), machine.machine().folder()}, kill_at);
  }
  KorvoMachine machine;
};

/// The application's template, where a case has put one, is sound and has the field that the
/// database has been given.
void ExpectTemplateNotBehind(const KorvoMachine& machine, bool database_has_street) {
  const fs::path pattern =
      machine.machine().folder() / "machine/drive_c/Program Files/Zent/Customize/KorvoTPL.mdb";
  if (!fs::exists(pattern)) return;
  // Asked first: whoever opens it takes up what the killed program left.
  const std::string streets = machine.RowsOf(pattern, "SELECT Street FROM Companies");
  if (database_has_street) {
    EXPECT_EQ(streets, "") << "the template has no companies";
  }
  EXPECT_EQ(machine.Faults(pattern), "");
}

class KilledDatabaseRun : public ::testing::TestWithParam<KilledCase> {};

TEST_P(KilledDatabaseRun, LeavesTheDatabaseAsBeforeOrAfterAndIsMadeGoodByTheNext) {
  const KilledCase& row = GetParam();
  const Given whole(row);
  const TracedEnd watched = whole.RunWatched(0);
  ASSERT_EQ(watched.error, "") << "this test needs ptrace";
  ASSERT_EQ(watched.exit_code, 0);
  ASSERT_EQ(whole.machine.Rows(row.query), row.after);
  ExpectTemplateNotBehind(whole.machine, true);
  RecordProperty("instants", static_cast<int>(watched.calls.size()));

  constexpr std::size_t kInstants = 25;  // of hundreds: each costs half a dozen starts of programs
  const std::size_t step = watched.calls.size() / kInstants + 1;
  for (std::size_t at = 1; at <= watched.calls.size(); at += step) {
    SCOPED_TRACE("killed before call " + std::to_string(at) + ", " + watched.calls[at - 1]);
    const Given given(row);
    ASSERT_TRUE(given.RunWatched(at).killed);

    EXPECT_THAT(given.machine.Rows(row.query), AnyOf(StartsWith(row.before), row.after));
    EXPECT_EQ(given.machine.Rows("SELECT Name, Staff FROM Companies ORDER BY Name"), kOldCompanies);
    EXPECT_EQ(given.machine.Faults(given.machine.Korvo()), "");
    ExpectTemplateNotBehind(given.machine, given.machine.Rows(row.query) == row.after);

    EXPECT_THAT(given.machine.Run(), StartsWith("0\n"));
    EXPECT_EQ(given.machine.Rows(row.query), row.after);
    EXPECT_EQ(given.machine.Faults(given.machine.Korvo()), "");
    for (const std::filesystem::directory_entry& entry :
         std::filesystem::directory_iterator(given.machine.DataFolder())) {
      EXPECT_EQ(entry.path().filename().string().find("_tmp"), std::string::npos) << entry.path();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Commands, KilledDatabaseRun, ::testing::ValuesIn(kKilledCases),
                         [](const auto& row) { return std::string(row.param.what); });

}  // namespace
}  // namespace zent::testing
