#include <algorithm>
#include <set>
#include <thread>

#include "odbc/OdbcRecordset.h"
#include "odbc/servers/ServerTest.h"

namespace zent::odbc {
namespace {

using testing::ElementsAre;

class TwoWriters : public ServerTest {};

constexpr int kNumbersEach = 60;

/// Reads the counter, adds one and saves it, again and again until no other writer was quicker.
Result<std::int64_t> NextNumber(OdbcConnection& connection) {
  while (true) {
    Result<std::unique_ptr<OdbcRecordset>> counter =
        OdbcRecordset::Open(connection, "SELECT * FROM SharedCounter WHERE name = 'both'");
    if (!counter.ok()) return counter.error();
    OdbcRecordset& row = *counter.value();
    const Result<OdbcValue> last = row.Value(1);
    if (!last.ok()) return last.error();
    const std::int64_t next = std::get<std::int64_t>(last.value()) + 1;
    if (Status begun = row.Edit(); !begun.ok()) return begun.error();
    if (Status set = row.Set(1, next); !set.ok()) return set.error();
    const Status saved = row.Update();
    if (saved.ok()) return next;
    if (saved.number() != kWriteConflict) return saved.error();
  }
}

struct WriterOutcome {
  std::vector<std::int64_t> numbers;
  std::string error;
};

/// A writer has an environment of its own, as another program would.
void Write(const char* data_source, bool in_transaction, WriterOutcome& outcome) {
  const auto environment = MakeEnvironment();
  auto connected = environment->Connect(ConnectTextFor(data_source), kLoginSeconds);
  if (!connected.ok()) {
    outcome.error = connected.error().description;
    return;
  }
  OdbcConnection& connection = *connected.value();
  for (int count = 0; count < kNumbersEach && outcome.error.empty(); ++count) {
    if (in_transaction && !connection.Begin().ok()) outcome.error = "begin";
    const Result<std::int64_t> number = NextNumber(connection);
    if (number.ok()) {
      outcome.numbers.push_back(number.value());
    } else {
      outcome.error = number.error().description;
    }
    if (in_transaction && !connection.Commit().ok()) outcome.error = "commit";
  }
}

struct WritersCase {
  const char* what;
  const char* columns;
  bool in_transaction;
};

constexpr WritersCase kWritersCases[] = {
    {"a row with a key", "(name VARCHAR(20) PRIMARY KEY, n INT)", false},
    {"a row with a key, each number in a transaction", "(name VARCHAR(20) PRIMARY KEY, n INT)",
     true},
    {"a row without a key", "(name VARCHAR(20), n INT)", false},
};

TEST_P(TwoWriters, GetNoNumberTwice) {
  for (const WritersCase& row : kWritersCases) {
    SCOPED_TRACE(row.what);
    MakeTable("SharedCounter", row.columns);
    Run("INSERT INTO SharedCounter VALUES ('both', 0)");
    WriterOutcome first;
    WriterOutcome second;
    std::thread one(Write, GetParam(), row.in_transaction, std::ref(first));
    std::thread two(Write, GetParam(), row.in_transaction, std::ref(second));
    one.join();
    two.join();
    EXPECT_EQ(first.error, "");
    EXPECT_EQ(second.error, "");
    std::set<std::int64_t> all(first.numbers.begin(), first.numbers.end());
    all.insert(second.numbers.begin(), second.numbers.end());
    EXPECT_EQ(all.size(), 2U * kNumbersEach);
    EXPECT_THAT(Rows("SELECT n FROM SharedCounter"), ElementsAre(std::to_string(2 * kNumbersEach)));
  }
}

ZENT_ON_BOTH_KINDS(TwoWriters);

}  // namespace
}  // namespace zent::odbc
