#include <gtest/gtest.h>

#include <functional>

#include "jet/catalog/Transaction.h"
#include "jet/dao/DaoFile.h"
#include "jet/dao/HostFiles.h"
#include "jet/format/JetErrors.h"
#include "jet/samples/SamplePaths.h"
#include "jet/tools/Verify.h"
#include "jet/transfer/TableCopy.h"
#include "support/TempFolder.h"

/// Files of Access 97: read as any other, never written, and their tables copied into new files.
namespace zent::jet::testing {
namespace {

bool IsJet3(const std::filesystem::path& path) {
  const std::string bytes = zent::testing::ReadHostFile(path);
  return bytes.size() > 0x14 && bytes[0x14] == 0;
}

/// A copy of a real file in a folder of its own, opened.
class SampleCopy {
 public:
  explicit SampleCopy(const std::filesystem::path& sample)
      : before(zent::testing::ReadHostFile(sample)), path(folder.Put("Old.mdb", before).string()) {
    auto opened = workspace.OpenDatabase(path);
    EXPECT_TRUE(opened.ok()) << Told(opened.status());
    if (opened.ok()) db = std::move(opened.value());
  }

  zent::testing::TempFolder folder;
  std::string before;
  std::string path;
  std::unique_ptr<Storage> storage = HostFiles();
  Workspace workspace{*storage};
  std::unique_ptr<Database> db;
};

/// The tables of the database that are not Access' own.
std::vector<TableDef> OwnTables(Database& database) {
  std::vector<TableDef> tables;
  const Collection<TableDef> all = database.TableDefs().value_or({});
  for (const TableDef& table : all) {
    if (!table.IsLinked() && (table.attributes() & kSystemTable) == 0) tables.push_back(table);
  }
  return tables;
}

using Change = std::function<Status(Database&, const std::string& table)>;
struct ChangeCase {
  const char* what;
  Change change;
};

Status ChangeFirstRow(Database& database, const std::string& table,
                      const std::function<Status(Recordset&)>& change) {
  const auto rows = database.OpenRecordset(table);
  if (!rows.ok()) return rows.status();
  EXPECT_FALSE(rows.value()->updatable());
  return change(*rows.value());
}

const ChangeCase kChanges[] = {
    {"a statement that deletes",
     [](Database& db, const std::string& table) {
       return db.Execute("DELETE FROM [" + table + "]");
     }},
    {"a new table",
     [](Database& db, const std::string&) { return db.Execute("CREATE TABLE New (A LONG)"); }},
    {"a transaction", [](Database& db, const std::string&) { return db.BeginTrans(); }},
    {"an appended table",
     [](Database& db, const std::string&) {
       TableDef table = db.CreateTableDef("New");
       EXPECT_TRUE(table.Append(CreateField("A", DataType::Long)).ok());
       return db.Append(table);
     }},
    {"a deleted table",
     [](Database& db, const std::string& table) { return db.DeleteTable(table); }},
    {"a renamed table",
     [](Database& db, const std::string& table) {
       return db.FindTableDef(table).value().SetName("New");
     }},
    {"a new field",
     [](Database& db, const std::string& table) {
       return db.FindTableDef(table).value().Append(CreateField("New", DataType::Long));
     }},
    {"a new row",
     [](Database& db, const std::string& table) {
       return ChangeFirstRow(db, table, [](Recordset& rows) { return rows.AddNew(); });
     }},
    {"an edited row",
     [](Database& db, const std::string& table) {
       return ChangeFirstRow(
           db, table, [](Recordset& rows) { return rows.AtEnd() ? rows.AddNew() : rows.Edit(); });
     }},
    {"a deleted row",
     [](Database& db, const std::string& table) {
       return ChangeFirstRow(
           db, table, [](Recordset& rows) { return rows.AtEnd() ? rows.AddNew() : rows.Delete(); });
     }},
};

TEST(SampleDao, RefusesToChangeFilesOfAccess97) {
  std::size_t files = 0;
  for (const std::filesystem::path& path : SamplePaths()) {
    if (!IsJet3(path)) continue;
    SCOPED_TRACE(path.filename().string());
    SampleCopy given(path);
    ASSERT_TRUE(given.db);
    EXPECT_EQ(given.db->version(), "3.0");
    EXPECT_FALSE(given.db->updatable());
    const std::vector<TableDef> tables = OwnTables(*given.db);
    ASSERT_FALSE(tables.empty());
    for (const ChangeCase& row : kChanges) {
      SCOPED_TRACE(row.what);
      const Status done = row.change(*given.db, tables.front().name());
      EXPECT_EQ(done.number(), kReadOnly) << Told(done);
    }
    ASSERT_TRUE(given.db->Close().ok());
    EXPECT_EQ(given.workspace.CompactDatabase(given.path, given.path + ".new").number(), kReadOnly);
    EXPECT_TRUE(given.folder.Get("Old.mdb") == given.before);
    ++files;
  }
  EXPECT_GE(files, 5U);
}

std::vector<std::string> NamesOfFields(const TableDef& table) {
  std::vector<std::string> names;
  const Collection<Field> fields = table.Fields().value_or({});
  for (const Field& field : fields) names.push_back(field.name);
  return names;
}

/// The same rows in the same order.
void ExpectSameRows(Recordset& a, Recordset& b, std::size_t& rows) {
  for (; !a.AtEnd() && !b.AtEnd(); ++rows) {
    for (std::size_t i = 0; i < a.Fields().count(); ++i) {
      const Result<Value> one = a.Get(i);
      const Result<Value> other = b.Get(i);
      ASSERT_TRUE(one.ok() && other.ok());
      ASSERT_EQ(one.value(), other.value()) << a.Fields()[i].name;
    }
    ASSERT_TRUE(a.MoveNext().ok() && b.MoveNext().ok());
  }
  EXPECT_TRUE(a.AtEnd() && b.AtEnd());
}

void ExpectSameTable(Database& from, Database& to, const std::string& name, std::size_t& rows) {
  const TableDef old = from.FindTableDef(name).value();
  const TableDef copy = to.FindTableDef(name).value();
  EXPECT_EQ(NamesOfFields(copy), NamesOfFields(old));
  EXPECT_EQ(copy.RecordCount().value_or(-1), old.RecordCount().value_or(-2));
  const Collection<Index> indexes = old.Indexes().value_or({});
  for (const Index& index : indexes) {
    if (index.foreign) continue;
    const Result<Index> copied = copy.Indexes().value().Find(index.name);
    ASSERT_TRUE(copied.ok()) << index.name;
    EXPECT_EQ(copied.value().fields.size(), index.fields.size());
    EXPECT_EQ(copied.value().unique, index.unique);
    EXPECT_EQ(copied.value().primary, index.primary);
  }
  ExpectSameRows(*from.OpenRecordset(name).value(), *to.OpenRecordset(name).value(), rows);
}

std::vector<std::string> FaultsOf(Database& database) {
  std::vector<std::string> faults;
  const Result<VerifySummary> summary = VerifyDatabase(
      database.catalog()->pager(), [&](const std::string& line) { faults.push_back(line); });
  EXPECT_TRUE(summary.ok()) << Told(summary.status());
  return faults;
}

TEST(SampleDao, CopiesTablesOfAccess97IntoNewFiles) {
  std::size_t tables = 0;
  std::size_t rows = 0;
  for (const std::filesystem::path& path : SamplePaths()) {
    if (!IsJet3(path)) continue;
    SCOPED_TRACE(path.filename().string());
    SampleCopy given(path);
    ASSERT_TRUE(given.db);
    const std::string target = (given.folder.path() / "New.mdb").string();
    const auto made = std::move(given.workspace.CreateDatabase(target).value());
    for (const TableDef& table : OwnTables(*given.db)) {
      SCOPED_TRACE(table.name());
      ASSERT_TRUE(made->BeginTrans().ok());
      const Result<std::int64_t> copied =
          CopyTable(*given.db->catalog(), *made->catalog(), {.table = table.name()});
      ASSERT_TRUE(copied.ok()) << Told(copied.status());
      ASSERT_TRUE(made->CommitTrans().ok());
      ExpectSameTable(*given.db, *made, table.name(), rows);
      ++tables;
    }
    EXPECT_EQ(FaultsOf(*made), std::vector<std::string>());
    EXPECT_TRUE(given.folder.Get("Old.mdb") == given.before);
  }
  EXPECT_GT(tables, 15U);
  EXPECT_GT(rows, 2000U);
}

/// The text fields of a table, as a list for SELECT; empty without any.
std::string ListOfTexts(const TableDef& table) {
  std::string list;
  const Collection<Field> fields = table.Fields().value_or({});
  for (const Field& field : fields) {
    if (field.type != DataType::ShortText) continue;
    list += (list.empty() ? "[" : ", [") + field.name + "]";
  }
  return list;
}

// Its characters take one byte each, and those of the new file two.
TEST(SampleDao, KeepsTheSizesOfTextsOfAccess97) {
  std::size_t texts = 0;
  for (const std::filesystem::path& path : SamplePaths()) {
    if (!IsJet3(path)) continue;
    SCOPED_TRACE(path.filename().string());
    SampleCopy given(path);
    ASSERT_TRUE(given.db);
    const std::string target = (given.folder.path() / "New.mdb").string();
    const auto made = std::move(given.workspace.CreateDatabase(target).value());
    for (const TableDef& table : OwnTables(*given.db)) {
      const std::string list = ListOfTexts(table);
      if (list.empty()) continue;
      SCOPED_TRACE(table.name());
      const std::string from = " FROM [" + table.name() + "]";
      const auto copy = given.db->OpenRecordset("SELECT " + list + from, RecordsetType::Snapshot);
      ASSERT_TRUE(copy.ok()) << Told(copy.status());
      const Status done = given.db->Execute("SELECT " + list + " INTO [" + table.name() +
                                            "] IN \"" + target + "\"" + from);
      ASSERT_TRUE(done.ok()) << Told(done);
      const TableDef copied = made->FindTableDef(table.name()).value();
      EXPECT_EQ(copied.RecordCount().value_or(-1), table.RecordCount().value_or(-2));
      const Collection<Field> fields = copied.Fields().value_or({});
      for (std::size_t i = 0; i < fields.count(); ++i, ++texts) {
        const Field old = table.Fields().value().Find(fields[i].name).value();
        EXPECT_EQ(fields[i].size, old.size) << old.name;
        EXPECT_EQ(copy.value()->Fields()[i].size, old.size) << old.name;
      }
    }
  }
  EXPECT_GT(texts, 10U);
}

}  // namespace
}  // namespace zent::jet::testing
