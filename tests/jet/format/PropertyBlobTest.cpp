#include <gtest/gtest.h>

#include "HexBytes.h"
#include "jet/format/JetErrors.h"
#include "jet/format/PropertyBlob.h"

namespace zent::jet {
namespace {

constexpr JetVersion kVersion = JetVersion::Jet4;

// Two names, one of them unused; a byte of the table's own; a width and a yes of column "a".
constexpr std::string_view kBlob =
    "4D 52 32 00"
    "1A 00 00 00 80 00 04 00 4F 00 70 00 04 00 57 00 64 00 06 00 52 00 65 00 71 00"
    "15 00 00 00 00 00 06 00 00 00 00 00 09 00 01 02 00 00 01 00 05"
    "23 00 00 00 01 00 08 00 00 00 02 00 61 00 0C 00 00 03 01 00 04 00 FF FF FF FF"
    "09 00 01 01 02 00 01 00 01";

PropertyBlob RealBlob() {
  const Result<PropertyBlob> blob = ParsePropertyBlob(kVersion, HexVector(kBlob), 1);
  EXPECT_TRUE(blob.ok());
  return blob.value();
}

TEST(PropertyBlob, HasSetsOfProperties) {
  const PropertyBlob blob = RealBlob();
  EXPECT_EQ(blob.names, (std::vector<std::string>{"Op", "Wd", "Req"}));
  ASSERT_EQ(blob.sets.size(), 2U);
  const PropertySet* own = blob.Find("");
  ASSERT_NE(own, nullptr);
  ASSERT_NE(own->Find("OP"), nullptr);
  EXPECT_TRUE(own->Find("OP")->IsDdl());
  EXPECT_EQ(PropertyValue(kVersion, *own->Find("OP")), Value(std::uint8_t{5}));
  const PropertySet* column = blob.Find("A");
  ASSERT_NE(column, nullptr);
  EXPECT_EQ(PropertyValue(kVersion, *column->Find("Wd")), Value(std::int32_t{-1}));
  EXPECT_FALSE(column->Find("Wd")->IsDdl());
  EXPECT_EQ(PropertyValue(kVersion, *column->Find("Req")), Value(true));
  EXPECT_EQ(column->Find("Op"), nullptr);
  EXPECT_EQ(blob.Find("b"), nullptr);
}

TEST(PropertyBlob, IsWrittenAsItWasRead) {
  const Result<std::string> bytes = SerialisePropertyBlob(kVersion, RealBlob());
  ASSERT_TRUE(bytes.ok());
  EXPECT_EQ(ToHex(bytes.value()), ToHex(Hex(kBlob)));
}

TEST(PropertyBlob, OfNoBytesHasNoProperties) {
  const Result<PropertyBlob> blob = ParsePropertyBlob(kVersion, {}, 1);
  ASSERT_TRUE(blob.ok());
  EXPECT_EQ(blob.value(), PropertyBlob{});
  const std::string bytes = SerialisePropertyBlob(kVersion, {}).value();
  EXPECT_EQ(ToHex(bytes), "4D 52 32 00 06 00 00 00 80 00");
  EXPECT_EQ(ParsePropertyBlob(kVersion, AsBytes(bytes), 1).value(), PropertyBlob{});
}

TEST(PropertyBlob, IsReadFromAccess97) {
  const std::vector<std::uint8_t> bytes = HexVector(
      "4B 4B 44 00 0A 00 00 00 80 00 02 00 4F E9"
      "17 00 00 00 00 00 06 00 00 00 00 00 0B 00 01 0A 00 00 03 00 61 62 E9");
  const Result<PropertyBlob> blob = ParsePropertyBlob(JetVersion::Jet3, bytes, 1);
  ASSERT_TRUE(blob.ok());
  const Property& property = blob.value().sets[0].properties[0];
  EXPECT_EQ(property.name, "O\xC3\xA9");
  EXPECT_EQ(PropertyValue(JetVersion::Jet3, property), Value(Text("ab\xC3\xA9")));
  EXPECT_EQ(ToHex(SerialisePropertyBlob(JetVersion::Jet3, blob.value()).value()),
            ToHex(AsText(bytes)));
}

Property Made(std::string_view name, ColumnType type, const Value& value) {
  return MakeProperty(name, type, true, value).value();
}

TEST(PropertyBlob, IsEdited) {
  PropertyBlob blob = RealBlob();
  PropertySet& column = blob.SetOf("A");
  EXPECT_EQ(&column, &blob.sets[1]);
  column.Set(Made("REQ", ColumnType::Bool, false));
  EXPECT_EQ(column.properties.size(), 2U);
  EXPECT_EQ(column.properties[1].name, "Req");
  column.Set(Made("Caption", ColumnType::Memo, Text("New")));
  EXPECT_TRUE(column.Remove("WD"));
  EXPECT_FALSE(column.Remove("Wd"));
  blob.SetOf("b").Set(Made("Caption", ColumnType::Memo, Text("B")));
  EXPECT_TRUE(blob.RenameColumn("A", "z"));
  EXPECT_FALSE(blob.RenameColumn("a", "y"));
  EXPECT_FALSE(blob.RenameColumn("", "y"));

  const std::string bytes = SerialisePropertyBlob(kVersion, blob).value();
  PropertyBlob again = ParsePropertyBlob(kVersion, AsBytes(bytes), 1).value();
  EXPECT_EQ(again.sets, blob.sets);
  EXPECT_EQ(again.names, (std::vector<std::string>{"Op", "Wd", "Req", "Caption"}));
  EXPECT_EQ(PropertyValue(kVersion, *again.Find("z")->Find("Caption")), Value(Text("New")));
  EXPECT_EQ(PropertyValue(kVersion, *again.Find("z")->Find("Req")), Value(false));
  EXPECT_TRUE(again.DropColumn("B"));
  EXPECT_FALSE(again.DropColumn("B"));
  EXPECT_FALSE(again.DropColumn(""));
  EXPECT_EQ(again.sets.size(), 2U);
}

struct ValueCase {
  const char* what;
  ColumnType type;
  Value value;
  const char* bytes;
};

const ValueCase kValues[] = {
    {"bool", ColumnType::Bool, true, "01"},
    {"byte", ColumnType::Byte, std::uint8_t{9}, "09"},
    {"int", ColumnType::Int, std::int16_t{109}, "6D 00"},
    {"long", ColumnType::Long, std::int32_t{-1}, "FF FF FF FF"},
    {"single", ColumnType::Single, 1.5F, "00 00 C0 3F"},
    {"double", ColumnType::Double, 1.5, "00 00 00 00 00 00 F8 3F"},
    {"date", ColumnType::Date, Date{1.5}, "00 00 00 00 00 00 F8 3F"},
    {"text is never compressed", ColumnType::Text, Text("abc"), "61 00 62 00 63 00"},
    {"memo", ColumnType::Memo, Text("a"), "61 00"},
    {"bytes", ColumnType::Binary, Binary{"\x01\x02"}, "01 02"},
    {"OLE", ColumnType::Ole, Binary{"\x01\x02"}, "01 02"},
};

TEST(Property, HoldsEveryType) {
  for (const ValueCase& row : kValues) {
    SCOPED_TRACE(row.what);
    const Result<Property> property = MakeProperty("P", row.type, false, row.value);
    ASSERT_TRUE(property.ok());
    EXPECT_EQ(ToHex(property.value().data), row.bytes);
    EXPECT_FALSE(property.value().IsDdl());
    EXPECT_EQ(PropertyValue(kVersion, property.value()), row.value);
  }
}

TEST(Property, OfTooFewBytesIsNull) {
  for (const ColumnType type : {ColumnType::Bool, ColumnType::Long, ColumnType::Date}) {
    EXPECT_TRUE(IsNull(PropertyValue(kVersion, {.name = "P", .type = type})));
  }
  EXPECT_EQ(
      PropertyValue(kVersion, {.name = "P", .type = ColumnType::Bool, .data = Hex("01000000")}),
      Value(true));
}

TEST(MakeProperty, RefusesAValueOfAnotherType) {
  EXPECT_EQ(MakeProperty("P", ColumnType::Bool, true, Text("x")).number(), kDataTypeConversion);
  EXPECT_EQ(MakeProperty("P", ColumnType::Text, true, true).number(), kDataTypeConversion);
  EXPECT_EQ(MakeProperty("P", ColumnType::Long, true, Null{}).number(), kDataTypeConversion);
}

struct DamageCase {
  const char* what;
  std::size_t at;
  std::uint8_t byte;
};

constexpr DamageCase kDamage[] = {
    {"another mark", 0, 'K'},
    {"a block longer than the rest", 5, 0xFF},
    {"a block shorter than its head", 4, 5},
    {"a name longer than the list", 10, 0xFF},
    {"an owner that does not fit", 0x1E + 6, 7},
    {"a record longer than the block", 0x1E + 12, 0xFF},
    {"a record shorter than its head", 0x1E + 12, 7},
    {"a name that is not there", 0x1E + 16, 3},
    {"data of another length than the record", 0x1E + 18, 2},
};

TEST(PropertyBlob, RefusesDamage) {
  for (const DamageCase& row : kDamage) {
    SCOPED_TRACE(row.what);
    std::vector<std::uint8_t> bytes = HexVector(kBlob);
    bytes[row.at] = row.byte;
    EXPECT_EQ(ParsePropertyBlob(kVersion, bytes, 3).number(), kCannotOpenDatabase);
  }
}

TEST(PropertyBlob, RefusesEveryCutWithinABlock) {
  const std::vector<std::uint8_t> bytes = HexVector(kBlob);
  for (std::size_t size = 1; size < bytes.size(); ++size) {
    const bool between_blocks = size == 4 || size == 4 + 0x1A || size == 4 + 0x1A + 0x15;
    const std::vector<std::uint8_t> cut(bytes.begin(),
                                        bytes.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(ParsePropertyBlob(kVersion, cut, 3).ok(), between_blocks) << size;
  }
}

TEST(PropertyBlob, RefusesToWriteWhatDoesNotFit) {
  PropertyBlob blob;
  blob.SetOf("").Set({.name = "P", .type = ColumnType::Ole, .data = std::string(0xFFFF, 'x')});
  EXPECT_EQ(SerialisePropertyBlob(kVersion, blob).number(), kInvalidArgument);
}

}  // namespace
}  // namespace zent::jet
