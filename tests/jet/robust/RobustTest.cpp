#include <gtest/gtest.h>

#include <functional>

#include "jet/fakes/TestDatabase.h"
#include "jet/robust/Damage.h"
#include "jet/tools/ToolsFile.h"

/// Damaged files that the tests made themselves.
namespace zent::jet::testing {
namespace {

const Layout& Places() { return LayoutOf(JetVersion::Jet4); }

TEST(Robust, ReadsCutFilesToTheirEnd) { TryCutFiles(SampleDatabase(), kPage, 1); }

TEST(Robust, ReadsFilesWithOneChangedByte1) { TryChangedBytes(SampleDatabase(), 1, 500, 1); }
TEST(Robust, ReadsFilesWithOneChangedByte2) { TryChangedBytes(SampleDatabase(), 2, 500, 1); }
TEST(Robust, ReadsFilesWithOneChangedByte3) { TryChangedBytes(SampleDatabase(), 3, 500, 1); }
TEST(Robust, ReadsFilesWithOneChangedByte4) { TryChangedBytes(SampleDatabase(), 4, 500, 1); }
TEST(Robust, ReadsFilesWithManyChangedBytes) { TryChangedBytes(SampleDatabase(), 5, 200, 50); }

TEST(Robust, ReadsFilesWhoseCountsLie) {
  TryHeadsOfPages(SampleDatabase(), kPage, 4, 0xFF);
  for (const unsigned value : {0x00U, 0x7FU, 0xFFU}) {
    for (const std::size_t at :
         {Places().definition.length, Places().definition.row_count,
          Places().definition.max_columns, Places().definition.variable_slots,
          Places().definition.column_count, Places().definition.logical_count,
          Places().definition.real_count, Places().definition.owned_map,
          Places().definition.free_map}) {
      for (std::size_t byte = 0; byte < 4; ++byte) {
        SCOPED_TRACE(at + byte);
        DamagedFile file;
        file.PutU8(file.at().people, at + byte, value);
        TryFile(file.bytes());
      }
    }
  }
}

struct LoopCase {
  const char* what;
  std::function<void(DamagedFile&)> damage;
};

TEST(Robust, ReadsFilesWhosePagesGoInLoops) {
  const LoopCase rows[] = {
      {"a definition that goes on with itself",
       [](DamagedFile& file) {
         file.PutU32(file.at().people, Places().definition.length, 60000);
         file.PutU32(file.at().people, 4, file.at().people);
       }},
      {"a leaf behind itself",
       [](DamagedFile& file) {
         file.PutU32(file.at().leaf, Places().index_page.next, file.at().leaf);
       }},
      {"leaves in a ring",
       [](DamagedFile& file) {
         file.PutU32(file.at().second_leaf, Places().index_page.next, file.at().leaf);
       }},
      {"a root below itself",
       [](DamagedFile& file) {
         file.PutU32(file.at().root, Places().index_page.tail, file.at().root);
       }},
      {"a long value that leads to itself",
       [](DamagedFile& file) {
         const PageNumber page = file.PageOfChain();
         file.PutU32(page, file.U16(page, Places().data.directory) & 0x1FFFU, page << 8U);
       }},
      {"a map of pages of bits that is its own page of bits",
       [](DamagedFile& file) {
         const auto slot = file.U16(file.at().map_page,
                                    Places().data.directory + std::size_t{2} * file.at().map_row) &
                           0x1FFFU;
         file.PutU8(file.at().map_page, slot, 1);
         for (std::size_t i = 0; i < 16; ++i) {
           file.PutU32(file.at().map_page, slot + 1 + 4 * i, file.at().map_page);
         }
       }},
  };
  for (const LoopCase& row : rows) {
    SCOPED_TRACE(row.what);
    DamagedFile file;
    row.damage(file);
    TryFile(file.bytes());
    EXPECT_GT(VerifyBytes(file.bytes()).summary.faults, 0U);
  }
}

}  // namespace
}  // namespace zent::jet::testing
