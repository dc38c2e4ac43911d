#include <gtest/gtest.h>

#include "jet/catalog/Transaction.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/format/JetErrors.h"
#include "jet/storage/StorageErrors.h"
#include "jet/transfer/Compaction.h"
#include "jet/transfer/CopyFiles.h"
#include "jet/transfer/DatabaseChecks.h"

namespace zent::jet::testing {
namespace {

using Names = std::vector<std::string>;

TEST(CompactDatabase, KeepsEverything) {
  struct Case {
    const char* what;
    int rows;
    std::size_t bytes;  ///< of the cache and of the sorting
  };
  constexpr Case kCases[] = {
      {"no rows", 0, std::size_t{64} << 20U},
      {"some rows", 50, std::size_t{64} << 20U},
      {"more than the cache and the sorting hold", 1500, std::size_t{64} << 10U},
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.what);
    MemoryStorage storage;
    MakeSource(storage, "old.mdb", row.rows);
    const Status done = CompactDatabase(storage, {.source = "old.mdb",
                                                  .target = "new.mdb",
                                                  .cache_bytes = row.bytes,
                                                  .sort_bytes = row.bytes});
    ASSERT_TRUE(done.ok()) << done.error().description;
    EXPECT_EQ(storage.Names(), (Names{"new.mdb", "old.mdb"}));
    const OpenedDatabase old = OpenCatalog(storage, "old.mdb");
    const OpenedDatabase made = OpenCatalog(storage, "new.mdb");
    ASSERT_TRUE(old.catalog && made.catalog);
    ExpectSameContents(*old.catalog, *made.catalog);
    const TableDefinition& table = made.catalog->OpenTable("Things").value()->definition();
    EXPECT_EQ(table.max_columns, table.columns.size()) << "the dropped column leaves no gap";
    EXPECT_LT(storage.Bytes("new.mdb").size(), storage.Bytes("old.mdb").size() + 65536);
  }
}

TEST(CompactDatabase, TakesRowsOverOfEachAgeAndForm) {
  MemoryStorage storage;
  MakeLetters(storage, "old.mdb");
  // The copy of the copy has all its rows in one form: the same bytes of rows again.
  ASSERT_TRUE(CompactDatabase(storage, {.source = "old.mdb", .target = "new.mdb"}).ok());
  ASSERT_TRUE(CompactDatabase(storage, {.source = "new.mdb", .target = "newer.mdb"}).ok());
  const OpenedDatabase old = OpenCatalog(storage, "old.mdb");
  for (const char* const name : {"new.mdb", "newer.mdb"}) {
    SCOPED_TRACE(name);
    const OpenedDatabase made = OpenCatalog(storage, name);
    ASSERT_TRUE(old.catalog && made.catalog);
    ExpectSameContents(*old.catalog, *made.catalog);
    ExpectRightIndexes(*made.catalog->OpenTable("Letters").value());
  }
}

/// Puts the end of the seal of the first letter, where the field after it begins, behind its row.
void DamageFirstLetter(Storage& storage, std::string_view path) {
  const OpenedDatabase opened = OpenCatalog(storage, path);
  ASSERT_TRUE(opened.catalog);
  Result<Transaction> transaction = Transaction::Begin(*opened.catalog);
  ASSERT_TRUE(transaction.ok());
  RowStore& rows = opened.catalog->OpenTable("Letters").value()->store().rows();
  RowScan scan(rows);
  ASSERT_TRUE(scan.Next().value_or(false));
  std::vector<std::uint8_t> row(scan.bytes().begin(), scan.bytes().end());
  // The offset of the last of four fields; their count and the mask stand behind it.
  row[row.size() - (8 + 2 + 1)] = 0xFF;
  ASSERT_TRUE(rows.Update(scan.at(), row).ok());
  ASSERT_TRUE(transaction.value().Commit().ok());
}

// A row whose fields are in disorder is reported as reading it would be, never taken over.
TEST(CompactDatabase, TakesNoDamagedRowOver) {
  MemoryStorage storage;
  MakeLetters(storage, "old.mdb", 1);
  DamageFirstLetter(storage, "old.mdb");
  const Status done = CompactDatabase(storage, {.source = "old.mdb", .target = "new.mdb"});
  EXPECT_EQ(done.number(), kCannotOpenDatabase);
  EXPECT_EQ(storage.Names(), Names{"old.mdb"});
}

// More pages are open at a time than a small cache has.
TEST(CompactDatabase, CopiesTablesOfManyLongValueColumns) {
  MemoryStorage storage;
  MakeWide(storage, "old.mdb");
  const Status done = CompactDatabase(storage, {.source = "old.mdb", .target = "new.mdb"});
  ASSERT_TRUE(done.ok()) << done.error().description;
  const OpenedDatabase old = OpenCatalog(storage, "old.mdb");
  const OpenedDatabase made = OpenCatalog(storage, "new.mdb");
  ASSERT_TRUE(old.catalog && made.catalog);
  ExpectSameContents(*old.catalog, *made.catalog);
}

/// Takes the last page with rows of a table out of its map. The table: where its definition begins,
/// or 0 for the letters.
void HideLastRows(Storage& storage, std::string_view path, PageNumber definition) {
  const OpenedDatabase opened = OpenCatalog(storage, path);
  ASSERT_TRUE(opened.catalog);
  Result<Transaction> transaction = Transaction::Begin(*opened.catalog);
  ASSERT_TRUE(transaction.ok());
  const Result<Table*> table = definition == 0 ? opened.catalog->OpenTable("Letters")
                                               : opened.catalog->OpenTableAt(definition, "system");
  ASSERT_TRUE(table.ok());
  PageNumber last = 0;
  RowScan scan(table.value()->store().rows());
  while (scan.Next().value_or(false)) last = scan.at().page;
  ASSERT_NE(last, 0U);
  const RowPointer map = table.value()->definition().owned_map;
  ASSERT_TRUE(opened.catalog->maps().Set(map, last, false).ok());
  ASSERT_TRUE(transaction.value().Commit().ok());
}

struct HidingCase {
  const char* what;
  void (*make)(Storage& storage, std::string_view path);
  PageNumber definition;  ///< 0: the letters
};
const HidingCase kHiding[] = {
    {"rows of a table", [](Storage& s, std::string_view path) { MakeLetters(s, path); }, 0},
    {"objects, and with them whole tables", MakeMany, kObjectsPage},
    {"relationships", [](Storage& s, std::string_view path) { MakeSource(s, path); },
     kRelationshipsPage},
};
TEST(CompactDatabase, LosesNoRowsThatADamagedMapHides) {
  for (const HidingCase& row : kHiding) {
    SCOPED_TRACE(row.what);
    MemoryStorage storage;
    row.make(storage, "old.mdb");
    HideLastRows(storage, "old.mdb", row.definition);
    const Status done = CompactDatabase(storage, {.source = "old.mdb", .target = "new.mdb"});
    EXPECT_EQ(done.number(), kCannotOpenDatabase);
    if (done.ok()) continue;
    EXPECT_NE(done.error().description.find("that the table counts"), std::string::npos)
        << done.error().description;
    EXPECT_EQ(storage.Names(), Names{"old.mdb"});
  }
}

TEST(CompactDatabase, GoesOnWithNumbersRulesAndRelationships) {
  MemoryStorage storage;
  MakeSource(storage, "old.mdb");
  ASSERT_TRUE(CompactDatabase(storage, {.source = "old.mdb", .target = "new.mdb"}).ok());
  const OpenedDatabase made = OpenCatalog(storage, "new.mdb");
  Result<Transaction> transaction = Transaction::Begin(*made.catalog);
  ASSERT_TRUE(transaction.ok());
  Table& things = *made.catalog->OpenTable("Things").value();
  std::vector<Value> values(things.definition().columns.size());
  EXPECT_EQ(things.Insert(values).number(), kValueRequired);
  values[things.PositionOf("Name").value()] = "new";
  ASSERT_TRUE(things.Insert(values).ok());
  EXPECT_EQ(values[things.PositionOf("Id").value()], Value(std::int32_t{51}));
  Table& parts = *made.catalog->OpenTable("Parts").value();
  std::vector<Value> part(parts.definition().columns.size());
  part[parts.PositionOf("Thing").value()] = std::int32_t{999};
  EXPECT_EQ(parts.Insert(part).number(), kNoRelatedRecord);
  // The things that parts belong to take them with them.
  RowScan scan(things.store().rows());
  ASSERT_TRUE(scan.Next().value_or(false));
  const RowPointer first = scan.at();
  ASSERT_TRUE(things.Delete(first).ok());
  EXPECT_EQ(parts.store().RowCount().value_or(0), 8U);
  ExpectRightIndexes(things);
  ExpectRightIndexes(parts);
}

TEST(CompactDatabase, KeepsOrChangesThePassword) {
  struct Case {
    const char* what;
    const char* given;
    std::optional<std::string> new_password;
    int number;
    const char* password;
  };
  const Case cases[] = {
      {"kept", "old", std::nullopt, 0, "old"},
      {"changed", "old", "new", 0, "new"},
      {"taken off", "old", "", 0, ""},
      {"wrong", "Old", std::nullopt, kInvalidPassword, ""},
      {"too long", "old", std::string(21, 'x'), kInvalidArgument, ""},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    MemoryStorage storage;
    MakeSource(storage, "old.mdb", 4, "old");
    const Status done = CompactDatabase(storage, {.source = "old.mdb",
                                                  .target = "new.mdb",
                                                  .password = row.given,
                                                  .new_password = row.new_password});
    EXPECT_EQ(done.number(), row.number);
    EXPECT_EQ(storage.Has("new.mdb"), row.number == 0);
    EXPECT_EQ(storage.Names().size(), row.number == 0 ? 2U : 1U);
    if (row.number != 0) continue;
    std::string bytes = storage.Bytes("new.mdb").substr(0, kPage);
    const Result<FileHeader> header =
        ParseFileHeader({reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()});
    ASSERT_TRUE(header.ok());
    EXPECT_EQ(header.value().password, row.password);
  }
}

TEST(CompactDatabase, RefusesWhatItCannotCopyAndLeavesNothing) {
  struct Case {
    const char* what;
    std::string source;
    Sharing opened;  ///< by another: ReadOnly, or Exclusive; Shared stands for nobody
    bool target_exists;
    int number;
  };
  MemoryStorage made;
  MakeSource(made, "a", 4);
  const std::string right = made.Bytes("a");
  std::string damaged = right;
  damaged[2 * kPage] = 7;
  const Case cases[] = {
      {"nothing there", "", Sharing::Shared, false, kDatabaseNotFound},
      {"no database", std::string(9000, 'x'), Sharing::Shared, false, kUnrecognizedFormat},
      {"a catalog that cannot be read", damaged, Sharing::Shared, false, kCannotOpenDatabase},
      {"in use", right, Sharing::ReadOnly, false, kDatabaseInUse},
      {"opened exclusively", right, Sharing::Exclusive, false, kDatabaseInUse},
      {"a target that exists", right, Sharing::Shared, true, kDatabaseExists},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    MemoryStorage storage;
    if (!row.source.empty()) storage.Put("old.mdb", row.source);
    if (row.target_exists) storage.Put("new.mdb", "other");
    const Names before = storage.Names();
    std::unique_ptr<StoredFile> holder;
    if (row.opened != Sharing::Shared) {
      holder = std::move(storage.Open("old.mdb", row.opened).value());
    }
    EXPECT_EQ(CompactDatabase(storage, {.source = "old.mdb", .target = "new.mdb"}).number(),
              row.number);
    EXPECT_EQ(storage.Names(), before);
    EXPECT_EQ(storage.Bytes("old.mdb"), row.source);
    EXPECT_EQ(storage.Bytes("new.mdb"), row.target_exists ? "other" : "");
  }
}

/// The file is there whole, or not at all, whenever the machine stops.
TEST(CompactDatabase, LeavesNoHalfFileWhenTheMachineStops) {
  MemoryStorage source;
  MakeSource(source, "old.mdb", 4);
  const std::string bytes = source.Bytes("old.mdb");
  const Compaction compaction{.source = "old.mdb", .target = "new.mdb"};
  MemoryStorage whole;
  whole.Put("old.mdb", bytes);
  ASSERT_TRUE(CompactDatabase(whole, compaction).ok());
  const int calls = whole.changing_calls();
  ASSERT_GT(calls, 5);
  for (int call = 1; call <= calls; ++call) {
    for (const PowerLoss::Kind kind : {PowerLoss::KeepsAll, PowerLoss::LosesAll}) {
      SCOPED_TRACE(call);
      MemoryStorage storage;
      storage.Put("old.mdb", bytes);
      storage.StopAt(call);
      EXPECT_FALSE(CompactDatabase(storage, compaction).ok());
      const auto after = storage.AfterPowerLoss({.kind = kind});
      EXPECT_TRUE(after->Bytes("old.mdb") == bytes);
      if (after->Has("new.mdb")) {
        EXPECT_TRUE(after->Bytes("new.mdb") == whole.Bytes("new.mdb"));
        continue;
      }
      // The next run clears up.
      EXPECT_TRUE(CompactDatabase(*after, compaction).ok());
      EXPECT_EQ(after->Names(), (Names{"new.mdb", "old.mdb"}));
    }
  }
}

TEST(CompactDatabase, ClearsUpAfterAFailure) {
  MemoryStorage source;
  MakeSource(source, "old.mdb", 4);
  const std::string bytes = source.Bytes("old.mdb");
  for (int call = 1; call <= 4; ++call) {
    SCOPED_TRACE(call);
    MemoryStorage storage;
    storage.Put("old.mdb", bytes);
    storage.FailAt(call, kDiskFull);
    const Status done = CompactDatabase(storage, {.source = "old.mdb", .target = "new.mdb"});
    EXPECT_EQ(done.number(), kDiskSpace);
    EXPECT_EQ(storage.Names(), Names{"old.mdb"});
    EXPECT_TRUE(storage.Bytes("old.mdb") == bytes);
  }
}

}  // namespace
}  // namespace zent::jet::testing
