#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "jet/format/JetErrors.h"
#include "jet/samples/SamplePaths.h"
#include "jet/transfer/Compaction.h"
#include "jet/transfer/DatabaseChecks.h"

/// Real files, compacted: everything in them is in the new file.
namespace zent::jet::testing {
namespace {

std::string Read(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(CompactDatabase, KeepsEverythingThatRealFilesHold) {
  std::size_t compacted = 0;
  for (const std::filesystem::path& path : SamplePaths()) {
    SCOPED_TRACE(path.string());
    const std::string bytes = Read(path);
    MemoryStorage storage;
    storage.Put("old.mdb", bytes);
    const Status done = CompactDatabase(storage, {.source = "old.mdb", .target = "new.mdb"});
    EXPECT_EQ(storage.Bytes("old.mdb"), bytes);
    if (bytes[0x14] == 0) {
      EXPECT_EQ(done.number(), kReadOnly) << "a file of Access 97";
      EXPECT_EQ(storage.Names(), std::vector<std::string>{"old.mdb"});
      continue;
    }
    ASSERT_TRUE(done.ok()) << done.error().description;
    EXPECT_EQ(storage.Names(), (std::vector<std::string>{"new.mdb", "old.mdb"}));
    EXPECT_LE(storage.Bytes("new.mdb").size(), bytes.size() + 16 * std::size_t{4096});
    const OpenedDatabase old = OpenCatalog(storage, "old.mdb");
    const OpenedDatabase made = OpenCatalog(storage, "new.mdb");
    ASSERT_TRUE(old.catalog && made.catalog);
    ExpectSameContents(*old.catalog, *made.catalog);
    ++compacted;
  }
  EXPECT_GE(compacted, 15U);
}

}  // namespace
}  // namespace zent::jet::testing
