#include <gtest/gtest.h>

#include "HexBytes.h"
#include "jet/format/IndexKey.h"
#include "jet/format/JetErrors.h"
#include "jet/format/ValueText.h"

namespace zent::jet {
namespace {

std::string KeyOf(ColumnType type, bool ascending, const Value& value) {
  std::string key;
  const Status appended = AppendKey({.type = type, .ascending = ascending}, value, key);
  EXPECT_TRUE(appended.ok());
  return ToHex(key);
}

struct KeyCase {
  const char* what;
  ColumnType type;
  Value value;
  const char* ascending;
  const char* descending;
};

const Guid kGuid = {{0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99, 0xAA, 0xBB, 0xCC,
                     0xDD, 0xEE, 0xFF}};

const KeyCase kKeys[] = {
    {"null", ColumnType::Long, Null{}, "00", "FF"},
    {"null text", ColumnType::Text, Null{}, "00", "FF"},
    {"true", ColumnType::Bool, true, "7F 00", "80 FF"},
    {"false", ColumnType::Bool, false, "7F FF", "80 00"},
    {"no yes is a no", ColumnType::Bool, Null{}, "7F FF", "80 00"},
    {"byte", ColumnType::Byte, std::uint8_t{0x2A}, "7F 2A", "80 D5"},
    {"int", ColumnType::Int, std::int16_t{1}, "7F 80 01", "80 7F FE"},
    {"negative int", ColumnType::Int, std::int16_t{-1}, "7F 7F FF", "80 80 00"},
    {"long zero", ColumnType::Long, std::int32_t{0}, "7F 80 00 00 00", "80 7F FF FF FF"},
    {"long", ColumnType::Long, std::int32_t{2}, "7F 80 00 00 02", "80 7F FF FF FD"},
    {"lowest long", ColumnType::Long, std::int32_t{-2147483647 - 1}, "7F 00 00 00 00",
     "80 FF FF FF FF"},
    {"currency", ColumnType::Currency, Currency{35000}, "7F 80 00 00 00 00 00 88 B8",
     "80 7F FF FF FF FF FF 77 47"},
    {"single", ColumnType::Single, 1.0F, "7F BF 80 00 00", "80 40 7F FF FF"},
    {"negative single", ColumnType::Single, -1.0F, "7F 40 7F FF FF", "80 BF 80 00 00"},
    {"double", ColumnType::Double, 1.0, "7F BF F0 00 00 00 00 00 00", "80 40 0F FF FF FF FF FF FF"},
    {"negative double", ColumnType::Double, -1.0, "7F 40 0F FF FF FF FF FF FF",
     "80 BF F0 00 00 00 00 00 00"},
    {"date", ColumnType::Date, Date{2.0}, "7F C0 00 00 00 00 00 00 00",
     "80 3F FF FF FF FF FF FF FF"},
    {"numeric", ColumnType::Numeric, Decimal{.magnitude = {0, 0, 0, 0x0102}},
     "7F FF 00 00 00 00 00 00 00 00 00 00 00 00 00 00 01 02",
     "80 FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FE FD"},
    {"negative numeric", ColumnType::Numeric, Decimal{.negative = true, .magnitude = {0, 0, 0, 1}},
     "7F 00 FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FE",
     "80 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 01"},
    {"guid", ColumnType::Guid, kGuid, "7F 00 11 22 33 44 55 66 77 09 88 99 AA BB CC DD EE FF 08",
     "80 FF EE DD CC BB AA 99 88 09 77 66 55 44 33 22 11 00 F7"},
    {"short binary", ColumnType::Binary, Binary{"\x01\x02"}, "7F 01 02 00 00 00 00 00 00 02",
     "80 FE FD FF FF FF FF FF FF FD"},
    {"binary of nine", ColumnType::Binary, Binary{"123456789"},
     "7F 31 32 33 34 35 36 37 38 09 39 00 00 00 00 00 00 00 01",
     "80 CE CD CC CB CA C9 C8 C7 09 C6 FF FF FF FF FF FF FF FE"},
    {"text", ColumnType::Text, Text("abc"), "7F 4A 4C 4D 01 00", "80 B5 B3 B2 FE FF 00"},
    {"memo", ColumnType::Memo, Text("abc"), "7F 4A 4C 4D 01 00", "80 B5 B3 B2 FE FF 00"},
};

TEST(IndexKey, EncodesEveryTypeInBothOrders) {
  for (const KeyCase& row : kKeys) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(KeyOf(row.type, true, row.value), row.ascending);
    EXPECT_EQ(KeyOf(row.type, false, row.value), row.descending);
  }
}

struct OrderCase {
  const char* what;
  ColumnType type;
  std::vector<Value> values;  // ascending
};

const OrderCase kOrders[] = {
    {"ints",
     ColumnType::Int,
     {Null{}, std::int16_t{-32768}, std::int16_t{-1}, std::int16_t{0}, std::int16_t{32767}}},
    {"currency",
     ColumnType::Currency,
     {Null{}, Currency{-20000}, Currency{-1}, Currency{0}, Currency{1}, Currency{900000000}}},
    {"doubles", ColumnType::Double, {Null{}, -1e300, -2.5, -1e-300, 0.0, 1e-300, 2.5, 1e300}},
    {"singles", ColumnType::Single, {Null{}, -3.5F, -0.25F, 0.0F, 0.25F, 3.5F}},
    {"dates", ColumnType::Date, {Null{}, Date{-2.25}, Date{0}, Date{0.5}, Date{40000}}},
    {"bytes", ColumnType::Byte, {Null{}, std::uint8_t{0}, std::uint8_t{127}, std::uint8_t{255}}},
    {"binary",
     ColumnType::Binary,
     {Null{}, Binary{"a"}, Binary{"ab"}, Binary{"abcdefgh"}, Binary{"abcdefghi"}, Binary{"b"}}},
};

TEST(IndexKey, ComparesAsItsValuesDo) {
  for (const OrderCase& row : kOrders) {
    for (std::size_t i = 0; i + 1 < row.values.size(); ++i) {
      SCOPED_TRACE(std::string(row.what) + " " + std::to_string(i));
      EXPECT_LT(Hex(KeyOf(row.type, true, row.values[i])),
                Hex(KeyOf(row.type, true, row.values[i + 1])));
      EXPECT_GT(Hex(KeyOf(row.type, false, row.values[i])),
                Hex(KeyOf(row.type, false, row.values[i + 1])));
    }
  }
}

TEST(IndexKey, JoinsTheKeysOfItsColumns) {
  const KeyColumn columns[] = {{.type = ColumnType::Long},
                               {.type = ColumnType::Text, .ascending = false}};
  const Value values[] = {std::int32_t{1}, Text("a")};
  const Result<std::string> key = IndexKey(columns, values);
  ASSERT_TRUE(key.ok());
  EXPECT_EQ(ToHex(key.value()), "7F 80 00 00 01 80 B5 FE FF 00");
}

TEST(IndexKey, RefusesWhatItCannotOrder) {
  const KeyColumn text = {.type = ColumnType::Text, .collation = {.lcid = 1033, .version = 1}};
  const KeyColumn number = {.type = ColumnType::Long};
  std::string key;
  EXPECT_EQ(AppendKey(text, Text("a"), key).number(), kReadOnly);
  EXPECT_EQ(AppendKey(text, Null{}, key).number(), kReadOnly);
  EXPECT_EQ(AppendKey(number, Text("1"), key).number(), kDataTypeConversion);
  EXPECT_EQ(AppendKey(number, std::int16_t{1}, key).number(), kDataTypeConversion);
  EXPECT_EQ(AppendKey({.type = ColumnType::Ole}, Binary{"a"}, key).number(), kDataTypeConversion);
  const Value two[] = {std::int32_t{1}, std::int32_t{2}};
  EXPECT_EQ(IndexKey({&number, 1}, two).number(), kInvalidArgument);
}

TableDefinition TableOf(JetVersion version, std::array<std::uint8_t, 4> details) {
  TableDefinition table = {.version = version};
  table.columns.push_back(
      {.name = "Name", .type = ColumnType::Text, .number = 3, .details = details});
  return table;
}

TEST(KeyColumnsOf, TakesTypeOrderAndCollationFromTheTable) {
  const RealIndex index = {.columns = {{.column = 3, .ascending = false}}};
  const Result<std::vector<KeyColumn>> columns =
      KeyColumnsOf(TableOf(JetVersion::Jet4, {0x07, 0x04, 0, 1}), index);
  ASSERT_TRUE(columns.ok());
  ASSERT_EQ(columns.value().size(), 1U);
  EXPECT_EQ(columns.value()[0].type, ColumnType::Text);
  EXPECT_FALSE(columns.value()[0].ascending);
  EXPECT_EQ(columns.value()[0].collation, (Collation{.lcid = 1031, .version = 1}));
}

TEST(KeyColumnsOf, RefusesAColumnThatIsNotThere) {
  const RealIndex index = {.columns = {{.column = 4}}};
  EXPECT_EQ(KeyColumnsOf(TableOf(JetVersion::Jet4, {9, 4, 0, 0}), index).number(),
            kCannotOpenDatabase);
}

struct CoverCase {
  const char* what;
  JetVersion version;
  std::array<std::uint8_t, 4> details;
  bool covered;
};

constexpr CoverCase kCovered[] = {
    {"General Legacy", JetVersion::Jet4, {0x09, 0x04, 0, 0}, true},
    {"the General of 2010", JetVersion::Jet4, {0x09, 0x04, 0, 1}, false},
    {"German phone book", JetVersion::Jet4, {0x07, 0x04, 1, 0}, false},
    {"General of code page 1252", JetVersion::Jet3, {0x09, 0x04, 0xE4, 0x04}, true},
    {"another code page", JetVersion::Jet3, {0x09, 0x04, 0xE2, 0x04}, false},
};

TEST(IsCovered, IsTheOneCollation) {
  for (const CoverCase& row : kCovered) {
    SCOPED_TRACE(row.what);
    const TableDefinition table = TableOf(row.version, row.details);
    EXPECT_EQ(IsCovered(row.version, table.columns[0]), row.covered);
    const RealIndex index = {.columns = {{.column = 3}}};
    const Result<std::vector<KeyColumn>> columns = KeyColumnsOf(table, index);
    ASSERT_TRUE(columns.ok());
    EXPECT_EQ(columns.value()[0].collation == kGeneralLegacy, row.covered);
  }
  EXPECT_TRUE(IsCovered(JetVersion::Jet4, {.type = ColumnType::Long, .details = {7, 4, 0, 0}}));
}

}  // namespace
}  // namespace zent::jet
