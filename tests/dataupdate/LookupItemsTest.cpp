#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dataupdate/DatabaseMachine.h"
#include "dataupdate/LookupItems.h"
#include "jet/format/JetErrors.h"

namespace zent {
namespace {

using testing::DatabaseMachine;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
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

}  // namespace
}  // namespace zent
