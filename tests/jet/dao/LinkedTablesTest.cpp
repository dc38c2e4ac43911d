#include <gtest/gtest.h>

#include "jet/catalog/Catalog.h"
#include "jet/dao/DaoFile.h"
#include "jet/format/JetErrors.h"

/// Tables that lie in another database.
namespace zent::jet::testing {
namespace {

struct LinkCase {
  const char* what;
  ObjectType type;
  const char* name;
  const char* connect;   ///< as the file has it
  const char* database;  ///< as the file has it
  const char* foreign_name;
  const char* told_connect;
  std::uint32_t attributes;
};

constexpr LinkCase kLinks[] = {
    {"of Access", ObjectType::LinkedTable, "Orders", "", "D:\\Data\\Other.mdb", "Orders 2004",
     ";DATABASE=D:\\Data\\Other.mdb", kAttachedTable},
    {"of Access, with a password", ObjectType::LinkedTable, "Bills", "MS Access;PWD=x;",
     "D:\\Data\\Bills.mdb", "Bills", "MS Access;PWD=x;DATABASE=D:\\Data\\Bills.mdb",
     kAttachedTable},
    {"of a server", ObjectType::LinkedOdbcTable, "Stock",
     "ODBC;DRIVER=SQL Server;SERVER=Main;DATABASE=Stock", "", "dbo.Stock",
     "ODBC;DRIVER=SQL Server;SERVER=Main;DATABASE=Stock", kAttachedOdbc},
};

/// Puts the row of a link into the catalog, as Access has it.
void AddLink(Database& database, std::int32_t id, const LinkCase& link) {
  Table& objects = *database.catalog()->OpenTable("MSysObjects").value();
  std::vector<Value> values(objects.definition().columns.size());
  const auto set = [&](std::string_view column, Value value) {
    values[objects.PositionOf(column).value()] = std::move(value);
  };
  set("Id", id);
  set("ParentId", kTablesId);
  set("Type", static_cast<std::int16_t>(link.type));
  set("Flags", std::int32_t{0});
  set("Name", link.name);
  set("ForeignName", link.foreign_name);
  set("DateCreate", Date{38000});
  set("DateUpdate", Date{38001});
  if (*link.connect != '\0') set("Connect", link.connect);
  if (*link.database != '\0') set("Database", link.database);
  const Status inserted = objects.Insert(values).status();
  ASSERT_TRUE(inserted.ok()) << Told(inserted);
}

void AddLinks(Database& database) {
  ASSERT_TRUE(database.BeginTrans().ok());
  std::int32_t id = -1000;
  for (const LinkCase& link : kLinks) AddLink(database, id++, link);
  ASSERT_TRUE(database.CommitTrans().ok());
}

void ExpectLinks(Database& database) {
  for (const LinkCase& link : kLinks) {
    SCOPED_TRACE(link.what);
    const Result<TableDef> table = database.FindTableDef(link.name);
    ASSERT_TRUE(table.ok()) << Told(table.status());
    EXPECT_TRUE(table.value().IsLinked());
    EXPECT_EQ(table.value().attributes(), link.attributes);
    EXPECT_EQ(table.value().connect(), link.told_connect);
    EXPECT_EQ(table.value().source_table_name(), link.foreign_name);
    EXPECT_EQ(table.value().date_created(), Date{38000});
    EXPECT_EQ(table.value().RecordCount().value_or(9), -1);
  }
}

TEST(LinkedTables, AreToldWithTheirConnectText) {
  DaoFile given;
  AddLinks(*given.db);
  ExpectLinks(*given.db);
}

TEST(LinkedTables, StayThroughCompaction) {
  DaoFile given;
  AddLinks(*given.db);
  ASSERT_TRUE(given.db->Close().ok());
  const Status done = given.workspace.CompactDatabase(kFile, "new.mdb");
  ASSERT_TRUE(done.ok()) << Told(done);
  given.db = std::move(given.workspace.OpenDatabase("new.mdb").value());
  ExpectLinks(*given.db);
  EXPECT_EQ(given.Names(), "Ann Bob Cid");
}

TEST(LinkedTables, AreNotChangedButCanBeUnlinked) {
  DaoFile given;
  AddLinks(*given.db);
  for (const LinkCase& link : kLinks) {
    SCOPED_TRACE(link.what);
    TableDef table = given.db->FindTableDef(link.name).value();
    EXPECT_EQ(table.Append(CreateField("A", DataType::Long)).number(), kInvalidOperation);
    EXPECT_EQ(table.Fields().value().count(), 0U);
    EXPECT_EQ(given.db->OpenRecordset(link.name).number(), kNoSuchTable);
    const Status deleted = given.db->DeleteTable(link.name);
    EXPECT_TRUE(deleted.ok()) << Told(deleted);
    EXPECT_EQ(given.db->FindTableDef(link.name).number(), kItemNotFound);
  }
}

}  // namespace
}  // namespace zent::jet::testing
