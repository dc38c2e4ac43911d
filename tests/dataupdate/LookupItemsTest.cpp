#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/DBFuncs.h"
#include "database/StructureSyncCore.h"
#include "database/fakes/DatabaseRun.h"
#include "dataupdate/DatabaseMachine.h"
#include "dataupdate/LookupItems.h"
#include "jet/format/JetErrors.h"

namespace zent {
namespace {

using testing::DatabaseMachine;
using testing::DatabaseRun;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::MemoryTable;
using testing::MemoryTables;
using ::testing::UnorderedElementsAre;

constexpr const char* kTable =
    "CREATE TABLE Lookup (LookupFieldName TEXT(50), LookupValue TEXT(100), LookupDesc TEXT(100), "
    "DisplayOrder TEXT(10))";
constexpr const char* kAll =
    "SELECT LookupFieldName, LookupValue, LookupDesc, DisplayOrder FROM Lookup";

/// Each with and without an index that leads to the rows: both ways must say the same.
class LookupItems : public ::testing::TestWithParam<const char*> {
 protected:
  LookupItems() {
    machine.Execute(*machine.korvo, {kTable});
    machine.Execute(*machine.source, {kTable});
    if (*GetParam() != '\0') machine.Execute(*machine.korvo, {GetParam()});
  }
  void Give(OpenedDatabase& database, const char* values) {
    machine.Execute(database, {std::string("INSERT INTO Lookup VALUES (") + values + ")"});
  }
  Result<std::size_t> Update() {
    return UpdateLookupItems(machine.run, *machine.source, *machine.korvo);
  }

  DatabaseMachine machine;
};

TEST_P(LookupItems, AddsTheRowsThatAreMissing) {
  Give(*machine.korvo, "'City', 'Berlin', 'old', '1'");
  Give(*machine.source, "'City', 'Berlin', 'new', Null");
  Give(*machine.source, "'City', 'Paris', 'Capital', '2'");
  Give(*machine.source, "'Country', 'Berlin', Null, Null");
  const Result<std::size_t> added = Update();
  ASSERT_TRUE(added.ok()) << added.error().description;
  EXPECT_EQ(added.value(), 2U);
  EXPECT_THAT(machine.messages(), ElementsAre("Updating Lookup items"));
  EXPECT_THAT(machine.Rows(kAll), UnorderedElementsAre("City|Berlin|old|1", "City|Paris|Capital|2",
                                                       "Country|Berlin||"));
}

TEST_P(LookupItems, FindsAValueWithAQuoteInIt) {
  Give(*machine.korvo, "'Name', 'O''Neil', Null, Null");
  Give(*machine.source, "'Name', 'O''Neil', 'again', Null");
  EXPECT_EQ(Update().value_or(99), 0U);
}

TEST_P(LookupItems, AListNameWithAQuoteBreaksTheQuery) {
  Give(*machine.source, "'It''s', 'x', Null, Null");
  EXPECT_EQ(Update().number(), jet::kSyntaxError);
  EXPECT_THAT(machine.Rows(kAll), IsEmpty());
}

TEST_P(LookupItems, TheOrderCountsWhenTheIncomingRowHasOne) {
  Give(*machine.korvo, "'City', 'Berlin', Null, '5'");
  Give(*machine.source, "'City', 'Berlin', 'any', '  '");
  EXPECT_EQ(Update().value_or(99), 0U) << "blank: the order of the row that is there is its own";
  Give(*machine.source, "'City', 'Berlin', 'same', '5'");
  EXPECT_EQ(Update().value_or(99), 0U);
  Give(*machine.source, "'City', 'Berlin', 'other', '6'");
  EXPECT_EQ(Update().value_or(99), 1U);
  EXPECT_THAT(machine.Rows(kAll),
              UnorderedElementsAre("City|Berlin|null|5", "City|Berlin|other|6"));
}

TEST_P(LookupItems, TextsAreEqualAsTheDatabaseHoldsThem) {
  Give(*machine.korvo, "'City', 'Berlin', Null, Null");
  for (const char* same : {"'CITY', 'BERLIN', 1, Null", "'City', 'Berlin  ', 2, Null"}) {
    Give(*machine.source, same);
  }
  EXPECT_EQ(Update().value_or(99), 0U);
  Give(*machine.source, "'City', 'Ber-lin', 3, Null");
  Give(*machine.source, "'City', 'B\u00e9rlin', 4, Null");
  EXPECT_EQ(Update().value_or(99), 2U);
}

TEST_P(LookupItems, ARowComesOnceHoweverOftenItIsGiven) {
  Give(*machine.source, "'City', 'Rome', 'first', Null");
  Give(*machine.source, "'City', 'rome', 'second', Null");
  EXPECT_EQ(Update().value_or(99), 1U);
  EXPECT_THAT(machine.Rows(kAll), ElementsAre("City|Rome|first|"));
}

TEST_P(LookupItems, AValueThatDoesNotFitEndsIt) {
  machine.Execute(*machine.source, {"DROP TABLE Lookup",
                                    "CREATE TABLE Lookup (LookupFieldName TEXT(50), LookupValue "
                                    "MEMO, LookupDesc TEXT(100), DisplayOrder TEXT(10))"});
  Give(*machine.source, "'City', 'Rome', Null, Null");
  Give(*machine.source, ("'City', '" + std::string(101, 'x') + "', Null, Null").c_str());
  Give(*machine.source, "'City', 'Oslo', Null, Null");
  EXPECT_EQ(Update().number(), jet::kFieldTooSmall);
  EXPECT_THAT(machine.Rows("SELECT LookupValue FROM Lookup"), ElementsAre("Rome"));
}

INSTANTIATE_TEST_SUITE_P(
    , LookupItems,
    ::testing::Values("", "CREATE INDEX Item ON Lookup (LookupFieldName, LookupValue)",
                      "CREATE INDEX Item ON Lookup (LookupValue, LookupFieldName, DisplayOrder)"));

TEST(UpdateLookupItems, NamesATableThatIsMissing) {
  DatabaseMachine machine;
  EXPECT_EQ(UpdateLookupItems(machine.run, *machine.source, *machine.korvo).number(),
            jet::kNoSuchTable);
}

/// What the template and the database have under the name `Lookup`, beside another table whose name
/// begins so: nothing, or a table with these attributes.
struct SyncCase {
  const char* what;
  std::optional<std::uint32_t> pattern;
  std::optional<std::uint32_t> database;
  std::size_t rows;  ///< of the database's table afterwards
};

TEST(UpdateLookupItems, IsNotAskedForByOtherTablesAlone) {
  const SyncCase cases[] = {
      {"both have one", 0, 0, 2},
      {"the database gets one", 0, std::nullopt, 1},
      {"neither has one", std::nullopt, std::nullopt, 0},
      {"the template has none", std::nullopt, 0, 1},
      {"the template's is a link", kTableAttached, 0, 1},
      {"the database's is a link", 0, kTableAttached, 1},
      {"the database's is a link to a server", 0, kTableAttachedOdbc, 1},
  };
  const std::vector<std::string> fields = {"LookupFieldName", "LookupValue", "LookupDesc",
                                           "DisplayOrder"};
  for (const SyncCase& row : cases) {
    SCOPED_TRACE(row.what);
    DatabaseRun given;
    MemoryTables& pattern = given.PutDatabase(DatabaseMachine::kSource);
    MemoryTables& database = given.PutDatabase(DatabaseMachine::kKorvo);
    pattern.Add("LookupTypes", {"A"});
    database.Add("LookupTypes", {"A"});
    if (row.pattern) {
      pattern.Add("Lookup", fields, {{"City", "Ulm", "", "1"}}).definition.attributes =
          *row.pattern;
    }
    if (row.database) {
      database.Add("Lookup", fields, {{"City", "Bonn", "", "2"}}).definition.attributes =
          *row.database;
    }
    const DatabasePtr source = std::move(OpenDatabase(given.run, DatabaseMachine::kSource).value());
    const DatabasePtr target = std::move(OpenDatabase(given.run, DatabaseMachine::kKorvo).value());

    const Result<SyncEnd> end = SynchroniseTables(given.run, *source, *target, UpdateLookupItems);

    ASSERT_TRUE(end.ok()) << end.error().description;
    EXPECT_EQ(end.value(), SyncEnd::Done);
    const MemoryTable* const lookup = database.Find("Lookup");
    EXPECT_EQ(lookup == nullptr ? 0U : lookup->rows.size(), row.rows);
  }
}

}  // namespace
}  // namespace zent
