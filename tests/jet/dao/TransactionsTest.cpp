#include <gmock/gmock.h>

#include "jet/catalog/Catalog.h"
#include "jet/dao/DaoFile.h"
#include "jet/format/JetErrors.h"

namespace zent::jet::testing {
namespace {

constexpr const char* kAddDan = "INSERT INTO People (Name) VALUES ('Dan')";
constexpr const char* kAddEve = "INSERT INTO People (Name) VALUES ('Eve')";

TEST(Database, CommitsEachChangeByItselfOutsideOfTransactions) {
  DaoFile given;
  given.Run(kAddDan);
  const auto rows = given.Rows("People");
  ASSERT_TRUE(rows->Edit().ok());
  ASSERT_TRUE(rows->Put("Name", Text("Amy")).ok());
  ASSERT_TRUE(rows->Update().ok());
  // What the machine holds when it stops now.
  const auto after = given.storage.AfterPowerLoss({.kind = PowerLoss::LosesAll});
  Workspace workspace(*after);
  const auto opened = workspace.OpenDatabase(kFile);
  ASSERT_TRUE(opened.ok()) << opened.error().description;
  const auto left = opened.value()->OpenRecordset("People");
  EXPECT_EQ(DaoFile::NamesOf(*left.value()), "Amy Bob Cid Dan");
}

/// Puts a wrong number for the room of the page that the first row of a table lies on: the page is
/// read all the same, but not changed.
void DamagePageOf(DaoFile& file, std::string_view table) {
  Catalog& catalog = *file.db->catalog();
  Pager& pager = catalog.pager();
  RowScan scan(catalog.OpenTable(table).value()->store().rows());
  ASSERT_TRUE(scan.Next().value_or(false));
  PageTransaction transaction(pager);
  {
    Result<PageEdit> edit = pager.Edit(scan.page());
    ASSERT_TRUE(edit.ok());
    StoreU16(edit.value().bytes(), pager.layout().data.free_space, 1);
  }
  ASSERT_TRUE(transaction.Commit().ok());
}

TEST(Database, KeepsWhatATransactionDidBeforeARowThatFailsHalfWay) {
  DaoFile given;
  given.Run("CREATE TABLE Pets (Name TEXT(20))");
  given.Run("INSERT INTO Pets VALUES ('Rex')");
  DamagePageOf(given, "Pets");
  ASSERT_TRUE(given.db->BeginTrans().ok());
  given.Run(kAddDan);

  const auto pets = given.Rows("Pets");
  ASSERT_TRUE(pets->Edit().ok());
  ASSERT_TRUE(pets->Put("Name", Text("Max")).ok());
  EXPECT_EQ(pets->Update().number(), kCannotOpenDatabase);
  ASSERT_TRUE(pets->CancelUpdate().ok());
  EXPECT_EQ(pets->Delete().number(), kCannotOpenDatabase);

  given.Run(kAddEve);
  EXPECT_TRUE(given.db->CommitTrans().ok());
  EXPECT_EQ(given.Names(), "Ann Bob Cid Dan Eve");
  EXPECT_EQ(TextIn(*given.Rows("Pets"), "Name"), "Rex");
}

TEST(Database, KeepsOrUndoesTransactions) {
  using Step = std::function<void(DaoFile&)>;
  const Step begin = [](DaoFile& file) { EXPECT_TRUE(file.db->BeginTrans().ok()); };
  const Step commit = [](DaoFile& file) { EXPECT_TRUE(file.db->CommitTrans().ok()); };
  const Step undo = [](DaoFile& file) { EXPECT_TRUE(file.db->Rollback().ok()); };
  const Step dan = [](DaoFile& file) { file.Run(kAddDan); };
  const Step eve = [](DaoFile& file) { file.Run(kAddEve); };
  const Step fails = [](DaoFile& file) {
    // The second row would be refused: the first one is not changed either.
    EXPECT_EQ(file.db->Execute("UPDATE People SET Id = 7").number(), kDuplicateKey);
  };
  struct Case {
    const char* what;
    std::vector<Step> steps;
    const char* names;
  };
  const Case cases[] = {
      {"committed", {begin, dan, commit}, "Ann Bob Cid Dan"},
      {"undone", {begin, dan, undo}, "Ann Bob Cid"},
      {"committed within", {begin, dan, begin, eve, commit, commit}, "Ann Bob Cid Dan Eve"},
      {"committed within, undone", {begin, dan, begin, eve, commit, undo}, "Ann Bob Cid"},
      {"undone within", {begin, dan, begin, eve, undo, commit}, "Ann Bob Cid Dan"},
      {"undone within, and goes on", {begin, begin, dan, undo, eve, commit}, "Ann Bob Cid Eve"},
      {"a statement that fails", {begin, dan, fails, eve, commit}, "Ann Bob Cid Dan Eve"},
      {"a statement that fails, alone", {fails, dan}, "Ann Bob Cid Dan"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    DaoFile given;
    for (const Step& step : row.steps) step(given);
    EXPECT_EQ(given.Names(), row.names);
    EXPECT_EQ(given.db->CommitTrans().number(), kNoTransaction);
    EXPECT_EQ(given.db->Rollback().number(), kNoTransaction);
  }
}

TEST(Database, NestsFiveTransactions) {
  DaoFile given;
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(given.db->BeginTrans().ok());
  EXPECT_EQ(given.db->BeginTrans().number(), kTransactionsTooDeep);
}

TEST(Database, KeepsRecordsetsThroughARollback) {
  DaoFile given;
  const auto rows = given.Rows("People");
  ASSERT_TRUE(given.db->BeginTrans().ok());
  ASSERT_TRUE(rows->Edit().ok());
  ASSERT_TRUE(rows->Put("Name", Text("Amy")).ok());
  ASSERT_TRUE(rows->Update().ok());
  EXPECT_EQ(TextIn(*rows, "Name"), "Amy");
  ASSERT_TRUE(given.db->Rollback().ok());
  EXPECT_EQ(TextIn(*rows, "Name"), "Ann");
  ASSERT_TRUE(rows->MoveNext().ok());
  EXPECT_EQ(TextIn(*rows, "Name"), "Bob");
}

TEST(Database, RollsBackWhatIsOpenWhenItIsClosed) {
  DaoFile given;
  ASSERT_TRUE(given.db->BeginTrans().ok());
  given.Run(kAddDan);
  ASSERT_TRUE(given.db->Close().ok());
  given.db = std::move(given.workspace.OpenDatabase(kFile).value());
  EXPECT_EQ(given.Names(), "Ann Bob Cid");
}

TEST(Execute, TellsHowManyRowsItChanged) {
  struct Case {
    const char* statement;
    int number;
    std::int64_t rows;
  };
  constexpr Case kCases[] = {
      {"UPDATE People SET Age = 50 WHERE Age = 40", 0, 2},
      {"DELETE FROM People WHERE Age = 99", 0, 0},
      {"DELETE FROM People", 0, 3},
      {"INSERT INTO People (Name) VALUES ('Dan')", 0, 1},
      {"CREATE TABLE New (A LONG)", 0, 0},
      {"SELECT * FROM People", kSelectNotExecuted, 0},
      {"UPDATE Peple SET Age = 1", kNoSuchTable, 0},
      {"UPDATE People SET Age = 300", kValidationFailed, 0},
      {"DELETE People WHERE", kSyntaxError, 0},
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.statement);
    DaoFile given;
    EXPECT_EQ(given.db->Execute(row.statement).number(), row.number);
    EXPECT_EQ(given.db->records_affected(), row.rows);
  }
}

TEST(Execute, PutsRowsIntoAnotherFile) {
  constexpr std::string_view kOther = "C:\\Data\\Other.mdb";
  for (const bool is_open : {true, false}) {
    SCOPED_TRACE(is_open ? "open in the workspace" : "not open");
    DaoFile given;
    auto other = std::move(given.workspace.CreateDatabase(kOther).value());
    TableDef table = PeopleTable();
    ASSERT_TRUE(other->Append(table).ok());
    if (!is_open) other.reset();
    const Status done = given.db->Execute(
        "INSERT INTO People IN \"C:\\Data\\Other.mdb\" SELECT * FROM People WHERE Age = 40");
    ASSERT_TRUE(done.ok()) << done.error().description;
    EXPECT_EQ(given.db->records_affected(), 2);
    if (!is_open) other = std::move(given.workspace.OpenDatabase(kOther).value());
    EXPECT_EQ(DaoFile::NamesOf(*other->OpenRecordset("People").value()), "Bob Cid");
    EXPECT_EQ(given.Names(), "Ann Bob Cid");
    EXPECT_EQ(given.db->Execute("INSERT INTO People IN \"C:\\Data\\None.mdb\" SELECT * FROM People")
                  .number(),
              kDatabaseNotFound);
  }
}

}  // namespace
}  // namespace zent::jet::testing
