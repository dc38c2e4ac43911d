#include <gtest/gtest.h>

#include "base/ErrorNumbers.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/format/FileHeader.h"
#include "jet/format/JetErrors.h"
#include "jet/schema/NewDatabase.h"
#include "jet/schema/SchemaChecks.h"
#include "jet/storage/StorageErrors.h"

namespace zent::jet::testing {
namespace {

TEST(CreateDatabase, MakesASoundFile) {
  StoreFile file(EmptyDatabase());
  ExpectRightDatabase(file);
  EXPECT_EQ(file.pager().page_count(), 16U);
}

struct ObjectRow {
  const char* name;
  std::int32_t id;
  std::int32_t parent;
  std::int16_t type;
};
constexpr ObjectRow kObjectRows[] = {
    {"Tables", 0x0F000001, 0x0F000000, 3},
    {"Databases", 0x0F000002, 0x0F000000, 3},
    {"Relationships", 0x0F000003, 0x0F000000, 3},
    {"MSysDb", 0x10000000, 0x0F000002, 2},
    {"MSysObjects", 2, 0x0F000001, 1},
    {"MSysACEs", 3, 0x0F000001, 1},
    {"MSysQueries", 4, 0x0F000001, 1},
    {"MSysRelationships", 5, 0x0F000001, 1},
};

TEST(CreateDatabase, ListsTheObjectsThatEveryFileHas) {
  StoreFile file(EmptyDatabase());
  const std::vector<NamedRow> rows = RowsOf(file, kObjectsPage);
  ASSERT_EQ(rows.size(), std::size(kObjectRows));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    SCOPED_TRACE(kObjectRows[i].name);
    EXPECT_EQ(rows[i].at("Name"), Value(Text(kObjectRows[i].name)));
    EXPECT_EQ(rows[i].at("Id"), Value(kObjectRows[i].id));
    EXPECT_EQ(rows[i].at("ParentId"), Value(kObjectRows[i].parent));
    EXPECT_EQ(rows[i].at("Type"), Value(kObjectRows[i].type));
    EXPECT_EQ(rows[i].at("Flags"), Value(INT32_MIN));
    EXPECT_EQ(rows[i].at("DateCreate"), Value(Date{38000.5}));
  }
}

TEST(CreateDatabase, GivesRightsToTheUsersOfEveryMachine) {
  StoreFile file(EmptyDatabase());
  int inherited = 0;
  const std::vector<NamedRow> rows = RowsOf(file, kAcesPage);
  for (const NamedRow& row : rows) inherited += std::get<bool>(row.at("FInheritable")) ? 1 : 0;
  EXPECT_EQ(rows.size(), 16U);
  EXPECT_EQ(inherited, 4);
}

struct PasswordCase {
  const char* what;
  std::string password;
  int number;
};
const PasswordCase kPasswords[] = {
    {"none", "", 0},
    {"one", "Secret", 0},
    {"not of Latin letters", "\xD0\x9F\xD0\xB0", 0},
    {"the longest", std::string(20, 'x'), 0},
    {"too long", std::string(21, 'x'), kInvalidArgument},
};

TEST(CreateDatabase, SetsThePassword) {
  for (const PasswordCase& row : kPasswords) {
    SCOPED_TRACE(row.what);
    MemoryStorage storage;
    EXPECT_EQ(CreateDatabase(storage, kPath, {.password = row.password}).number(), row.number);
    EXPECT_EQ(storage.Has(kPath), row.number == 0);
    if (row.number != 0) continue;
    const std::string bytes = storage.Bytes(kPath);
    const Result<FileHeader> header = ParseFileHeader(AsBytes(bytes));
    ASSERT_TRUE(header.ok());
    EXPECT_TRUE(CheckPassword(header.value(), row.password).ok());
    EXPECT_EQ(CheckPassword(header.value(), "other").number(), kInvalidPassword);
  }
}

TEST(CreateDatabase, NeverOverwritesAFile) {
  MemoryStorage storage;
  storage.Put(kPath, "someone's data");
  EXPECT_EQ(CreateDatabase(storage, kPath, {}).number(), kDatabaseExists);
  EXPECT_EQ(storage.Bytes(kPath), "someone's data");
}

TEST(CreateDatabase, LeavesNothingBehindWhenTheDiskIsFull) {
  const std::size_t whole = EmptyDatabase().size();
  for (std::size_t space = 0; space < whole; space += kPage / 2) {
    SCOPED_TRACE(space);
    MemoryStorage storage;
    storage.LimitSpace(space);
    EXPECT_EQ(CreateDatabase(storage, kPath, {}).number(), kDiskSpace);
    EXPECT_TRUE(storage.Names().empty());
  }
}

TEST(CreateDatabase, LeavesNothingBehindWhenACallFails) {
  for (int call = 1; call < 1000; ++call) {
    SCOPED_TRACE(call);
    MemoryStorage storage;
    storage.FailAt(call, kDeviceIoError);
    const Status made = CreateDatabase(storage, kPath, {});
    if (storage.changing_calls() < call) return;  // every call had its turn
    EXPECT_EQ(storage.Has(kPath), made.ok());
  }
}

}  // namespace
}  // namespace zent::jet::testing
