#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "jet/fakes/TestDatabase.h"
#include "jet/format/DefinitionPages.h"
#include "jet/format/JetErrors.h"
#include "jet/tools/ToolsFile.h"
#include "jet/tools/Verify.h"

namespace zent::jet::testing {
namespace {

using ::testing::HasSubstr;

const Layout& Places() { return LayoutOf(JetVersion::Jet4); }

TEST(Verify, FindsNoFaultInWhatTheEngineMade) {
  const Verified verified = VerifyBytes(SampleDatabase());
  EXPECT_EQ(verified.error, 0);
  EXPECT_EQ(verified.faults, "");
  EXPECT_EQ(verified.summary.faults, 0U);
  EXPECT_EQ(verified.summary.lost_pages, 0U);
  EXPECT_EQ(verified.summary.pages, SampleDatabase().size() / kPage);
  EXPECT_GT(verified.summary.rows, 700U);
  EXPECT_GT(verified.summary.index_entries, 1500U);
}

struct DamageCase {
  const char* what;
  std::function<void(DamagedFile&)> damage;
  const char* fault;
};

/// The place of slot `i` of a data page.
std::size_t SlotAt(std::size_t i) { return Places().data.directory + 2 * i; }

void ExpectFaults(const std::vector<DamageCase>& rows) {
  for (const DamageCase& row : rows) {
    SCOPED_TRACE(row.what);
    DamagedFile file;
    row.damage(file);
    const Verified verified = VerifyBytes(file.bytes());
    EXPECT_THAT(verified.faults, HasSubstr(row.fault));
    EXPECT_GT(verified.summary.faults, 0U);
  }
}

TEST(Verify, FindsFaultsOfPagesAndRows) {
  ExpectFaults({
      {"a data page of another table",
       [](DamagedFile& file) { file.PutU32(file.at().rows, Places().data.owner, 2); },
       "names another table"},
      {"free space that is not there",
       [](DamagedFile& file) { file.PutU16(file.at().rows, Places().data.free_space, 4000); },
       "table People"},
      {"a row that begins behind the page",
       [](DamagedFile& file) { file.PutU16(file.at().rows, SlotAt(1), 0x1FFF); }, "table People"},
      {"a row that was deleted without its entries",
       [](DamagedFile& file) {
         const auto slot = file.U16(file.at().rows, SlotAt(2));
         file.PutU16(file.at().rows, SlotAt(2), slot | 0xC000U);
       },
       "table People: it counts 400 rows and has 399"},
      {"a null mask that reaches beyond the row",
       [](DamagedFile& file) {
         const auto slot = file.U16(file.at().rows, SlotAt(1));
         file.PutU16(file.at().rows, slot & 0x1FFFU, 200);
       },
       "table People: page"},
      {"a count of rows that lies",
       [](DamagedFile& file) { file.PutU32(file.at().people, Places().definition.row_count, 7); },
       "it counts 7 rows and has 400"},
      {"a page of the table that its map has not",
       [](DamagedFile& file) {
         const auto slot = file.U16(file.at().map_page, SlotAt(file.at().map_row));
         for (std::size_t i = 5; i < 69; ++i) {
           file.PutU8(file.at().map_page, (slot & 0x1FFFU) + i, 0);
         }
       },
       "pages with room that are not among its pages"},
      {"a map that is a map of another kind",
       [](DamagedFile& file) {
         const auto slot = file.U16(file.at().map_page, SlotAt(file.at().map_row));
         file.PutU8(file.at().map_page, slot & 0x1FFFU, 9);
       },
       "a usage map of unknown kind"},
      {"a page that is free and used",
       [](DamagedFile& file) {
         const auto slot = file.U16(1, SlotAt(0));
         const std::size_t bit = (slot & 0x1FFFU) + 5 + file.at().people / 8;
         file.PutU8(1, bit, 0xFF);
       },
       "is marked free and used by"},
      {"a second table with the same pages",
       [](DamagedFile& file) {
         file.PutU32(file.at().orders, Places().definition.owned_map,
                     file.at().people_table.owned_map.packed());
       },
       "is also another's"},
  });
}

TEST(Verify, FindsFaultsOfLongValues) {
  ExpectFaults({
      {"a page that holds no long values",
       [](DamagedFile& file) { file.PutU32(file.at().values, Places().data.owner, 2); },
       "is no row of a long value"},
      {"a row of a value that was deleted",
       [](DamagedFile& file) {
         const auto slot = file.U16(file.at().values, SlotAt(0));
         file.PutU16(file.at().values, SlotAt(0), slot | 0xC000U);
       },
       "is no row of a long value"},
      {"a chain that goes in a loop",
       [](DamagedFile& file) {
         const PageNumber page = file.PageOfChain();
         file.PutU32(page, file.U16(page, SlotAt(0)) & 0x1FFFU, page << 8U);
       },
       "is part of two values or of a loop"},
  });
}

TEST(Verify, FindsFaultsOfIndexes) {
  const std::size_t entries = Places().index_page.entries;
  ExpectFaults({
      {"a key that is another",
       [=](DamagedFile& file) { file.PutU8(file.at().leaf, entries + 3, 0x11); }, "index ByName"},
      {"an entry of another row",
       [=](DamagedFile& file) {
         const auto end = static_cast<std::size_t>(file.U16(file.at().leaf, 2));
         file.PutU8(file.at().leaf, kPage - end - 1, 0xFE);
       },
       "index ByName"},
      {"a leaf of another table",
       [](DamagedFile& file) { file.PutU32(file.at().leaf, Places().index_page.owner, 3); },
       "an index page of another table"},
      {"a leaf that is a node", [](DamagedFile& file) { file.PutU8(file.at().leaf, 0, 3); },
       "index ByName"},
      {"a leaf of a level above 0",
       [](DamagedFile& file) { file.PutU8(file.at().leaf, Places().index_page.level, 1); },
       "a leaf of a level above 0"},
      {"leaves that are not linked",
       [](DamagedFile& file) { file.PutU32(file.at().leaf, Places().index_page.next, 0); },
       "its next page is 0"},
      {"leaves that are not linked back",
       [](DamagedFile& file) {
         file.PutU32(file.at().second_leaf, Places().index_page.previous, 0);
       },
       "its previous page is 0"},
      {"a node that is its own child",
       [](DamagedFile& file) {
         file.PutU32(file.at().root, Places().index_page.tail, file.at().root);
       },
       "is also used by"},
      {"a child beyond the end",
       [](DamagedFile& file) { file.PutU32(file.at().root, Places().index_page.tail, 0xFFFFFF); },
       "lies beyond the end of the file"},
      {"free space of a leaf that is not there",
       [](DamagedFile& file) { file.PutU16(file.at().leaf, Places().index_page.free_space, 1); },
       "bytes are free, not 1"},
  });
}

TEST(Verify, FindsFaultsOfTheCatalog) {
  ExpectFaults({
      {"a definition that is none", [](DamagedFile& file) { file.PutU8(file.at().orders, 0, 1); },
       "table Orders"},
      {"a definition of endless length",
       [](DamagedFile& file) {
         file.PutU32(file.at().orders, Places().definition.length, 0x7FFFFFFF);
       },
       "table Orders"},
      {"a catalog that cannot be read", [](DamagedFile& file) { file.PutU8(kObjectsPage, 0, 9); },
       "catalog"},
      {"rights that cannot be read", [](DamagedFile& file) { file.PutU8(kAcesPage, 0, 9); },
       "table MSysACEs"},
      {"relationships that cannot be read",
       [](DamagedFile& file) { file.PutU8(kRelationshipsPage, 0, 9); }, "table MSysRelationships"},
      {"a global map that is none", [](DamagedFile& file) { file.PutU8(kGlobalMapPage, 0, 9); },
       "global map"},
  });
}

TEST(Verify, CountsPagesThatNothingUses) {
  DamagedFile file;
  file.bytes().append(kPage, '\0');
  const auto row = file.U16(1, SlotAt(0)) & 0x1FFFU;
  const PageNumber page = file.at().last + 1;
  file.PutU8(1, row + 5 + page / 8, 0);
  const Verified verified = VerifyBytes(file.bytes());
  EXPECT_EQ(verified.faults, "");
  EXPECT_EQ(verified.summary.lost_pages, 1U);
}

TEST(Verify, TellsOfARuinedPartAFewTimesAlone) {
  DamagedFile file;
  for (std::size_t i = 0; i < 64; ++i) {
    const std::size_t at = Places().index_page.entries + i;
    file.PutU8(file.at().leaf, at, 0);
  }
  const Verified verified = VerifyBytes(file.bytes());
  EXPECT_LE(std::count(verified.faults.begin(), verified.faults.end(), '\n'), 100);
}

TEST(Verify, SaysWhyAFileCannotBeReadAtAll) {
  EXPECT_EQ(VerifyBytes("").error, kUnrecognizedFormat);
  EXPECT_EQ(VerifyBytes(std::string(5000, 'x')).error, kUnrecognizedFormat);
}

}  // namespace
}  // namespace zent::jet::testing
