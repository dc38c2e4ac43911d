#include <gtest/gtest.h>

#include <functional>

#include "jet/dao/DaoFile.h"
#include "jet/format/JetErrors.h"

/// What the fields of a file allow, kept by whoever changes a row: a recordset or a statement.
namespace zent::jet::testing {
namespace {

Property Rule(std::string_view rule) {
  return MakeProperty("ValidationRule", ColumnType::Memo, true, Text(rule)).value();
}

struct RuleCase {
  const char* what;
  const char* field;
  Value value;
  int number;
};

const RuleCase kRules[] = {
    {"within the rule of a field", "Age", std::int16_t{199}, 0},
    {"outside of it", "Age", std::int16_t{200}, kValidationFailed},
    {"null, which a rule lets through", "Age", Null(), 0},
    {"outside of the rule of the table", "Born", Date{60000}, kValidationFailed},
    {"within it", "Born", Date{20000}, 0},
    {"a value that must be there", "Name", Null(), kValueRequired},
    {"an empty text, which is null where none may be", "Name", Text(), kValueRequired},
    {"a text that fills its field", "Name", Text(20, 'n'), 0},
    {"a longer one", "Name", Text(21, 'n'), kFieldTooSmall},
    {"a number beyond its field", "Age", std::int32_t{40000}, kNumericOverflow},
};

/// Rows that recordsets of each kind over the same table may change.
constexpr const char* kSources[] = {"People", "SELECT * FROM People"};

class RuledFile : public DaoFile {
 public:
  RuledFile() {
    TableDef people = db->FindTableDef("People").value();
    const Status set = people.SetProperty(Rule("Born Is Null Or Born < #1/1/2050#"));
    EXPECT_TRUE(set.ok()) << Told(set);
  }
};

/// Gives the row in work a field and saves it.
Status Save(Recordset& rows, const RuleCase& row) {
  if (Status put = rows.Put(row.field, row.value); !put.ok()) return put;
  return rows.Update();
}

TEST(ValidationRules, HoldForRowsThatAreAdded) {
  for (const char* const source : kSources) {
    for (const RuleCase& row : kRules) {
      SCOPED_TRACE(row.what);
      RuledFile given;
      const auto rows = given.Rows(source);
      ASSERT_TRUE(rows->AddNew().ok());
      ASSERT_TRUE(rows->Put("Name", Text("Dan")).ok());
      const Status saved = Save(*rows, row);
      EXPECT_EQ(saved.number(), row.number) << Told(saved);
      EXPECT_EQ(given.db->FindTableDef("People").value().RecordCount().value_or(0),
                row.number == 0 ? 4 : 3);
    }
  }
}

TEST(ValidationRules, HoldForRowsThatAreEdited) {
  for (const char* const source : kSources) {
    for (const RuleCase& row : kRules) {
      SCOPED_TRACE(row.what);
      RuledFile given;
      const auto rows = given.Rows(source);
      ASSERT_TRUE(rows->Edit().ok());
      const Status saved = Save(*rows, row);
      EXPECT_EQ(saved.number(), row.number) << Told(saved);
      const auto again = given.Rows(source);
      EXPECT_EQ(again->Get(row.field).value() == row.value, row.number == 0);
    }
  }
}

TEST(ValidationRules, AreToldInTheWordsOfTheField) {
  RuledFile given;
  const auto rows = given.Rows("People");
  ASSERT_TRUE(rows->Edit().ok());
  ASSERT_TRUE(rows->Put("Age", std::int16_t{999}).ok());
  EXPECT_EQ(Told(rows->Update()), "Nobody is that old.");
  // What was refused can be corrected.
  ASSERT_TRUE(rows->Put("Age", std::int16_t{99}).ok());
  EXPECT_TRUE(rows->Update().ok());
}

TEST(ValidationRules, HoldAgainAfterWhatMakesTheCatalogReadThemAnew) {
  struct Case {
    const char* what;
    std::function<void(DaoFile&)> between;
  };
  const Case cases[] = {
      {"a statement",
       [](DaoFile& file) { file.Run("UPDATE People SET Age = 50 WHERE Name = 'Bob'"); }},
      {"a rollback",
       [](DaoFile& file) {
         ASSERT_TRUE(file.db->BeginTrans().ok());
         file.Run("DELETE FROM People");
         ASSERT_TRUE(file.db->Rollback().ok());
       }},
      {"another table", [](DaoFile& file) { file.Run("CREATE TABLE Other (A LONG)"); }},
      {"an index", [](DaoFile& file) { file.Run("CREATE INDEX ByName ON People (Name)"); }},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    RuledFile given;
    const auto rows = given.Rows("People");
    row.between(given);
    ASSERT_TRUE(rows->Edit().ok());
    ASSERT_TRUE(rows->Put("Age", std::int16_t{999}).ok());
    EXPECT_EQ(rows->Update().number(), kValidationFailed);
    EXPECT_EQ(given.db->Execute("UPDATE People SET Age = 999").number(), kValidationFailed);
  }
}

}  // namespace
}  // namespace zent::jet::testing
