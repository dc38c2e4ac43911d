#include <gtest/gtest.h>

#include <algorithm>

#include "HexBytes.h"
#include "jet/format/JetErrors.h"
#include "jet/format/RowCodec.h"
#include "jet/format/ValueCodec.h"

namespace zent::jet {
namespace {

using FieldState = RowView::FieldState;

ColumnDefinition Fixed(std::uint16_t number, ColumnType type, std::uint16_t offset) {
  return {.name = "F",
          .type = type,
          .number = number,
          .flags = kFixedColumn | kNullableColumn,
          .fixed_offset = offset,
          .length = static_cast<std::uint16_t>(type == ColumnType::Bool ? 1 : FixedSizeOf(type))};
}

ColumnDefinition Variable(std::uint16_t number, ColumnType type, std::uint16_t slot) {
  return {.name = "V", .type = type, .number = number, .slot = slot, .length = 200};
}

TableDefinition TableOf(std::vector<ColumnDefinition> columns,
                        JetVersion version = JetVersion::Jet4) {
  TableDefinition table = {.version = version, .columns = std::move(columns)};
  for (const ColumnDefinition& column : table.columns) {
    table.max_columns = std::max<std::uint16_t>(table.max_columns, column.number + 1U);
    if (!column.IsFixed()) ++table.variable_slots;
  }
  return table;
}

/// The table of the wide row below.
TableDefinition WideTable() {
  TableDefinition table = TableOf(
      {Variable(0, ColumnType::Text, 0), Variable(1, ColumnType::Text, 1),
       Fixed(2, ColumnType::Byte, 0), Fixed(3, ColumnType::Int, 1), Fixed(4, ColumnType::Long, 3),
       Fixed(5, ColumnType::Double, 7), Fixed(6, ColumnType::Date, 15),
       Fixed(7, ColumnType::Currency, 23), Fixed(8, ColumnType::Bool, 0)});
  table.columns[0].extended_flags = kCompressedColumn;
  return table;
}

// A row of a real table, every kind of field in it.
constexpr std::string_view kWideRow =
    "09 00 02 DE 00 55 43 DE 13 7B 14 AE 47 E1 C8 7B 40 00 00 00 00 40 A7 DA 40 B8 88 00 00 00 00 "
    "00"
    "00 FF FE 61 62 63 64 65 66 67 68 00 69 00 6A 00 6B 00 6C 00 6D 00 6E 00 6F 00 70 00 3C 00 2A "
    "00"
    "21 00 02 00 FF 01";

const Value kWideValues[] = {Text("abcdefg"),   Text("hijklmnop"),       std::uint8_t{2},
                             std::int16_t{222}, std::int32_t{333333333}, 444.555,
                             Date{27293.0},     Currency{35000}};

TEST(RowView, ReadsEveryKindOfField) {
  const TableDefinition table = WideTable();
  const std::vector<std::uint8_t> bytes = HexVector(kWideRow);
  const Result<RowView> row = RowView::Open(table, bytes, 1);
  ASSERT_TRUE(row.ok());
  EXPECT_EQ(row.value().column_count(), 9U);
  for (std::size_t i = 0; i < std::size(kWideValues); ++i) {
    SCOPED_TRACE(i);
    ByteView field;
    ASSERT_EQ(row.value().Field(table.columns[i], field), FieldState::Present);
    EXPECT_EQ(DecodeField(JetVersion::Jet4, table.columns[i], field, 1).value(), kWideValues[i]);
  }
  EXPECT_TRUE(row.value().Has(table.columns[8]));
}

TEST(RowBuilder, WritesARowAsTheApplicationDoes) {
  const TableDefinition table = WideTable();
  RowBuilder builder(table);
  for (int twice = 0; twice < 2; ++twice) {
    builder.Clear();
    std::string bytes;
    for (std::size_t i = 0; i < std::size(kWideValues); ++i) {
      ASSERT_TRUE(EncodeField(table.columns[i], kWideValues[i], bytes).ok());
      builder.Set(table.columns[i], AsBytes(bytes));
    }
    builder.SetBool(table.columns[8], true);
    const Result<ByteView> row = builder.Build();
    ASSERT_TRUE(row.ok());
    EXPECT_EQ(ToHex(AsText(row.value())), ToHex(Hex(kWideRow)));
  }
}

struct BuildCase {
  const char* what;
  std::vector<ColumnDefinition> columns;
  std::vector<const char*> fields;  ///< null: not set
  const char* row;
};

const BuildCase kBuilt[] = {
    {"no columns", {}, {}, "00 00"},
    {"fixed fields alone have no offsets",
     {Fixed(0, ColumnType::Int, 0)},
     {"34 12"},
     "01 00 34 12 01"},
    {"a null keeps its place", {Fixed(0, ColumnType::Int, 0)}, {nullptr}, "01 00 00 00 00"},
    {"a variable field",
     {Variable(0, ColumnType::Text, 0)},
     {"61 00"},
     "01 00 61 00 04 00 02 00 01 00 01"},
    {"an empty one is present",
     {Variable(0, ColumnType::Text, 0)},
     {""},
     "01 00 02 00 02 00 01 00 01"},
    {"a null one is not",
     {Variable(0, ColumnType::Text, 0)},
     {nullptr},
     "01 00 02 00 02 00 01 00 00"},
    {"numbers of dropped columns stay free",
     {Fixed(9, ColumnType::Byte, 4)},
     {"AA"},
     "0A 00 00 00 00 00 AA 00 02"},
    {"slots go by number, not by place",
     {Variable(1, ColumnType::Text, 1), Variable(0, ColumnType::Text, 0)},
     {"62", "61"},
     "02 00 61 62 04 00 03 00 02 00 02 00 03"},
};

TEST(RowBuilder, LaysOutFieldsOffsetsAndMask) {
  for (const BuildCase& test : kBuilt) {
    SCOPED_TRACE(test.what);
    const TableDefinition table = TableOf(test.columns);
    RowBuilder builder(table);
    builder.Clear();
    for (std::size_t i = 0; i < test.fields.size(); ++i) {
      if (test.fields[i] != nullptr) builder.Set(table.columns[i], HexVector(test.fields[i]));
    }
    const Result<ByteView> built = builder.Build();
    ASSERT_TRUE(built.ok());
    EXPECT_EQ(ToHex(AsText(built.value())), test.row);

    const Result<RowView> row = RowView::Open(table, built.value(), 1);
    ASSERT_TRUE(row.ok());
    for (std::size_t i = 0; i < test.fields.size(); ++i) {
      ByteView field;
      const FieldState state = row.value().Field(table.columns[i], field);
      EXPECT_EQ(state, test.fields[i] == nullptr ? FieldState::Null : FieldState::Present);
      EXPECT_EQ(ToHex(AsText(field)), test.fields[i] == nullptr ? "" : test.fields[i]);
    }
  }
}

TEST(RowBuilder, RefusesARowThatNoPageHolds) {
  const TableDefinition table = TableOf({Variable(0, ColumnType::Text, 0)});
  RowBuilder builder(table);
  builder.Clear();
  constexpr std::size_t kOverhead = 2 + 6 + 1;
  builder.Set(table.columns[0], std::vector<std::uint8_t>(4060 - kOverhead));
  EXPECT_TRUE(builder.Build().ok());
  builder.Set(table.columns[0], std::vector<std::uint8_t>(4060 - kOverhead + 1));
  EXPECT_EQ(builder.Build().number(), kRecordTooLarge);
}

struct OldRowCase {
  const char* what;
  ColumnDefinition column;
  FieldState state;
};

// A row with one int and one text, read by a table that has more since.
const OldRowCase kOldRows[] = {
    {"a fixed column of later", Fixed(2, ColumnType::Long, 2), FieldState::Null},
    {"a variable column of later", Variable(3, ColumnType::Text, 1), FieldState::Null},
    {"a bool column of later", Fixed(4, ColumnType::Bool, 0), FieldState::Null},
    {"a column far beyond", Fixed(200, ColumnType::Long, 0), FieldState::Null},
    {"its own", Variable(1, ColumnType::Text, 0), FieldState::Present},
    {"a slot that it lacks", Variable(1, ColumnType::Text, 5), FieldState::Null},
    {"a fixed field behind its area", Fixed(0, ColumnType::Double, 3), FieldState::Damaged},
};

TEST(RowView, ColumnsOfLaterAreNull) {
  const std::vector<std::uint8_t> bytes = HexVector("02 00 07 00 61 00 06 00 04 00 01 00 03");
  const TableDefinition table =
      TableOf({Fixed(0, ColumnType::Int, 0), Variable(1, ColumnType::Text, 0)});
  const Result<RowView> row = RowView::Open(table, bytes, 1);
  ASSERT_TRUE(row.ok());
  for (const OldRowCase& test : kOldRows) {
    SCOPED_TRACE(test.what);
    ByteView field;
    EXPECT_EQ(row.value().Field(test.column, field), test.state);
  }
}

TEST(RowView, ARowOlderThanTheFirstVariableColumnIsRead) {
  const std::vector<std::uint8_t> bytes = HexVector("01 00 34 12 01");
  const TableDefinition table =
      TableOf({Fixed(0, ColumnType::Int, 0), Variable(1, ColumnType::Text, 0)});
  const Result<RowView> row = RowView::Open(table, bytes, 1);
  ASSERT_TRUE(row.ok());
  ByteView field;
  EXPECT_EQ(row.value().Field(table.columns[0], field), FieldState::Present);
  EXPECT_EQ(row.value().Field(table.columns[1], field), FieldState::Null);
}

struct DamageCase {
  const char* what;
  const char* row;
  bool opens;
};

constexpr DamageCase kDamage[] = {
    {"no bytes", "", false},
    {"half a count", "01", false},
    {"a mask that is cut", "FF 00 01", false},
    {"more offsets than bytes", "01 00 61 00 04 00 02 00 99 00 01", true},
    {"a field that ends behind its row", "01 00 61 00 60 00 02 00 01 00 01", true},
    {"a field that ends before it begins", "01 00 61 00 02 00 04 00 01 00 01", true},
    {"a field that ends within the offsets", "01 00 61 00 06 00 02 00 01 00 01", true},
    {"no offsets", "01 00 61 01", true},
};

TEST(RowView, ReportsDamage) {
  const TableDefinition table = TableOf({Variable(0, ColumnType::Text, 0)});
  for (const DamageCase& test : kDamage) {
    SCOPED_TRACE(test.what);
    const std::vector<std::uint8_t> bytes = HexVector(test.row);
    const Result<RowView> row = RowView::Open(table, bytes, 1);
    ASSERT_EQ(row.ok(), test.opens);
    ByteView field;
    if (!test.opens) continue;
    EXPECT_EQ(row.value().Field(table.columns[0], field), FieldState::Damaged);
  }
}

struct WholeCase {
  const char* what;
  const char* row;
  bool whole;
};

constexpr WholeCase kWholeRows[] = {
    {"as it is built", "02 00 07 00 61 00 06 00 04 00 01 00 03", true},
    {"an empty field", "02 00 07 00 04 00 04 00 01 00 01", true},
    {"bytes between the fixed area and the first field",
     "02 00 07 00 AA AA 61 00 08 00 06 00 01 00 03", true},
    {"older than the text", "01 00 07 00 01", false},
    {"a column more", "03 00 07 00 61 00 06 00 04 00 01 00 03", false},
    {"a variable field more", "02 00 07 00 61 00 06 00 06 00 04 00 02 00 03", false},
    {"no variable field", "02 00 07 00 04 00 00 00 01", false},
    {"a field that begins in the fixed area", "02 00 07 00 61 00 06 00 03 00 01 00 03", false},
    {"a field that ends before it begins", "02 00 07 00 61 00 04 00 06 00 01 00 03", false},
    {"a field that ends behind its row", "02 00 07 00 61 00 60 00 04 00 01 00 03", false},
    {"no offsets", "02 00 07 03", false},
};

TEST(RowView, IsWholeWhenItsFieldsFollowEachOther) {
  const TableDefinition table =
      TableOf({Fixed(0, ColumnType::Int, 0), Variable(1, ColumnType::Text, 0)});
  for (const WholeCase& test : kWholeRows) {
    SCOPED_TRACE(test.what);
    const std::vector<std::uint8_t> bytes = HexVector(test.row);
    RowView row;
    const bool whole = row.Reset(JetVersion::Jet4, true, bytes) && row.IsWhole(table);
    EXPECT_EQ(whole, test.whole);
  }
}

TEST(RowView, IsWholeWithFixedFieldsAlone) {
  const TableDefinition table = TableOf({Fixed(0, ColumnType::Int, 0)});
  RowView row;
  const std::vector<std::uint8_t> whole = HexVector("01 00 07 00 01");
  EXPECT_TRUE(row.Reset(JetVersion::Jet4, false, whole) && row.IsWhole(table));
  const std::vector<std::uint8_t> cut = HexVector("01 00 07 01");
  EXPECT_FALSE(row.Reset(JetVersion::Jet4, false, cut) && row.IsWhole(table));
}

TEST(RowView, ReadsTheRowsOfAccess97) {
  const TableDefinition table =
      TableOf({Fixed(0, ColumnType::Long, 0), Variable(1, ColumnType::Text, 0),
               Variable(2, ColumnType::Text, 1)},
              JetVersion::Jet3);
  const std::string text =
      Hex("03 01 00 00 00") + "Speedy Express(503) 555-9831" + Hex("21 13 05 02 07");
  const Result<RowView> row = RowView::Open(table, AsBytes(text), 1);
  ASSERT_TRUE(row.ok());
  ByteView field;
  ASSERT_EQ(row.value().Field(table.columns[0], field), FieldState::Present);
  EXPECT_EQ(LoadU32(field, 0), 1U);
  ASSERT_EQ(row.value().Field(table.columns[1], field), FieldState::Present);
  EXPECT_EQ(AsText(field), "Speedy Express");
  ASSERT_EQ(row.value().Field(table.columns[2], field), FieldState::Present);
  EXPECT_EQ(AsText(field), "(503) 555-9831");
}

// Rows longer than 256 bytes: from the slot that a jump names, 256 more.
TEST(RowView, ReadsTheJumpsOfLongRowsOfAccess97) {
  const TableDefinition table =
      TableOf({Variable(0, ColumnType::Text, 0), Variable(1, ColumnType::Text, 1),
               Variable(2, ColumnType::Text, 2)},
              JetVersion::Jet3);
  const std::string a(200, 'a');
  const std::string b(200, 'b');
  const std::string c(150, 'c');
  // Offsets: 1, 201, 401, and 551 as the end; the third is the first beyond 256, the end beyond
  // 512.
  const std::string text = Hex("03") + a + b + c + Hex("27 91 C9 01") + Hex("03 02") + Hex("03 07");
  const Result<RowView> row = RowView::Open(table, AsBytes(text), 1);
  ASSERT_TRUE(row.ok());
  const std::string expected[] = {a, b, c};
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    ByteView field;
    ASSERT_EQ(row.value().Field(table.columns[i], field), FieldState::Present) << i;
    EXPECT_EQ(AsText(field), expected[i]);
  }
}

}  // namespace
}  // namespace zent::jet
