#include <gtest/gtest.h>

#include "HexBytes.h"
#include "jet/format/JetErrors.h"
#include "jet/format/LongValueDescriptor.h"
#include "jet/format/ValueCodec.h"

namespace zent::jet {
namespace {

constexpr PageNumber kPage = 9;

ColumnDefinition ColumnOf(ColumnType type) {
  ColumnDefinition column = {.name = "C", .type = type, .length = 40};
  if (FixedSizeOf(type) != 0) {
    column.flags = kFixedColumn | kNullableColumn;
    column.length = static_cast<std::uint16_t>(FixedSizeOf(type));
  }
  if (type == ColumnType::Numeric) column.details = {18, 2, 0, 0};
  return column;
}

struct CodecCase {
  const char* what;
  ColumnType type;
  Value value;
  const char* bytes;
};

const CodecCase kFields[] = {
    {"byte", ColumnType::Byte, std::uint8_t{200}, "C8"},
    {"int", ColumnType::Int, std::int16_t{-2}, "FE FF"},
    {"long", ColumnType::Long, std::int32_t{333333333}, "55 43 DE 13"},
    {"currency", ColumnType::Currency, Currency{35000}, "B8 88 00 00 00 00 00 00"},
    {"single", ColumnType::Single, 1.5F, "00 00 C0 3F"},
    {"double", ColumnType::Double, 444.555, "7B 14 AE 47 E1 C8 7B 40"},
    {"date", ColumnType::Date, Date{27293.0}, "00 00 00 00 40 A7 DA 40"},
    {"guid", ColumnType::Guid,
     Guid{{0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE,
           0xFF}},
     "33 22 11 00 55 44 77 66 88 99 AA BB CC DD EE FF"},
    {"numeric", ColumnType::Numeric,
     Decimal{.negative = true, .scale = 2, .magnitude = {0, 0, 0, 0x0102}},
     "80 00 00 00 00 00 00 00 00 00 00 00 00 02 01 00 00"},
    {"numeric, highest word first", ColumnType::Numeric,
     Decimal{.scale = 2, .magnitude = {1, 2, 3, 4}},
     "00 01 00 00 00 02 00 00 00 03 00 00 00 04 00 00 00"},
    {"binary", ColumnType::Binary, Binary{"\x01\x02"}, "01 02"},
    {"OLE", ColumnType::Ole, Binary{"\x01\x02"}, "01 02"},
    {"text", ColumnType::Text, Text("ab"), "61 00 62 00"},
    {"empty text", ColumnType::Text, Text(), ""},
    {"memo", ColumnType::Memo, Text("abc"), "61 00 62 00 63 00"},
    {"a block of Access", ColumnType::Internal, Binary{"\x07"}, "07"},
    {"a type that nobody knows", static_cast<ColumnType>(99), Binary{"\x07"}, "07"},
};

TEST(Field, IsEncodedAndDecoded) {
  for (const CodecCase& row : kFields) {
    SCOPED_TRACE(row.what);
    const ColumnDefinition column = ColumnOf(row.type);
    std::string bytes = "what was there";
    ASSERT_TRUE(EncodeField(column, row.value, bytes).ok());
    EXPECT_EQ(ToHex(bytes), ToHex(Hex(row.bytes)));
    const Result<Value> value = DecodeField(JetVersion::Jet4, column, AsBytes(bytes), kPage);
    ASSERT_TRUE(value.ok());
    EXPECT_EQ(value.value(), row.value);
  }
}

TEST(DecodeField, ReportsAValueThatIsCut) {
  for (const CodecCase& row : kFields) {
    if (FixedSizeOf(row.type) == 0) continue;
    SCOPED_TRACE(row.what);
    std::vector<std::uint8_t> bytes = HexVector(row.bytes);
    bytes.pop_back();
    const Result<Value> value = DecodeField(JetVersion::Jet4, ColumnOf(row.type), bytes, kPage);
    ASSERT_EQ(value.number(), kCannotOpenDatabase);
    EXPECT_NE(value.error().description.find("page 9"), std::string::npos);
  }
}

TEST(DecodeField, ANumericIsNegativeWhateverItsSignByte) {
  const Result<Value> value =
      DecodeField(JetVersion::Jet4, ColumnOf(ColumnType::Numeric),
                  HexVector("01 00 00 00 00 00 00 00 00 00 00 00 00 01 00 00 00"), kPage);
  EXPECT_TRUE(std::get<Decimal>(value.value()).negative);
}

TEST(EncodeField, CompressesTextsOfCompressedColumns) {
  ColumnDefinition column = ColumnOf(ColumnType::Text);
  column.extended_flags = kCompressedColumn;
  std::string bytes;
  ASSERT_TRUE(EncodeField(column, Text("abc"), bytes).ok());
  EXPECT_EQ(ToHex(bytes), "FF FE 61 62 63");
}

TEST(EncodeField, FillsFixedTextWithBlanks) {
  ColumnDefinition column = ColumnOf(ColumnType::Text);
  column.flags |= kFixedColumn;
  column.extended_flags = kCompressedColumn;
  column.length = 8;
  std::string bytes;
  ASSERT_TRUE(EncodeField(column, Text("abc"), bytes).ok());
  EXPECT_EQ(ToHex(bytes), "61 00 62 00 63 00 20 00");
}

struct RefusalCase {
  const char* what;
  ColumnType type;
  Value value;
  int error;
};

const RefusalCase kRefused[] = {
    {"null has no bytes", ColumnType::Long, Null{}, kDataTypeConversion},
    {"bool has no bytes", ColumnType::Long, true, kDataTypeConversion},
    {"another number", ColumnType::Long, std::int16_t{1}, kDataTypeConversion},
    {"text for a number", ColumnType::Long, Text("1"), kDataTypeConversion},
    {"a number for text", ColumnType::Text, std::int32_t{1}, kDataTypeConversion},
    {"bytes for text", ColumnType::Memo, Binary{"a"}, kDataTypeConversion},
    {"bytes for a number", ColumnType::Date, Binary{"a"}, kDataTypeConversion},
    {"text as long as it may be", ColumnType::Text, Text(20, 'x'), 0},
    {"text too long", ColumnType::Text, Text(21, 'x'), kFieldTooSmall},
    {"a pair counts twice", ColumnType::Text, Text(19, 'x') + "\xF0\x9F\x98\x80", kFieldTooSmall},
    {"a memo of any length", ColumnType::Memo, Text(5000, 'x'), 0},
    {"bytes as many as may be", ColumnType::Binary, Binary{std::string(40, 'x')}, 0},
    {"too many bytes", ColumnType::Binary, Binary{std::string(41, 'x')}, kFieldTooSmall},
    {"OLE of any length", ColumnType::Ole, Binary{std::string(5000, 'x')}, 0},
    {"another number of decimals", ColumnType::Numeric, Decimal{.scale = 3}, kDataTypeConversion},
};

TEST(EncodeField, RefusesWhatTheColumnCannotHold) {
  for (const RefusalCase& row : kRefused) {
    SCOPED_TRACE(row.what);
    std::string bytes;
    EXPECT_EQ(EncodeField(ColumnOf(row.type), row.value, bytes).number(), row.error);
  }
}

TEST(TypeOf, IsThatOfTheColumnsThatHoldTheValue) {
  for (const CodecCase& row : kFields) {
    SCOPED_TRACE(row.what);
    const ColumnType type = TypeOf(row.value);
    const bool shared = IsLong(row.type) || type == ColumnType::Binary;
    EXPECT_TRUE(type == row.type || shared);
    EXPECT_FALSE(IsNull(row.value));
  }
  EXPECT_TRUE(IsNull(Value()));
  EXPECT_EQ(TypeOf(Value(true)), ColumnType::Bool);
}

TEST(ColumnType, HasANameAndASize) {
  EXPECT_STREQ(NameOf(ColumnType::Numeric), "numeric");
  EXPECT_STREQ(NameOf(static_cast<ColumnType>(13)), "unknown");
  EXPECT_EQ(FixedSizeOf(ColumnType::Numeric), 17U);
  EXPECT_EQ(FixedSizeOf(ColumnType::Text), 0U);
  EXPECT_EQ(FixedSizeOf(static_cast<ColumnType>(13)), 0U);
}

struct DescriptorCase {
  const char* what;
  const char* field;
  LongValueKind kind;
  std::uint32_t length;
  RowPointer first;
  const char* data;
};

constexpr DescriptorCase kDescriptors[] = {
    {"no bytes are an empty value", "", LongValueKind::Inline, 0, {}, ""},
    {"in its row",
     "03 00 00 80 00 00 00 00 00 00 00 00 61 62 63",
     LongValueKind::Inline,
     3,
     {},
     "61 62 63"},
    {"in its row, with bytes behind",
     "01 00 00 80 00 00 00 00 00 00 00 00 61 62",
     LongValueKind::Inline,
     1,
     {},
     "61"},
    {"one row",
     "00 01 00 40 05 11 00 00 00 00 00 00",
     LongValueKind::Single,
     256,
     {.page = 17, .row = 5},
     ""},
    {"a chain",
     "FF FF FF 3F 00 01 02 03 07 00 00 00",
     LongValueKind::Chain,
     kMaxLongValue,
     {.page = 0x030201, .row = 0},
     ""},
};

TEST(LongValueDescriptor, TellsWhereTheValueIs) {
  for (const DescriptorCase& row : kDescriptors) {
    SCOPED_TRACE(row.what);
    const std::vector<std::uint8_t> field = HexVector(row.field);
    const Result<LongValueDescriptor> read = ParseLongValue(field, kPage);
    ASSERT_TRUE(read.ok());
    EXPECT_EQ(read.value().kind, row.kind);
    EXPECT_EQ(read.value().length, row.length);
    EXPECT_EQ(read.value().first, row.first);
    EXPECT_EQ(ToHex(AsText(read.value().data)), row.data);
  }
}

TEST(LongValueDescriptor, RefusesWhatIsNone) {
  for (const char* field :
       {"00", "03 00 00 80 00 00 00 00 00 00 00", "03 00 00 80 00 00 00 00 00 00 00 00 61 62",
        "03 00 00 C0 00 00 00 00 00 00 00 00 61 62 63"}) {
    EXPECT_EQ(ParseLongValue(HexVector(field), kPage).number(), kCannotOpenDatabase) << field;
  }
}

TEST(LongValueField, IsReadAsItWasWritten) {
  const RowPointer first = {.page = 77, .row = 3};
  for (const LongValueKind kind : {LongValueKind::Single, LongValueKind::Chain}) {
    const auto field = LongValueField(kind, 12345, first);
    const Result<LongValueDescriptor> read = ParseLongValue(field, kPage);
    ASSERT_TRUE(read.ok());
    EXPECT_EQ(read.value().kind, kind);
    EXPECT_EQ(read.value().length, 12345U);
    EXPECT_EQ(read.value().first, first);
  }
  EXPECT_EQ(ToHex(AsText(LongValueField(LongValueKind::Inline, 2, first))),
            "02 00 00 80 00 00 00 00 00 00 00 00");
}

}  // namespace
}  // namespace zent::jet
