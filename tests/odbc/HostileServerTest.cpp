#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "odbc/RowBlock.h"
#include "odbc/ValueReader.h"
#include "odbc/WideText.h"

/// Servers and drivers that say what is not so: of sizes, of lengths, of rows.
namespace zent::odbc {
namespace {

constexpr std::uint64_t kHuge = std::numeric_limits<std::uint64_t>::max();

struct SizeCase {
  const char* what;
  SqlType type;
  bool in_blocks;
};

constexpr SizeCase kSizeCases[] = {
    {"a text of a usual size", {SQL_WVARCHAR, 255}, true},
    {"a text of a huge size", {SQL_WVARCHAR, kHuge}, false},
    {"a text of no size", {SQL_WVARCHAR, 0}, false},
    {"bytes of a huge size", {SQL_VARBINARY, kHuge}, false},
    {"a decimal of a huge size", {SQL_DECIMAL, kHuge}, true},
    {"a number of a huge size", {SQL_INTEGER, kHuge}, true},
    {"a date of a huge size", {SQL_TYPE_TIMESTAMP, kHuge}, true},
    {"a type that nobody knows", {-9999, kHuge}, false},
};

TEST(HostileServer, SizesOfColumnsAreNotAllocated) {
  for (const SizeCase& row : kSizeCases) {
    SCOPED_TRACE(row.what);
    const std::vector<OdbcColumn> columns = {{"c", row.type}};
    const std::size_t rows = RowBlock::RowsFor(columns);
    EXPECT_EQ(rows > 0, row.in_blocks);
    EXPECT_LE(rows, 100U);
  }
}

TEST(HostileServer, ManyWideColumnsAreReadOneByOne) {
  const std::vector<OdbcColumn> columns(32767, {"c", {SQL_WVARCHAR, 8000}});
  EXPECT_EQ(RowBlock::RowsFor(columns), 0U);
}

// The calls take no context of a test's own: what they answer stands in a type.

/// Says that a value of four bytes is as long as it likes.
template <SQLLEN told>
SQLRETURN SQL_API TellLength(SQLHSTMT, SQLUSMALLINT, SQLSMALLINT, SQLPOINTER buffer, SQLLEN size,
                             SQLLEN* length) {
  std::fill_n(static_cast<char*>(buffer), std::min<SQLLEN>(size, 4), 'a');
  *length = told;
  return SQL_SUCCESS;
}

/// Never comes to an end.
SQLRETURN SQL_API TellMore(SQLHSTMT, SQLUSMALLINT, SQLSMALLINT, SQLPOINTER buffer, SQLLEN size,
                           SQLLEN* length) {
  std::fill_n(static_cast<char*>(buffer), size, 'a');
  *length = SQL_NO_TOTAL;
  return SQL_SUCCESS_WITH_INFO;
}

/// Says that there is more, and gives nothing.
SQLRETURN SQL_API TellNothing(SQLHSTMT, SQLUSMALLINT, SQLSMALLINT, SQLPOINTER, SQLLEN,
                              SQLLEN* length) {
  *length = 0;
  return SQL_SUCCESS_WITH_INFO;
}

class HostileValues : public testing::Test {
 protected:
  Result<OdbcValue> Read(decltype(OdbcCalls::get_data) get_data, const SqlType& type) {
    calls_.get_data = get_data;
    return ValueReader(session_, statement_).Read(1, FormOf(type));
  }

  OdbcCalls calls_;
  OdbcErrorList errors_;
  OdbcSession session_{calls_, errors_, {}};
  OdbcHandle statement_;
};

TEST_F(HostileValues, LengthsAreNotBelieved) {
  const SqlType memo = {SQL_WLONGVARCHAR, 0};
  const Result<OdbcValue> huge =
      Read(TellLength<std::numeric_limits<SQLLEN>::max()>, {SQL_LONGVARBINARY, 0});
  ASSERT_TRUE(huge.ok());
  EXPECT_EQ(std::get<Bytes>(huge.value()).bytes.size(), 65536U);
  const Result<OdbcValue> negative = Read(TellLength<-77>, memo);
  ASSERT_TRUE(negative.ok());
  EXPECT_EQ(negative.value(), OdbcValue(std::string()));
  EXPECT_EQ(Read(TellLength<4>, memo).value_or({}), OdbcValue(std::string("慡慡")));
}

TEST_F(HostileValues, AValueWithoutAnEndIsAnError) {
  EXPECT_EQ(Read(TellMore, {SQL_LONGVARBINARY, 0}).number(), kOutOfStringSpace);
}

TEST_F(HostileValues, APieceOfNothingIsTheLast) {
  EXPECT_EQ(Read(TellNothing, {SQL_WLONGVARCHAR, 0}).value_or({}), OdbcValue(std::string()));
}

TEST(WideTextPieces, KeepHalfACharacterForTheNextPiece) {
  const std::vector<SQLWCHAR> text = ToWide("a😀b");
  WideTextPieces pieces;
  EXPECT_EQ(pieces.Add(text.data(), 2), "a");
  EXPECT_EQ(pieces.Add(text.data() + 2, 2), "😀b");
  EXPECT_EQ(pieces.Finish(), "");
  EXPECT_EQ(pieces.Add(text.data() + 1, 1), "");
  EXPECT_NE(pieces.Finish(), "");
}

}  // namespace
}  // namespace zent::odbc
