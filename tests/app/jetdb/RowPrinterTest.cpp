#include <gtest/gtest.h>

#include <sstream>

#include "app/jetdb/RowPrinter.h"

namespace zent {
namespace {

using jet::Value;

std::string Printed(RowFormat format, const std::vector<std::string>& columns,
                    const std::vector<std::vector<Value>>& rows) {
  std::ostringstream output;
  RowPrinter printer(output, format);
  printer.Begin(columns);
  for (const std::vector<Value>& row : rows) printer.Add(row);
  printer.End();
  return output.str();
}

const std::vector<std::vector<Value>>& Rows() {
  static const std::vector<std::vector<Value>> rows = {
      {std::int32_t{1}, std::string("M\xC3\xBCller, \"Hans\""), jet::Date{37803.5}},
      {std::int32_t{20}, jet::Null(), true},
  };
  return rows;
}

TEST(RowPrinter, AlignsText) {
  EXPECT_EQ(Printed(RowFormat::Text, {"Id", "Name", "When"}, Rows()),
            "Id  Name            When\n"
            "--  --------------  -------------------\n"
            " 1  M\xC3\xBCller, \"Hans\"  2003-07-01 12:00:00\n"
            "20                  True\n");
  EXPECT_EQ(Printed(RowFormat::Text, {"A"}, {}), "A\n-\n");
}

TEST(RowPrinter, KeepsALineALine) {
  EXPECT_EQ(Printed(RowFormat::Text, {"A"}, {{std::string("a\r\nb\t\x1B[0m")}}),
            "A\n---------------\na\\r\\nb\\t\\x1b[0m\n");
  EXPECT_EQ(Printed(RowFormat::Text, {"A"}, {{std::string("\xC2\x9B[0m")}}),
            "A\n-------\n\\x9b[0m\n");
}

TEST(RowPrinter, WritesCsv) {
  EXPECT_EQ(Printed(RowFormat::Csv, {"Id", "Name", "When"}, Rows()),
            "Id,Name,When\n"
            "1,\"M\xC3\xBCller, \"\"Hans\"\"\",2003-07-01 12:00:00\n"
            "20,,True\n");
}

TEST(RowPrinter, WritesJson) {
  EXPECT_EQ(Printed(RowFormat::Json, {"Id", "Name"}, {{std::int32_t{1}, std::string("a\"b")}}),
            "{\"columns\":[\"Id\",\"Name\"],\"rows\":[\n[1,\"a\\\"b\"]\n]}\n");
  EXPECT_EQ(Printed(RowFormat::Json, {"Id"}, {}), "{\"columns\":[\"Id\"],\"rows\":[]}\n");
}

TEST(RowPrinter, GoesOnWithoutHoldingRows) {
  std::ostringstream output;
  RowPrinter printer(output, RowFormat::Text);
  printer.Begin({"N"});
  for (std::size_t i = 0; i < RowPrinter::kMeasured + 10; ++i) {
    printer.Add({Value(static_cast<std::int32_t>(i))});
  }
  const std::size_t before = output.str().size();
  EXPECT_GT(before, RowPrinter::kMeasured * 4);
  printer.End();
  EXPECT_EQ(output.str().size(), before);
}

struct PlainCase {
  const char* what;
  Value value;
  const char* text;
};

TEST(PlainText, IsWhatPeopleRead) {
  const PlainCase rows[] = {
      {"null", jet::Null(), ""},
      {"false", false, "False"},
      {"byte", std::uint8_t{7}, "7"},
      {"double", 1.5, "1.5"},
      {"currency", jet::Currency{25000}, "2.5000"},
      {"date", jet::Date{2.0}, "1900-01-01 00:00:00"},
      {"a date beyond all", jet::Date{1e9}, "1000000000"},
      {"bytes", jet::Binary{"\x01\xAB"}, "01ab"},
      {"guid", jet::Guid{}, "{00000000-0000-0000-0000-000000000000}"},
      {"decimal", jet::Decimal{.scale = 1, .magnitude = {0, 0, 0, 15}}, "1.5"},
  };
  for (const PlainCase& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(PlainText(row.value), row.text);
  }
}

}  // namespace
}  // namespace zent
