#include <algorithm>
#include <set>
#include <thread>
#include <vector>

#include "database/Counters.h"
#include "database/engines/odbc/servers/ServerRun.h"

namespace zent::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int kKeysEach = 40;

class ServerCounters : public ::testing::TestWithParam<const char*> {
 protected:
  std::unique_ptr<ServerRun> Start() {
    auto started = std::make_unique<ServerRun>(server.connect_text(), GetParam());
    EXPECT_NE(started->database, nullptr) << ::testing::PrintToString(started->window.boxes);
    return started;
  }
  void MakeCounters(const std::string& key, const std::string& rows) {
    server.Run("DROP TABLE IF EXISTS Counters");
    server.Run("CREATE TABLE Counters (TableName VARCHAR(50) " + key + ", CurCount VARCHAR(50))");
    server.Run("INSERT INTO Counters VALUES " + rows);
  }
  /// The counters of a table, one a row.
  std::vector<std::string> Counts(const std::string& table) {
    const auto database = server.Open();
    return RowTexts(*database, "SELECT CurCount FROM Counters WHERE TableName='" + table + "'");
  }

  ServerDatabase server{GetParam()};
};

struct DrawCase {
  const char* what;
  const char* rows;
  const char* table;
  const char* key;  ///< empty: none
};

constexpr DrawCase kDrawCases[] = {
    {"the main site", "('SiteID', '0'), ('Companies', 'CM00000099')", "Companies", "CM00000100"},
    {"another site", "('SiteID', '3'), ('Companies', 'CM30000099')", "companies", "CM30000100"},
    {"no row of the site", "('Companies', 'CM00000099')", "Companies", "CM00000100"},
    {"a blank site", "('SiteID', ' '), ('Companies', 'CM00000099')", "Companies", "CM00000100"},
    {"a null counter", "('SiteID', '0'), ('Companies', NULL)", "Companies", "00000001"},
    {"a counter on demand", "('SiteID', '0')", "Reminders", "RM00000001"},
    {"a counter on demand at a site", "('SiteID', '3')", "MLinkInfo", "ML30000001"},
    {"no counter on demand", "('SiteID', '0')", "Contacts", ""},
};

TEST_P(ServerCounters, GiveTheNextKeyAndKeepIt) {
  for (const DrawCase& row : kDrawCases) {
    SCOPED_TRACE(row.what);
    MakeCounters("PRIMARY KEY", row.rows);
    const auto given = Start();
    ASSERT_NE(given->database, nullptr);
    std::string key;
    EXPECT_EQ(GetNextNumber(given->run, *given->database, row.table, key), row.key[0] != '\0');
    EXPECT_EQ(key, row.key);
    EXPECT_THAT(given->window.boxes, IsEmpty());
    EXPECT_FALSE(given->database->InTransaction());
    if (key.empty()) continue;
    EXPECT_THAT(Counts(row.table), ElementsAre(key));
  }
}

struct WriterOutcome {
  std::vector<std::string> keys;
  std::vector<std::string> boxes;
};

void Draw(ServerRun& program, const std::string& table, WriterOutcome& outcome) {
  std::string key;
  for (int count = 0; count < kKeysEach; ++count) {
    if (GetNextNumber(program.run, *program.database, table, key)) outcome.keys.push_back(key);
  }
  outcome.boxes = program.window.boxes;
}

struct WritersCase {
  const char* what;
  const char* key;  ///< of the table of counters
  const char* rows;
  const char* table;
  const char* last;
};

constexpr WritersCase kWritersCases[] = {
    {"a counter that is there", "PRIMARY KEY", "('SiteID', '0'), ('Companies', 'CM00000100')",
     "Companies", "CM00000180"},
    {"in a table without a key", "", "('SiteID', '3'), ('Companies', 'CM30000100')", "Companies",
     "CM30000180"},
    {"a counter that is made", "PRIMARY KEY", "('SiteID', '0')", "Reminders", "RM00000080"},
    {"made in a table without a key", "", "('SiteID', '0')", "Reminders", "RM00000080"},
    {"made without a row of the site", "PRIMARY KEY", "('Other', '0')", "Reminders", "RM00000080"},
    {"made without that row or a key", "", "('Other', '0')", "Reminders", "RM00000080"},
};

TEST_P(ServerCounters, GiveNoKeyTwiceToTwoPrograms) {
  for (const WritersCase& row : kWritersCases) {
    SCOPED_TRACE(row.what);
    MakeCounters(row.key, row.rows);
    const auto one = Start();
    const auto two = Start();
    ASSERT_TRUE(one->database != nullptr && two->database != nullptr);
    WriterOutcome first;
    WriterOutcome second;
    std::thread writer(Draw, std::ref(*one), row.table, std::ref(first));
    std::thread other(Draw, std::ref(*two), row.table, std::ref(second));
    writer.join();
    other.join();
    EXPECT_THAT(first.boxes, IsEmpty());
    EXPECT_THAT(second.boxes, IsEmpty());
    std::set<std::string> all(first.keys.begin(), first.keys.end());
    all.insert(second.keys.begin(), second.keys.end());
    EXPECT_EQ(first.keys.size() + second.keys.size(), 2U * kKeysEach);
    EXPECT_EQ(all.size(), 2U * kKeysEach) << "a key was given twice";
    EXPECT_THAT(Counts(row.table), ElementsAre(row.last));
  }
}

ZENT_ON_SERVER_KINDS(ServerCounters);

}  // namespace
}  // namespace zent::testing
