#include <algorithm>
#include <fstream>

#include "odbc/servers/ServerTest.h"

/// So that what has been freed does not count as memory of the process. The name is the
/// sanitizer's.
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" const char* __asan_default_options() { return "quarantine_size_mb=1"; }

namespace zent::odbc {
namespace {

using testing::ElementsAre;

class LargeResults : public ServerTest {};

constexpr std::size_t kLongBytes = 5U << 20U;

/// Five megabytes of text in which a character of two units lies across every border of pieces.
std::string LongText() {
  std::string text = "x";
  while (text.size() < kLongBytes) text += "😀é漢\r\n";
  return text;
}

TEST_P(LargeResults, LongTextComesBackWhole) {
  MakeTable("LongValues", "(id INT, t LONGTEXT, b LONGBLOB, after_it INT)");
  const std::string text = LongText();
  const std::vector<OdbcParameter> row = {OdbcValue(text), OdbcValue(Bytes{text})};
  ASSERT_EQ(Run("INSERT INTO LongValues VALUES (1, ?, ?, 5)", row), 1);
  Result<OdbcStatement> query = server().Query("SELECT t, b, after_it FROM LongValues");
  ASSERT_TRUE(query.ok() && query.value().Next().value_or(false));
  const Result<OdbcValue> read = query.value().Value(0);
  const Result<OdbcValue> bytes = query.value().Value(1);
  ASSERT_TRUE(read.ok() && bytes.ok());
  EXPECT_TRUE(read.value() == OdbcValue(text));
  EXPECT_TRUE(bytes.value() == OdbcValue(Bytes{text}));
  const Result<OdbcValue> behind = query.value().Value(2);
  EXPECT_TRUE(behind.ok() && behind.value() == OdbcValue(std::int64_t{5}));
}

TEST_P(LargeResults, LongTextComesInPieces) {
  MakeTable("Pieces", "(id INT, t LONGTEXT, after_it INT)");
  const std::string text = LongText();
  const std::vector<OdbcParameter> row = {OdbcValue(text)};
  ASSERT_EQ(Run("INSERT INTO Pieces VALUES (1, ?, 5)", row), 1);
  Result<OdbcStatement> query = server().Query("SELECT * FROM Pieces");
  ASSERT_TRUE(query.ok() && query.value().Next().value_or(false));
  std::string read;
  std::size_t longest = 0;
  const Result<bool> there = query.value().ReadInPieces(1, [&](std::string_view piece) -> Status {
    read += piece;
    longest = std::max(longest, piece.size());
    return {};
  });
  EXPECT_TRUE(there.value_or(false));
  EXPECT_TRUE(read == text);
  EXPECT_LT(longest, 200000U);
  EXPECT_EQ(RowText(query.value()), "1|null|5");
  EXPECT_EQ(query.value().ReadInPieces(1, [](std::string_view) { return Status(); }).number(),
            kItemNotFound);
}

TEST_P(LargeResults, PiecesOfNullAndOfEmptyTextDiffer) {
  MakeTable("NoPieces", "(id INT, t LONGTEXT)");
  Run("INSERT INTO NoPieces VALUES (1, NULL), (2, '')");
  Result<OdbcStatement> query = server().Query("SELECT t FROM NoPieces ORDER BY id");
  ASSERT_TRUE(query.ok());
  const auto nothing = [](std::string_view piece) -> Status {
    return piece.empty() ? Status() : Status(StandardError(kOutOfStringSpace));
  };
  ASSERT_TRUE(query.value().Next().value_or(false));
  EXPECT_FALSE(query.value().ReadInPieces(0, nothing).value_or(true));
  ASSERT_TRUE(query.value().Next().value_or(false));
  EXPECT_TRUE(query.value().ReadInPieces(0, nothing).value_or(false));
}

TEST_P(LargeResults, AReaderCanStopWithinAText) {
  MakeTable("Stopped", "(id INT, t LONGTEXT)");
  const std::vector<OdbcParameter> row = {OdbcValue(LongText())};
  Run("INSERT INTO Stopped VALUES (1, ?)", row);
  Result<OdbcStatement> query = server().Query("SELECT t FROM Stopped");
  ASSERT_TRUE(query.ok() && query.value().Next().value_or(false));
  const Result<bool> read = query.value().ReadInPieces(
      0, [](std::string_view) -> Status { return StandardError(kDiskFull); });
  EXPECT_EQ(read.number(), kDiskFull);
  EXPECT_THAT(Rows("SELECT 1"), ElementsAre("1"));
}

TEST_P(LargeResults, RowsWithLongColumnsAndWithoutAreTheSame) {
  MakeTable("Blocks", "(id INT, v VARCHAR(30))");
  Run("INSERT INTO Blocks SELECT seq, CASE WHEN MOD(seq, 3) = 0 THEN NULL ELSE CONCAT('v', seq) "
      "END "
      "FROM seq_1_to_1000");
  const std::vector<std::string> in_blocks = Rows("SELECT id, v FROM Blocks ORDER BY id");
  const std::vector<std::string> one_by_one =
      Rows("SELECT id, CAST(v AS CHAR(20000)) FROM Blocks ORDER BY id");
  ASSERT_EQ(in_blocks.size(), 1000U);
  EXPECT_EQ(in_blocks, one_by_one);
  EXPECT_EQ(in_blocks[1], "2|v2");
  EXPECT_EQ(in_blocks[2], "3|null");
}

ZENT_ON_BOTH_KINDS(LargeResults);

/// The memory that this process has, in KB; 0 where the system does not tell.
long ResidentKilobytes() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.rfind("VmRSS:", 0) == 0) return std::stol(line.substr(6));
  }
  return 0;
}

/// A data source by which the driver keeps no rows: what is measured is then the engine's own.
class ManyRows : public ServerTest {};

TEST_P(ManyRows, AreReadInBoundedMemory) {
  const std::string hundred_thousand =
      "SELECT CAST(seq AS SIGNED), REPEAT('x', 400), REPEAT('y', 400) FROM seq_1_to_100000";
  Result<OdbcStatement> query = server().Query(hundred_thousand, {}, Reading::Streamed);
  ASSERT_TRUE(query.ok()) << query.status().error().description;
  std::int64_t count = 0;
  std::int64_t sum = 0;
  long early = 0;
  while (query.value().Next().value_or(false)) {
    const Result<OdbcValue> number = query.value().Value(0);
    ASSERT_TRUE(number.ok());
    sum += std::get<std::int64_t>(number.value());
    const Result<OdbcValue> text = query.value().Value(2);
    ASSERT_TRUE(text.ok());
    ASSERT_EQ(std::get<std::string>(text.value()).size(), 400U);
    if (++count == 1000) early = ResidentKilobytes();
  }
  EXPECT_EQ(count, 100000);
  EXPECT_EQ(sum, 5000050000);
  // All rows are 80 MB.
  EXPECT_LT(ResidentKilobytes() - early, 40000);
}

INSTANTIATE_TEST_SUITE_P(Streamed, ManyRows, testing::Values("KorvoStreamed"));

}  // namespace
}  // namespace zent::odbc
