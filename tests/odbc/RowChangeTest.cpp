#include <gtest/gtest.h>

#include "odbc/OdbcCalls.h"
#include "odbc/RowChange.h"

namespace zent::odbc {
namespace {

OdbcColumn Column(const char* name, std::int16_t type = SQL_INTEGER, std::uint64_t size = 10) {
  return {name, {type, size, 0, false}};
}

TEST(RowChange, WritesValuesAsParametersAndNullAsATest) {
  const OdbcColumn id = Column("id");
  const OdbcColumn odd = Column("a \"b\"");
  const OdbcColumn name = Column("name", SQL_WVARCHAR);
  const std::vector<ColumnValue> row = {{id, std::int64_t{7}}, {odd, OdbcValue()}};
  const BoundText test = RowTest(row, "\"");
  EXPECT_EQ(test.text, "\"id\"=? AND \"a \"\"b\"\"\" IS NULL");
  ASSERT_EQ(test.values.size(), 1U);
  EXPECT_EQ(test.values[0].type, id.type);

  const std::vector<ColumnValue> news = {{name, std::string("x")}, {odd, OdbcValue()}};
  const BoundText update = UpdateText("[dbo].[T]", news, test, "\"");
  EXPECT_EQ(update.text, "UPDATE [dbo].[T] SET \"name\"=?, \"a \"\"b\"\"\"=? WHERE " + test.text);
  EXPECT_EQ(update.values.size(), 3U);
  EXPECT_EQ(InsertText("T", news, "`").text, "INSERT INTO T (`name`, `a \"b\"`) VALUES (?, ?)");
  EXPECT_EQ(DeleteText("T", test).text, "DELETE FROM T WHERE " + test.text);
  EXPECT_EQ(CountText("T", test).text, "SELECT COUNT(*) FROM T WHERE " + test.text);
  EXPECT_EQ(CountText("T", test).values.size(), 1U);
}

TEST(RowChange, JoinsTestsOfWhichOneMayBeEmpty) {
  const BoundText one = {"a=1", {}};
  EXPECT_EQ(BothTests(one, {"b=2", {}}).text, "a=1 AND b=2");
  EXPECT_EQ(BothTests(one, {}).text, "a=1");
  EXPECT_EQ(BothTests({}, one).text, "a=1");
}

struct ComparableCase {
  const char* what;
  std::int16_t type;
  std::uint64_t size;
  bool comparable;
};

constexpr ComparableCase kComparableCases[] = {
    {"integer", SQL_INTEGER, 10, true},
    {"bit", SQL_BIT, 1, true},
    {"decimal", SQL_DECIMAL, 10, true},
    {"text", SQL_WVARCHAR, 255, true},
    {"binary", SQL_VARBINARY, 16, true},
    {"date", SQL_TYPE_TIMESTAMP, 19, true},
    {"float", SQL_REAL, 7, false},
    {"double", SQL_DOUBLE, 15, false},
    {"memo", SQL_WLONGVARCHAR, 1U << 30U, false},
    {"text without a limit", SQL_WVARCHAR, 0, false},
    {"blob", SQL_LONGVARBINARY, 0, false},
    {"time", SQL_TYPE_TIME, 8, false},
    {"a type of the server's own", -151, 0, false},
};

TEST(RowChange, ComparesOnlyWhatComesBackAsItWas) {
  for (const ComparableCase& row : kComparableCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(IsComparable(Column("c", row.type, row.size)), row.comparable);
  }
}

}  // namespace
}  // namespace zent::odbc
