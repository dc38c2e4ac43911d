#include <fmt/format.h>
#include <gtest/gtest.h>

#include <random>

#include "jet/sql/execution/SqlFile.h"

namespace zent::jet::testing {
namespace {

constexpr int kRows = 150;
constexpr int kTests = 400;

/// Statements from the toss of a coin, the same in each run.
class RandomSql {
 public:
  explicit RandomSql(unsigned seed) : random_(seed) {}

  std::string Row(int id) {
    return fmt::format("({}, {}, {}, {}, {}, {}, {}, {})", id, OrNull(Number()), OrNull(Name()),
                       OrNull(fmt::format("{}.5", Number())), OrNull(Day()),
                       Among({"TRUE", "FALSE"}), OrNull(Number()),
                       OrNull(fmt::format("{}.25", Number())));
  }

  std::string Test(int depth) {
    if (depth > 0 && Below(2) == 0) {
      const std::string left = Test(depth - 1);
      return fmt::format("({} {} {})", left, Among({"AND", "OR"}), Test(depth - 1));
    }
    switch (Below(8)) {
      case 0:
        return fmt::format("a {} {}", Comparison(), Among({Number(), Number() + ".5", "NULL"}));
      case 1:
        return fmt::format("t {} {}", Comparison(), Name());
      case 2:
        return fmt::format("t LIKE '{}*'", Among({"a", "B", "ab", "o", "a b", "-a", ""}));
      case 3:
        return fmt::format("a IN ({}, {}, NULL)", Number(), Number());
      case 4:
        return fmt::format("{} IS {}NULL", Among({"a", "t", "d", "x"}), Among({"", "NOT "}));
      case 5:
        return fmt::format("x BETWEEN {} AND {}", Number(), Number());
      case 6:
        return fmt::format("d {} {}", Comparison(), Day());
      default:
        return fmt::format("{} {}", Among({"y =", "NOT y =", "y <>"}), Among({"TRUE", "FALSE"}));
    }
  }

  std::string Among(std::vector<std::string> items) { return items[Below(items.size())]; }

 private:
  std::size_t Below(std::size_t end) { return random_() % end; }
  std::string OrNull(std::string value) { return Below(6) == 0 ? "NULL" : std::move(value); }
  std::string Number() { return std::to_string(Below(9)); }
  std::string Day() { return fmt::format("#1/{}/2005#", 1 + Below(9)); }
  std::string Comparison() { return Among({"=", "<>", "<", "<=", ">", ">="}); }
  std::string Name() {
    return Among({"'a'", "'A b'", "'ab'", "'AB-c'", "'b'", "'\xC3\xA4'", "'a''b'", "''", "'o'"});
  }

  std::mt19937 random_;
};

// A table without an index and one with many hold the same rows: tests and orders give the same.
TEST(Agreement, IndexesFindWhatAScanFinds) {
  SqlFile file;
  constexpr std::string_view kColumns =
      "(id LONG, a LONG, t TEXT(20), f SINGLE, d DATETIME, y YESNO, b BYTE, x CURRENCY)";
  file.RunAll({fmt::format("CREATE TABLE plain {}", kColumns),
               fmt::format("CREATE TABLE keyed {}", kColumns),
               "CREATE INDEX i1 ON keyed (a, t DESC)", "CREATE INDEX i2 ON keyed (t)",
               "CREATE INDEX i3 ON keyed (d DESC, a)", "CREATE INDEX i4 ON keyed (y, b)",
               "CREATE INDEX i5 ON keyed (x) WITH IGNORE NULL",
               "CREATE UNIQUE INDEX i6 ON keyed (id)"});
  RandomSql random(20050131);
  for (int id = 0; id < kRows; ++id) {
    const std::string row = random.Row(id);
    ASSERT_EQ(file.Run("INSERT INTO plain VALUES " + row), "1") << row;
    ASSERT_EQ(file.Run("INSERT INTO keyed VALUES " + row), "1") << row;
  }
  for (int i = 0; i < kTests; ++i) {
    const std::string test = random.Test(2);
    const std::string order = random.Among({"id", "a, id", "t DESC, id", "d DESC, a, id", "x, id"});
    const std::string tail = fmt::format(" WHERE {} ORDER BY {}", test, order);
    EXPECT_EQ(file.Rows("SELECT id FROM keyed" + tail), file.Rows("SELECT id FROM plain" + tail))
        << tail;
  }
}

TEST(Agreement, JoinsFindWhatAllPairsHave) {
  SqlFile file;
  file.RunAll({"CREATE TABLE a (n LONG, t TEXT(9))", "CREATE TABLE b (n DOUBLE, t TEXT(9))",
               "CREATE TABLE c (n LONG, t TEXT(9))", "CREATE INDEX i ON c (n, t)",
               "CREATE TABLE d (n DECIMAL(20, 18), t TEXT(9))"});
  RandomSql random(7);
  for (int i = 0; i < 60; ++i) {
    for (const char* table : {"a", "b", "c", "d"}) {
      const std::string n = random.Among({"1", "2", "3", "4", "NULL"});
      const std::string t = random.Among({"'x'", "'X'", "'y'", "NULL"});
      ASSERT_EQ(file.Run(fmt::format("INSERT INTO {} VALUES ({}, {})", table, n, t)), "1");
    }
  }
  for (const char* other : {"b", "c", "d"}) {
    const std::string pairs = fmt::format("SELECT COUNT(*) FROM a, {0} WHERE ", other);
    const std::string joined = fmt::format("SELECT COUNT(*) FROM a INNER JOIN {0} ON ", other);
    const std::string equal = fmt::format("a.n = {0}.n AND a.t = {0}.t", other);
    // Arithmetic on both sides keeps an index and a list of hashes from being used.
    const std::string plain =
        fmt::format("a.n - {0}.n = 0 AND (a.t = {0}.t OR a.t = {0}.t & '')", other);
    EXPECT_EQ(file.Rows(joined + equal), file.Rows(pairs + plain));
    EXPECT_NE(file.Rows(joined + equal), "0");
  }
}

}  // namespace
}  // namespace zent::jet::testing
