#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "database/engines/jet/HostStorage.h"
#include "database/engines/jet/JetEngine.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// An engine over the files of a folder of its own.
class JetEngineTest : public ::testing::Test {
 protected:
  std::string PathOf(const char* name) const { return (folder_.path() / name).string(); }

  void Create(const char* name, const char* connect = "") {
    jet::Workspace workspace(*storage_);
    const auto created = workspace.CreateDatabase(PathOf(name), connect);
    ASSERT_TRUE(created.ok()) << created.error().description;
  }

  std::unique_ptr<OpenedDatabase> Open(const char* name, bool exclusive = false) {
    auto opened = engine_.Open({.path = PathOf(name), .exclusive = exclusive});
    if (!opened.ok()) {
      ADD_FAILURE() << name << ": " << opened.error().description;
      return nullptr;
    }
    return std::move(opened.value());
  }

  /// "A B"; empty when there is no such table.
  static std::string FieldNames(OpenedDatabase& database, const char* table) {
    std::string names;
    const auto found = database.Table(table).value_or(std::nullopt).value_or(TableDefinition());
    for (const FieldDefinition& field : found.fields) {
      names += (names.empty() ? "" : " ") + field.name;
    }
    return names;
  }

  TempFolder folder_;
  std::unique_ptr<jet::Storage> storage_ = HostStorage();
  JetEngine engine_{*storage_, {.user = {.computer = "DESK7", .name = "anna"}}};
};

struct OpenFault {
  const char* what;
  const char* name;
  const char* connect;
  int number;
};

constexpr OpenFault kOpenFaults[] = {
    {"no such file", "Missing.mdb", "", 3024},
    {"no such folder", "Nowhere/Missing.mdb", "", 3044},
    {"a file that is no database", "Text.mdb", "", 3343},
    {"an empty file", "Empty.mdb", "", 3343},
    {"a database cut off before its catalog", "Cut.mdb", "", 3049},
    {"a password and none given", "Locked.mdb", "", 3031},
    {"a password and another one given", "Locked.mdb", ";pwd=other", 3031},
};

TEST_F(JetEngineTest, TellsWhyADatabaseDoesNotOpen) {
  Create("Locked.mdb", ";pwd=secret");
  Create("Whole.mdb");
  folder_.Put("Text.mdb", std::string(8192, 't'));
  folder_.Put("Empty.mdb", "");
  folder_.Put("Cut.mdb", folder_.Get("Whole.mdb").substr(0, 8192));
  for (const OpenFault& row : kOpenFaults) {
    SCOPED_TRACE(row.what);
    const auto opened = engine_.Open({.path = PathOf(row.name), .connect = row.connect});
    ASSERT_FALSE(opened.ok());
    EXPECT_EQ(opened.error().number, row.number) << opened.error().description;
    EXPECT_EQ(opened.error().source, kEngineSource);
    ASSERT_EQ(engine_.Errors().size(), 1U);
    EXPECT_EQ(engine_.Errors()[0].number, row.number);
    EXPECT_EQ(engine_.Errors()[0].description, opened.error().description);
  }
}

TEST_F(JetEngineTest, OpensWithThePassword) {
  Create("Locked.mdb", ";pwd=secret");
  EXPECT_TRUE(engine_.Open({.path = PathOf("Locked.mdb"), .connect = ";pwd=secret"}).ok());
}

TEST_F(JetEngineTest, KeepsOthersOutOfAnExclusiveDatabaseAndItsCaller) {
  Create("Korvo.mdb");
  {
    const auto held = Open("Korvo.mdb");
    EXPECT_EQ(engine_.Open({.path = PathOf("Korvo.mdb"), .exclusive = true}).number(),
              kEngineFileInUse);
  }
  const auto alone = Open("Korvo.mdb", true);
  EXPECT_EQ(engine_.Open({.path = PathOf("Korvo.mdb")}).number(), kEngineOpenedExclusively);
}

TEST_F(JetEngineTest, TellsWhoHasADatabaseOpen) {
  Create("Korvo.mdb");
  EXPECT_THAT(engine_.UsersOf(PathOf("Korvo.mdb")), IsEmpty());
  {
    const auto held = Open("Korvo.mdb");
    EXPECT_THAT(engine_.UsersOf(PathOf("Korvo.mdb")), ElementsAre(DatabaseUser{"DESK7", "anna"}));
  }
  EXPECT_THAT(engine_.UsersOf(PathOf("Korvo.mdb")), IsEmpty());
}

TEST_F(JetEngineTest, RefusesChangesOfAReadOnlyDatabase) {
  Create("Korvo.mdb");
  ASSERT_TRUE(Open("Korvo.mdb")->Execute("CREATE TABLE T (A LONG)").ok());
  const auto opened = engine_.Open({.path = PathOf("Korvo.mdb"), .read_only = true});
  ASSERT_TRUE(opened.ok());
  EXPECT_EQ(opened.value()->Execute("INSERT INTO T VALUES (1)").number(), kEngineReadOnly);
}

TEST_F(JetEngineTest, CompactsWithTheSamePassword) {
  Create("Korvo.mdb", ";pwd=secret");
  {
    auto opened = engine_.Open({.path = PathOf("Korvo.mdb"), .connect = ";pwd=secret"});
    ASSERT_TRUE(opened.ok());
    ASSERT_TRUE(opened.value()->Execute("CREATE TABLE T (A LONG)").ok());
    ASSERT_TRUE(opened.value()->BeginTransaction().ok());
    for (int i = 0; i < 2000; ++i) {
      ASSERT_TRUE(opened.value()->Execute("INSERT INTO T VALUES (" + std::to_string(i) + ")").ok());
    }
    ASSERT_TRUE(opened.value()->Commit().ok());
    ASSERT_TRUE(opened.value()->Execute("DELETE FROM T WHERE A > 9").ok());
  }
  ASSERT_TRUE(engine_.Compact(PathOf("Korvo.mdb"), PathOf("Korvo.mdb_tmp"), ";pwd=secret").ok());
  EXPECT_LT(std::filesystem::file_size(PathOf("Korvo.mdb_tmp")),
            std::filesystem::file_size(PathOf("Korvo.mdb")));
  EXPECT_EQ(engine_.Open({.path = PathOf("Korvo.mdb_tmp")}).number(), kEngineWrongPassword);
  auto compacted = engine_.Open({.path = PathOf("Korvo.mdb_tmp"), .connect = ";pwd=secret"});
  ASSERT_TRUE(compacted.ok());
  EXPECT_EQ(compacted.value()->Execute("DELETE FROM T").value_or(-1), 10);
}

TEST_F(JetEngineTest, CompactsNothingThatIsOpenOrOntoAFileThatIsThere) {
  Create("Korvo.mdb");
  Create("Other.mdb");
  EXPECT_EQ(engine_.Compact(PathOf("Korvo.mdb"), PathOf("Other.mdb"), "").number(), 3204);
  const auto held = Open("Korvo.mdb");
  EXPECT_EQ(engine_.Compact(PathOf("Korvo.mdb"), PathOf("New.mdb"), "").number(), kEngineFileInUse);
  EXPECT_FALSE(std::filesystem::exists(PathOf("New.mdb")));
}

// The rows of a statement that names a file which this program has open belong to the transaction
// of that file.
TEST_F(JetEngineTest, InsertsIntoAnotherOpenedDatabaseWithinItsTransaction) {
  Create("From.mdb");
  Create("To.mdb");
  {
    const auto from = Open("From.mdb");
    ASSERT_TRUE(from->Execute("CREATE TABLE T (A LONG)").ok());
    ASSERT_TRUE(from->Execute("INSERT INTO T VALUES (7)").ok());
    ASSERT_TRUE(Open("To.mdb")->Execute("CREATE TABLE T (A LONG)").ok());
  }
  const auto from = engine_.Open({.path = PathOf("From.mdb"), .read_only = true});
  ASSERT_TRUE(from.ok());
  const auto to = Open("To.mdb", true);
  ASSERT_TRUE(to->BeginTransaction().ok());
  const auto copied =
      from.value()->Execute("INSERT INTO T IN \"" + PathOf("To.mdb") + "\" SELECT * FROM T");
  EXPECT_TRUE(copied.ok()) << copied.error().description;
  ASSERT_TRUE(to->Rollback().ok());
  EXPECT_TRUE(to->OpenRecordset("T", RecordsetUse::Read).value()->AtEnd());
}

TEST_F(JetEngineTest, RefusesASizeThatItsFilesCannotHold) {
  Create("Korvo.mdb");
  const auto database = Open("Korvo.mdb");
  ASSERT_TRUE(database->Execute("CREATE TABLE T (A LONG)").ok());
  for (const std::int32_t size : {256, 65536, 65536 + 50, -1}) {
    SCOPED_TRACE(size);
    const FieldDefinition field = {.name = "B", .type = FieldType::Text, .size = size};
    EXPECT_EQ(database->AddField("T", field).number(), kEngineTextTooLong);
    EXPECT_EQ(database->CreateTable({.name = "U", .fields = {field}}).number(), kEngineTextTooLong);
    EXPECT_EQ(FieldNames(*database, "T"), "A");
    EXPECT_EQ(FieldNames(*database, "U"), "");
  }
}

TEST_F(JetEngineTest, PutsAFieldWhereItsOrdinalPositionSays) {
  struct Case {
    const char* what;
    std::int32_t ordinal_position;
    const char* fields;
  };
  constexpr Case kCases[] = {
      {"none is behind all", 0, "A B C New"},
      {"before the field that had it", 1, "A New B C"},
      {"before the last", 2, "A B New C"},
      {"one beyond the last is behind all", 3, "A B C New"},
      {"one far beyond, too", 65536 + 1, "A B C New"},
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.what);
    const std::string name = "Ordinal" + std::to_string(row.ordinal_position) + ".mdb";
    Create(name.c_str());
    const auto database = Open(name.c_str());
    ASSERT_TRUE(database->Execute("CREATE TABLE T (A LONG, B LONG, C LONG)").ok());
    ASSERT_TRUE(database->Execute("INSERT INTO T (A, B, C) VALUES (1, 2, 3)").ok());
    const Status added = database->AddField(
        "T", {.name = "New", .type = FieldType::Long, .ordinal_position = row.ordinal_position});
    ASSERT_TRUE(added.ok()) << added.error().description;
    EXPECT_EQ(FieldNames(*database, "T"), row.fields);
    EXPECT_EQ(database->Execute("DELETE FROM T WHERE A = 1 AND B = 2 AND C = 3").value_or(0), 1);
  }
}

TEST_F(JetEngineTest, TakesValidationRulesThatRowsBreakAlready) {
  Create("Korvo.mdb");
  const auto database = Open("Korvo.mdb");
  ASSERT_TRUE(database->Execute("CREATE TABLE T (A LONG, B TEXT(10))").ok());
  ASSERT_TRUE(database->Execute("INSERT INTO T VALUES (7, '')").ok());
  TableDefinition table = database->Table("T").value().value();
  table.validation_rule = "A <> 6";
  table.fields[0].validation_rule = "< 5";
  table.fields[0].validation_text = "less than five";
  table.fields[1].allow_zero_length = false;
  ASSERT_TRUE(database->SetRules("T", table).ok());
  const TableDefinition found = database->Table("T").value().value();
  EXPECT_EQ(found.validation_rule, "A <> 6");
  EXPECT_EQ(found.fields[0].validation_text, "less than five");
  EXPECT_FALSE(found.fields[1].allow_zero_length);
  EXPECT_FALSE(database->Execute("INSERT INTO T VALUES (7, 'x')").ok());
  EXPECT_TRUE(database->Execute("INSERT INTO T VALUES (4, 'x')").ok());
  table.fields[0].validation_rule.clear();
  ASSERT_TRUE(database->SetRules("T", table).ok());
  EXPECT_TRUE(database->Execute("INSERT INTO T VALUES (7, 'x')").ok());
  EXPECT_FALSE(database->Execute("INSERT INTO T VALUES (6, 'x')").ok());
  EXPECT_EQ(database->Execute("DELETE FROM T").value_or(0), 3);
}

/// Two tables, and the number that the second one gives after it has taken the first one's counter.
struct CounterCase {
  const char* what;
  const char* from;  ///< its fields
  const char* into;
  const char* next;
};

constexpr CounterCase kCounterCases[] = {
    {"the one behind the last that was given", "Id COUNTER, A LONG", "Id COUNTER, A LONG",
     "Id = 4"},
    {"of a field in any case", "Id COUNTER, A LONG", "A LONG, ID COUNTER", "Id = 4"},
    {"another field is another matter", "Id COUNTER, A LONG", "Nr COUNTER, A LONG", "Nr = 2"},
    {"a table that counts nothing", "Id LONG, A LONG", "Id COUNTER, A LONG", "Id = 2"},
};

TEST_F(JetEngineTest, TakesACounterOver) {
  for (const CounterCase& row : kCounterCases) {
    SCOPED_TRACE(row.what);
    const std::string name = "Counter" + std::to_string(&row - kCounterCases) + ".mdb";
    Create(name.c_str());
    const auto database = Open(name.c_str());
    for (const std::string& statement :
         {std::string("CREATE TABLE T (") + row.from + ")",
          std::string("CREATE TABLE U (") + row.into + ")",
          std::string("INSERT INTO T (A) VALUES (1)"), std::string("INSERT INTO T (A) VALUES (2)"),
          std::string("INSERT INTO T (A) VALUES (3)"), std::string("DELETE FROM T WHERE A > 1"),
          std::string("INSERT INTO U (A) VALUES (1)")}) {
      ASSERT_TRUE(database->Execute(statement).ok()) << statement;
    }

    const Status taken = database->TakeCounter("u", "T");

    ASSERT_TRUE(taken.ok()) << taken.error().description;
    ASSERT_TRUE(database->Execute("INSERT INTO U (A) VALUES (2)").ok());
    EXPECT_EQ(
        database->Execute(std::string("DELETE FROM U WHERE A = 2 AND ") + row.next).value_or(0), 1);
  }
}

TEST_F(JetEngineTest, TakesACounterWithinItsTransaction) {
  Create("Korvo.mdb");
  const auto database = Open("Korvo.mdb");
  ASSERT_TRUE(database->Execute("CREATE TABLE T (Id COUNTER, A LONG)").ok());
  ASSERT_TRUE(database->Execute("CREATE TABLE U (Id COUNTER, A LONG)").ok());
  ASSERT_TRUE(database->Execute("INSERT INTO T (A) VALUES (1)").ok());
  EXPECT_EQ(database->TakeCounter("U", "Nowhere").number(), kEngineItemNotFound);
  ASSERT_TRUE(database->BeginTransaction().ok());
  ASSERT_TRUE(database->TakeCounter("U", "T").ok());
  ASSERT_TRUE(database->Rollback().ok());
  ASSERT_TRUE(database->Execute("INSERT INTO U (A) VALUES (1)").ok());
  EXPECT_EQ(database->Execute("DELETE FROM U WHERE Id = 1").value_or(0), 1);
}

// What is equal, by the key, is what the database holds equal: letters in any case and width.
TEST_F(JetEngineTest, GivesOneKeyToTextsThatAreEqual) {
  Create("Korvo.mdb");
  const auto database = Open("Korvo.mdb");
  EXPECT_EQ(database->EqualityKey("Stra\xC3\x9F"
                                  "e"),
            database->EqualityKey("STRASSE"));
  EXPECT_EQ(database->EqualityKey("abc"), database->EqualityKey("ABC"));
  EXPECT_NE(database->EqualityKey("abc"), database->EqualityKey("abd"));
}

}  // namespace
}  // namespace zent::testing
