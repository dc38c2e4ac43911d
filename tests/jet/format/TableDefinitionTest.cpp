#include <gtest/gtest.h>

#include "HexBytes.h"
#include "jet/format/DefinitionPages.h"
#include "jet/format/JetErrors.h"
#include "jet/format/TableDefinition.h"

namespace zent::jet {
namespace {

// The definition of a real table: two columns, two trees, three indexes, one of them the referenced
// side of a relationship.
constexpr std::string_view kRealTable =
    "02 01 7d 0e 00 00 00 00 7b 01 00 00 59 06 00 00 03 00 00 00 00 00 00 00 01"
    "00 00 00 00 00 00 00 00 00 00 00 ff ff ff ff 4e 02 00 01 00 02 00 03 00 00 00 02 00 00 00"
    "00 1e 00 00 01 1e 00 00 00 00 00 00 03 00 00 00 00 00 00 00 00 00 00 00 03 00 00 00 00 00 00 "
    "00"
    "04 59 06 00 00 00 00 00 00 00 00 09 04 00 00 03 00 00 00 00 00 00 00 04 00"
    "0a 59 06 00 00 01 00 00 00 01 00 09 04 00 00 02 01 00 00 00 00 00 00 64 00"
    "04 00 69 00 64 00 08 00 64 00 61 00 74 00 61 00"
    "83 07 00 00 00 00 01 ff ff 00 ff ff 00 ff ff 00 ff ff 00 ff ff 00 ff ff 00 ff ff 00 ff ff 00"
    "ff ff 00 02 1e 00 00 1f 00 00 00 00 00 00 00 80 00 00 00 00 00"
    "83 07 00 00 00 00 01 ff ff 00 ff ff 00 ff ff 00 ff ff 00 ff ff 00 ff ff 00 ff ff 00 ff ff 00"
    "ff ff 00 03 1e 00 00 20 00 00 00 00 00 00 00 89 00 00 00 00 00"
    "59 06 00 00 02 00 00 00 01 00 00 00 01 02 00 00 00 18 00 00 00 00 01 02 00 00 00 00"
    "59 06 00 00 00 00 00 00 00 00 00 00 00 ff ff ff ff 00 00 00 00 04 04 00 00 00 00 00"
    "59 06 00 00 01 00 00 00 01 00 00 00 00 ff ff ff ff 00 00 00 00 04 04 01 00 00 00 00"
    "06 00 2e 00 72 00 43 00 04 00 69 00 64 00"
    "14 00 50 00 72 00 69 00 6d 00 61 00 72 00 79 00 4b 00 65 00 79 00 ff ff";

std::vector<std::uint8_t> RealStream() { return HexVector(kRealTable); }

Result<TableDefinition> Parse(ByteView stream) {
  return ParseTableDefinition(JetVersion::Jet4, stream, 27);
}

TEST(TableDefinition, IsReadFromARealFile) {
  const Result<TableDefinition> read = Parse(RealStream());
  ASSERT_TRUE(read.ok());
  const TableDefinition& table = read.value();
  EXPECT_EQ(table.row_count, 3U);
  EXPECT_EQ(table.kind, 'N');
  EXPECT_EQ(table.max_columns, 2);
  EXPECT_EQ(table.variable_slots, 1);
  EXPECT_EQ(table.owned_map, (RowPointer{.page = 30, .row = 0}));
  EXPECT_EQ(table.free_map, (RowPointer{.page = 30, .row = 1}));
  EXPECT_TRUE(table.long_value_maps.empty());
  EXPECT_EQ(table.FixedAreaSize(), 4U);
}

TEST(TableDefinition, HasColumns) {
  const TableDefinition table = Parse(RealStream()).value();
  ASSERT_EQ(table.columns.size(), 2U);
  const ColumnDefinition& id = table.columns[0];
  EXPECT_EQ(id.name, "id");
  EXPECT_EQ(id.type, ColumnType::Long);
  EXPECT_TRUE(id.IsFixed());
  EXPECT_FALSE(id.IsAutoNumber());
  const ColumnDefinition& data = table.columns[1];
  EXPECT_EQ(data.name, "data");
  EXPECT_EQ(data.type, ColumnType::Text);
  EXPECT_FALSE(data.IsFixed());
  EXPECT_TRUE(data.IsCompressed());
  EXPECT_EQ(data.length, 100);
  EXPECT_EQ(data.ordinal, 1);
  EXPECT_EQ(data.collation(), kGeneralLegacy);
  EXPECT_EQ(table.ColumnOf(1), &table.columns[1]);
  EXPECT_EQ(table.ColumnOf(2), nullptr);
}

TEST(TableDefinition, HasTreesAndNamedIndexes) {
  const TableDefinition table = Parse(RealStream()).value();
  ASSERT_EQ(table.real_indexes.size(), 2U);
  const RealIndex& key = table.real_indexes[1];
  EXPECT_EQ(key.columns, std::vector<IndexColumn>{{.column = 0}});
  EXPECT_EQ(key.root, 32U);
  EXPECT_EQ(key.map, (RowPointer{.page = 30, .row = 3}));
  EXPECT_TRUE(key.IsUnique());
  EXPECT_TRUE(key.IsRequired());
  EXPECT_FALSE(key.IgnoresNulls());
  EXPECT_EQ(key.distinct_keys, 3U);
  ASSERT_EQ(table.logical_indexes.size(), 3U);
  const LogicalIndex& foreign = table.logical_indexes[0];
  EXPECT_EQ(foreign.name, ".rC");
  EXPECT_EQ(foreign.kind, IndexKind::Foreign);
  EXPECT_EQ(foreign.side, ForeignSide::Referenced);
  EXPECT_EQ(foreign.partner, 2);
  EXPECT_EQ(foreign.other_table, 24U);
  EXPECT_EQ(foreign.cascade_deletes, 1);
  EXPECT_EQ(table.logical_indexes[2].name, "PrimaryKey");
  EXPECT_EQ(table.logical_indexes[2].kind, IndexKind::Primary);
  EXPECT_EQ(table.logical_indexes[2].real, 1U);
  EXPECT_EQ(table.logical_indexes[1].partner, -1);
}

TEST(TableDefinition, IsWrittenAsItWasRead) {
  const std::vector<std::uint8_t> stream = SerialiseTableDefinition(Parse(RealStream()).value());
  std::vector<std::uint8_t> page(4096, 0xCC);
  ASSERT_EQ(DefinitionPageCount(JetVersion::Jet4, stream.size()), 1U);
  WriteDefinitionPage(JetVersion::Jet4, stream, 0, 0, page);
  EXPECT_EQ(ToHex(AsText(ByteView(page).first(stream.size()))), ToHex(Hex(kRealTable)));
  EXPECT_EQ(page[stream.size()], 0);
}

/// A table with something in every field.
TableDefinition FullTable(JetVersion version, std::size_t columns) {
  TableDefinition table = {.version = version,
                           .row_count = 77,
                           .last_auto_number = -5,
                           .kind = 'S',
                           .max_columns = static_cast<std::uint16_t>(columns + 1),
                           .variable_slots = static_cast<std::uint16_t>(columns + 2),
                           .owned_map = {.page = 6, .row = 1},
                           .free_map = {.page = 7, .row = 2}};
  for (std::size_t i = 0; i < columns; ++i) {
    ColumnDefinition column = {.name = "Column " + std::to_string(i),
                               .type = ColumnType::Memo,
                               .number = static_cast<std::uint16_t>(i),
                               .slot = static_cast<std::uint16_t>(columns - i),
                               .ordinal = static_cast<std::uint16_t>(i * 2),
                               .flags = kNullableColumn | kHyperlinkColumn,
                               .fixed_offset = 9,
                               .length = 0};
    if (version == JetVersion::Jet3) column.unknown = 1;
    table.columns.push_back(column);
    table.long_value_maps.push_back({.column = column.number,
                                     .owned = {.page = 8, .row = static_cast<std::uint8_t>(i)},
                                     .free = {.page = 9, .row = static_cast<std::uint8_t>(i)}});
  }
  table.real_indexes.push_back({.columns = {{.column = 1, .ascending = false}, {.column = 0}},
                                .map = {.page = 11, .row = 3},
                                .root = 12,
                                .flags = kUniqueIndex | kIgnoreNullsIndex,
                                .rows_at_compaction = 4,
                                .distinct_keys = 5});
  table.logical_indexes.push_back({.name = "N\xC3\xA4me",
                                   .number = 3,
                                   .real = 0,
                                   .kind = IndexKind::Foreign,
                                   .side = ForeignSide::Referring,
                                   .partner = 7,
                                   .other_table = 99,
                                   .cascade_updates = 1,
                                   .cascade_deletes = 2});
  return table;
}

TEST(TableDefinition, KeepsEveryFieldInBothVersions) {
  for (const JetVersion version : {JetVersion::Jet3, JetVersion::Jet4}) {
    const TableDefinition table = FullTable(version, 3);
    const Result<TableDefinition> read =
        ParseTableDefinition(version, SerialiseTableDefinition(table), 27);
    ASSERT_TRUE(read.ok());
    EXPECT_EQ(read.value(), table);
    EXPECT_TRUE(read.value().columns[0].IsHyperlink());
  }
}

TEST(TableDefinition, NamesTheNumbersThatRowsChange) {
  for (const JetVersion version : {JetVersion::Jet3, JetVersion::Jet4}) {
    std::vector<std::uint8_t> stream = SerialiseTableDefinition(FullTable(version, 3));
    EXPECT_EQ(LoadU32(stream, RowCountOffset(version)), 77U);
    EXPECT_EQ(LoadU32(stream, DistinctKeysOffset(version, 0)), 5U);
    StoreU32(stream, AutoNumberOffset(version), 1234);
    EXPECT_EQ(ParseTableDefinition(version, stream, 1).value().last_auto_number, 1234);
  }
}

// Cut anywhere, a definition is refused and never read beyond its end.
TEST(TableDefinition, RefusesEveryCut) {
  for (const JetVersion version : {JetVersion::Jet3, JetVersion::Jet4}) {
    const std::vector<std::uint8_t> stream = SerialiseTableDefinition(FullTable(version, 3));
    for (std::size_t size = 0; size < stream.size(); ++size) {
      const std::vector<std::uint8_t> cut(stream.begin(),
                                          stream.begin() + static_cast<std::ptrdiff_t>(size));
      EXPECT_EQ(ParseTableDefinition(version, cut, 1).number(), kCannotOpenDatabase) << size;
    }
  }
}

struct DamageCase {
  const char* what;
  std::size_t at;
  std::uint8_t byte;
};

constexpr DamageCase kDamage[] = {
    {"more columns than there may be", 46, 0x10},
    {"a column too many", 45, 3},
    {"more trees than it holds", 51, 200},
    {"more indexes than it holds", 48, 0xFF},
    {"indexes without end", 50, 0xFF},
    {"a number beyond the last", 0x57 + 5, 2},
    {"two columns of one number", 0x70 + 5, 0},
    {"a slot beyond the last", 0x70 + 7, 1},
    {"a text that becomes fixed, in the place of the number", 0x70 + 15, 3},
    {"a name of odd length", 0x89, 3},
    {"an index on no column", 0x9D, 7},
    {"an index without a tree", 0x101 + 8, 2},
    {"long values instead of the end", 0x179, 0},
};

TEST(TableDefinition, RefusesDamage) {
  for (const DamageCase& row : kDamage) {
    SCOPED_TRACE(row.what);
    std::vector<std::uint8_t> stream = RealStream();
    stream[row.at] = row.byte;
    const Result<TableDefinition> read = Parse(stream);
    ASSERT_EQ(read.number(), kCannotOpenDatabase);
    EXPECT_NE(read.error().description.find("page 27"), std::string::npos);
  }
}

// Their counters would lie across the end of a page, or on one behind it.
TEST(TableDefinition, RefusesMoreTreesThanHaveRoomForTheirCounters) {
  struct Case {
    std::uint8_t trees;
    bool refused_for_their_number;
  };
  for (const Case& row : {Case{129, true}, Case{128, false}}) {
    SCOPED_TRACE(int{row.trees});
    std::vector<std::uint8_t> stream = RealStream();
    stream[51] = row.trees;
    const Result<TableDefinition> read = Parse(stream);
    ASSERT_FALSE(read.ok());  // it holds fewer
    const bool told = read.error().description.find("too many indexes") != std::string::npos;
    EXPECT_EQ(told, row.refused_for_their_number) << read.error().description;
  }
}

/// The pages of a definition that needs several.
std::vector<std::vector<std::uint8_t>> PagesOf(JetVersion version, ByteView stream) {
  std::vector<std::vector<std::uint8_t>> pages(
      DefinitionPageCount(version, stream.size()),
      std::vector<std::uint8_t>(LayoutOf(version).page_size, 0xCC));
  for (std::size_t i = 0; i < pages.size(); ++i) {
    const PageNumber next = i + 1 < pages.size() ? static_cast<PageNumber>(100 + i + 1) : 0;
    WriteDefinitionPage(version, stream, i, next, pages[i]);
  }
  return pages;
}

TEST(DefinitionPages, AreJoinedAsTheyWereSplit) {
  for (const JetVersion version : {JetVersion::Jet3, JetVersion::Jet4}) {
    for (const std::size_t columns : {2U, 40U, 100U, 250U}) {
      const TableDefinition table = FullTable(version, columns);
      const std::vector<std::uint8_t> stream = SerialiseTableDefinition(table);
      const auto pages = PagesOf(version, stream);
      DefinitionJoiner joiner(version);
      PageNumber number = 100;
      for (; !joiner.complete(); number = joiner.next()) {
        ASSERT_TRUE(joiner.Add(number, pages.at(number - 100)).ok());
      }
      EXPECT_EQ(joiner.next(), 0U);
      ASSERT_EQ(ParseTableDefinition(version, joiner.stream(), 100).value(), table);
      const DefinitionPlace last = DefinitionPlaceOf(version, stream.size() - 1);
      EXPECT_EQ(last.page, pages.size() - 1);
      EXPECT_EQ(pages.back()[last.offset], stream.back());
    }
  }
}

TEST(DefinitionPages, CountTheFreeBytesOfTheLast) {
  const std::vector<std::uint8_t> stream =
      SerialiseTableDefinition(FullTable(JetVersion::Jet4, 100));
  const auto pages = PagesOf(JetVersion::Jet4, stream);
  ASSERT_EQ(pages.size(), 2U);
  EXPECT_EQ(LoadU16(pages[0], 2), 0);
  EXPECT_EQ(LoadU16(pages[1], 2), 4096 - 8 - (stream.size() - 4096) - 8);
  const auto jet3 =
      PagesOf(JetVersion::Jet3, SerialiseTableDefinition(FullTable(JetVersion::Jet3, 2)));
  EXPECT_EQ(ToHex(AsText(ByteView(jet3[0]).first(4))), "02 01 56 43");
}

TEST(DefinitionJoiner, RefusesAChainThatIsNone) {
  const std::vector<std::uint8_t> stream =
      SerialiseTableDefinition(FullTable(JetVersion::Jet4, 100));
  auto pages = PagesOf(JetVersion::Jet4, stream);
  struct Row {
    const char* what;
    std::size_t at;
    std::uint32_t value;
  };
  const Row rows[] = {{"another type", 0, 0x0101},
                      {"the end before the end", 4, 0},
                      {"no length", 8, 0},
                      {"a length that no definition has", 8, 0x7FFFFFFF}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    std::vector<std::uint8_t> page = pages[0];
    StoreU32(page, row.at, row.value);
    DefinitionJoiner joiner(JetVersion::Jet4);
    EXPECT_EQ(joiner.Add(5, page).number(), kCannotOpenDatabase);
    EXPECT_FALSE(joiner.complete());
  }
  DefinitionJoiner joiner(JetVersion::Jet4);
  EXPECT_EQ(joiner.Add(5, ByteView(pages[0]).first(4095)).number(), kCannotOpenDatabase);
}

TEST(DefinitionJoiner, EndsForAChainThatRunsInACircle) {
  const std::vector<std::uint8_t> stream =
      SerialiseTableDefinition(FullTable(JetVersion::Jet4, 250));
  std::vector<std::uint8_t> page = PagesOf(JetVersion::Jet4, stream)[0];
  StoreU32(page, 4, 100);
  DefinitionJoiner joiner(JetVersion::Jet4);
  int steps = 0;
  while (!joiner.complete() && joiner.Add(100, page).ok()) ++steps;
  EXPECT_LE(steps, 33);
}

}  // namespace
}  // namespace zent::jet
