#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "KillingStorage.h"
#include "jet/catalog/Transaction.h"
#include "jet/random/RandomDatabase.h"
#include "jet/schema/Schema.h"
#include "jet/storage/Journal.h"
#include "jet/tools/Dump.h"
#include "jet/transfer/Compaction.h"
#include "jet/transfer/CopyFiles.h"
#include "support/TempFolder.h"

/// A process is killed at every changing call that it makes while it changes the structure of a
/// database, or compacts it.
namespace zent::jet::testing {
namespace {

constexpr int kRows = 12;

struct OpenedFile {
  std::unique_ptr<Pager> pager;
  std::unique_ptr<Catalog> catalog;
};

Result<OpenedFile> OpenFile(Storage& storage, const std::string& path) {
  OpenedFile file;
  auto pager = Pager::Open(storage, path, {});
  if (!pager.ok()) return pager.error();
  file.pager = std::move(pager.value());
  auto catalog = Catalog::Open(*file.pager);
  if (!catalog.ok()) return catalog.error();
  file.catalog = std::move(catalog.value());
  return file;
}

using Change = Status (*)(Schema&);
constexpr Change kChanges[] = {
    [](Schema& schema) {
      return schema.CreateTable(
          {.name = "New",
           .columns = {{.name = "Id", .auto_number = true},
                       {.name = "Name", .type = ColumnType::Text}},
           .indexes = {{.name = "Key", .columns = {{"Id"}}, .primary = true}}});
    },
    [](Schema& schema) {
      return schema.AddColumn("Things", {.name = "More", .type = ColumnType::Memo});
    },
    [](Schema& schema) {
      return schema.CreateIndex("Things", {.name = "ByNumber", .columns = {{"Number", true}}});
    },
    [](Schema& schema) { return schema.RenameTable("Parts", "Pieces"); },
    [](Schema& schema) { return schema.DropRelationship("ThingsParts"); },
    [](Schema& schema) { return schema.DropIndex("Things", "ByName"); },
    [](Schema& schema) { return schema.DropColumn("Things", "Picture"); },
    [](Schema& schema) { return schema.DropTable("Pieces"); },
};

/// Makes the first `count` changes, a transaction each.
Status ChangeStructure(Storage& storage, const std::string& path, std::size_t count) {
  Result<OpenedFile> file = OpenFile(storage, path);
  if (!file.ok()) return file.status();
  for (std::size_t i = 0; i < count; ++i) {
    Result<Transaction> transaction = Transaction::Begin(*file.value().catalog);
    if (!transaction.ok()) return transaction.status();
    Schema schema(*file.value().catalog, Date{38000});
    if (Status changed = kChanges[i](schema); !changed.ok()) return changed;
    if (Status committed = transaction.value().Commit(); !committed.ok()) return committed;
  }
  return {};
}

/// Everything in the file, which must be in order.
std::string ContentsOf(const std::string& path) {
  PosixStorage storage;
  const Result<OpenedFile> file = OpenFile(storage, path);
  EXPECT_TRUE(file.ok());
  if (!file.ok()) return {};
  EXPECT_EQ(FaultsOfFile(*file.value().pager), std::vector<std::string>());
  std::string text;
  const Status dumped = DumpDatabase(*file.value().catalog, {.whole_values = true},
                                     [&](std::string_view piece) { text += piece; });
  EXPECT_TRUE(dumped.ok());
  return text;
}

std::string MakeStart(const zent::testing::TempFolder& folder) {
  PosixStorage storage;
  MakeSource(storage, (folder.path() / "Start.mdb").string(), kRows);
  return folder.Get("Start.mdb");
}

/// The contents after each number of changes.
std::vector<std::string> StatesOf(const zent::testing::TempFolder& folder,
                                  const std::string& start) {
  std::vector<std::string> states;
  for (std::size_t count = 0; count <= std::size(kChanges); ++count) {
    const std::string path = folder.Put("State.mdb", start).string();
    PosixStorage storage;
    const Status changed = ChangeStructure(storage, path, count);
    EXPECT_TRUE(changed.ok()) << changed.error().description;
    states.push_back(ContentsOf(path));
  }
  return states;
}

TEST(StructureKill, AtEveryCallLeavesTheFileAsBeforeOrAsAfter) {
  const zent::testing::TempFolder folder;
  const std::string start = MakeStart(folder);
  const std::vector<std::string> states = StatesOf(folder, start);
  std::size_t reached = 0;
  int kills = 0;
  for (int call = 1;; ++call) {
    SCOPED_TRACE(call);
    const std::string path = folder.Put("Korvo.mdb", start).string();
    const bool killed = IsWorkKilledAt(call, [&](Storage& storage) {
      return ChangeStructure(storage, path, std::size(kChanges));
    });
    const std::string contents = ContentsOf(path);
    ASSERT_FALSE(HasFailure());
    // A later kill never leaves an earlier state.
    const auto from = states.begin() + static_cast<std::ptrdiff_t>(reached);
    const auto found = std::find(from, states.end(), contents);
    ASSERT_NE(found, states.end());
    reached = static_cast<std::size_t>(found - states.begin());
    PosixStorage storage;
    ASSERT_FALSE(storage.Exists(Journal::PathFor(path)).value_or(true));
    if (!killed) break;
    ++kills;
  }
  EXPECT_EQ(reached, std::size(kChanges));
  EXPECT_GT(kills, 60);
}

TEST(CompactionKill, AtEveryCallLeavesTheSourceAndNoHalfFile) {
  const zent::testing::TempFolder folder;
  const std::string start = MakeStart(folder);
  const std::string source = folder.Put("Korvo.mdb", start).string();
  const std::string target = (folder.path() / "New.mdb").string();
  const Compaction compaction{.source = source, .target = target};
  PosixStorage whole;
  ASSERT_TRUE(CompactDatabase(whole, compaction).ok());
  const std::string contents = ContentsOf(target);
  int kills = 0;
  bool published = false;
  for (int call = 1;; ++call) {
    SCOPED_TRACE(call);
    PosixStorage storage;
    std::filesystem::remove(target);
    const bool killed = IsWorkKilledAt(
        call, [&](Storage& killing) { return CompactDatabase(killing, compaction); });
    ASSERT_TRUE(folder.Get("Korvo.mdb") == start);
    const bool there = storage.Exists(target).value_or(false);
    ASSERT_TRUE(there || !published);
    published = there;
    if (!there) {
      // What is left of it is in nobody's way.
      const Status again = CompactDatabase(storage, compaction);
      ASSERT_TRUE(again.ok()) << again.error().description;
    }
    ASSERT_EQ(ContentsOf(target), contents);
    if (!killed) break;
    ++kills;
  }
  EXPECT_GT(kills, 12);
}

}  // namespace
}  // namespace zent::jet::testing
