#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "jet/fakes/CatalogFile.h"
#include "jet/format/JetErrors.h"

/// Relationships that the file enforces: what may come in, and what a change brings with it.
namespace zent::jet::testing {
namespace {

using ::testing::HasSubstr;

constexpr std::uint8_t kPrimaryFlags = kUniqueIndex | kRequiredIndex;

Value Number(int number) { return static_cast<std::int32_t>(number); }

/// Grandparents, parents and children; of each a number and the number of the one above.
struct Family {
  explicit Family(std::uint32_t flags) {
    for (const char* const name : {"Old", "Mid", "Young"}) {
      TableBuilder table(file.file());
      table.Column("Id", ColumnType::Long)
          .Column("Above", ColumnType::Long)
          .Column("Name", ColumnType::Text, 40)
          .Index({0}, kPrimaryFlags, true);
      file.AddTable(name, table, {{"Name", "AllowZeroLength"}});
    }
    file.Relate({"MidOld", "Mid", "Old", {{"Above", "Id"}}, flags});
    file.Relate({"YoungMid", "Young", "Mid", {{"Above", "Id"}}, flags});
  }

  Result<RowPointer> Insert(std::string_view table, Value id, Value above = Null()) {
    std::vector<Value> row = {std::move(id), std::move(above), "x"};
    return file.table(table).Insert(row);
  }
  RowPointer Put(std::string_view table, int id, Value above = Null()) {
    const Result<RowPointer> at = Insert(table, Number(id), std::move(above));
    EXPECT_TRUE(at.ok()) << at.error().description;
    return at.value_or({});
  }
  Status Set(std::string_view table, RowPointer at, std::size_t position, Value value) {
    const ColumnChange change{.position = position, .value = std::move(value)};
    return file.table(table).Update(at, std::span(&change, 1));
  }
  /// "1<2 3<" : number and the one above, in the order of the rows.
  std::string Rows(std::string_view table) {
    std::string text;
    TableStore& store = file.table(table).store();
    RowScan scan(store.rows());
    while (scan.Next().value_or(false)) {
      const std::vector<Value> row = store.Values(scan.bytes(), scan.page()).value_or({});
      const auto shown = [](const Value& value) {
        return IsNull(value) ? std::string() : std::to_string(std::get<std::int32_t>(value));
      };
      text += (text.empty() ? "" : " ") + shown(row[0]) + "<" + shown(row[1]);
    }
    return text;
  }
  std::string All() { return Rows("Old") + " | " + Rows("Mid") + " | " + Rows("Young"); }

  CatalogFile file;
};

/// 1 with 10 and 11 below it, 2 with 20; 10 has 100 and 101.
struct Grown : Family {
  explicit Grown(std::uint32_t flags) : Family(flags) {
    old1 = Put("Old", 1);
    old2 = Put("Old", 2);
    mid10 = Put("Mid", 10, Number(1));
    Put("Mid", 11, Number(1));
    Put("Mid", 20, Number(2));
    young100 = Put("Young", 100, Number(10));
    Put("Young", 101, Number(10));
  }
  RowPointer old1, old2, mid10, young100;
};

constexpr const char* kGrown = "1< 2< | 10<1 11<1 20<2 | 100<10 101<10";

TEST(References, LetsInWhatRefersToARowOrToNothing) {
  struct Row {
    const char* what;
    Value above;
    int number;
  };
  const Row rows[] = {
      {"a row that is there", Number(1), 0},
      {"nothing", Null(), 0},
      {"a row that is not there", Number(7), kNoRelatedRecord},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    Family family(0);
    family.Put("Old", 1);
    const RowPointer other = family.Put("Mid", 1);
    const Result<RowPointer> inserted = family.Insert("Mid", Number(5), row.above);
    EXPECT_EQ(inserted.number(), row.number);
    EXPECT_EQ(family.Set("Mid", other, 1, row.above).number(), row.number);
    if (row.number == 0) continue;
    EXPECT_THAT(inserted.error().description, HasSubstr("'Old'"));
    EXPECT_EQ(family.All(), "1< | 1< | ");
  }
}

TEST(References, GoThroughTheIndexes) {
  Family family(0);
  for (int id = 1; id <= 3000; ++id) family.Put("Old", id);
  family.Put("Mid", 1, Number(1));
  family.file.file().Commit();
  const std::uint64_t before = family.file.file().pager().counters().pages_read;
  for (int id = 2; id <= 50; ++id) family.Put("Mid", id, Number(id * 50));
  EXPECT_EQ(family.file.file().pager().counters().pages_read, before);
  EXPECT_EQ(family.Insert("Mid", Number(60), Number(3001)).number(), kNoRelatedRecord);
}

struct ChangeCase {
  const char* what;
  std::uint32_t flags;
  Status (*change)(Grown&);
  int number;
  const char* after;  ///< nullptr: as before
};

const ChangeCase kChangeCases[] = {
    {"a row that nothing refers to goes", 0,
     [](Grown& g) { return g.file.table("Young").Delete(g.young100); }, 0,
     "1< 2< | 10<1 11<1 20<2 | 101<10"},
    {"a row that others refer to stays", 0,
     [](Grown& g) { return g.file.table("Old").Delete(g.old1); }, kRelatedRecordsExist, nullptr},
    {"its key as well", 0, [](Grown& g) { return g.Set("Old", g.old1, 0, Number(9)); },
     kRelatedRecordsExist, nullptr},
    {"but not its other fields", 0, [](Grown& g) { return g.Set("Old", g.old1, 2, "y"); }, 0,
     nullptr},
    {"the same key is no change", 0, [](Grown& g) { return g.Set("Old", g.old1, 0, Number(1)); }, 0,
     nullptr},
    {"a deletion goes down all levels", kCascadesDeletes,
     [](Grown& g) { return g.file.table("Old").Delete(g.old1); }, 0, "2< | 20<2 | "},
    {"a deletion begins in the middle", kCascadesDeletes,
     [](Grown& g) { return g.file.table("Mid").Delete(g.mid10); }, 0, "1< 2< | 11<1 20<2 | "},
    {"a deletion that cascades lets no key change", kCascadesDeletes,
     [](Grown& g) { return g.Set("Old", g.old1, 0, Number(9)); }, kRelatedRecordsExist, nullptr},
    {"a new key goes to those below", kCascadesUpdates,
     [](Grown& g) { return g.Set("Old", g.old1, 0, Number(9)); }, 0,
     "9< 2< | 10<9 11<9 20<2 | 100<10 101<10"},
    {"a new key in the middle", kCascadesUpdates,
     [](Grown& g) { return g.Set("Mid", g.mid10, 0, Number(12)); }, 0,
     "1< 2< | 12<1 11<1 20<2 | 100<12 101<12"},
    {"a key that is taken", kCascadesUpdates,
     [](Grown& g) { return g.Set("Old", g.old1, 0, Number(2)); }, kDuplicateKey, nullptr},
    {"updates that cascade let no row go", kCascadesUpdates,
     [](Grown& g) { return g.file.table("Old").Delete(g.old1); }, kRelatedRecordsExist, nullptr},
    {"a deletion that sets null", kSetsNullOnDelete,
     [](Grown& g) { return g.file.table("Old").Delete(g.old1); }, 0,
     "2< | 10< 11< 20<2 | 100<10 101<10"},
};

TEST(References, AreKeptWhenRowsChange) {
  for (const ChangeCase& row : kChangeCases) {
    SCOPED_TRACE(row.what);
    Grown grown(row.flags);
    ASSERT_EQ(grown.All(), kGrown);
    const Status done = row.change(grown);
    EXPECT_EQ(done.number(), row.number) << (done.ok() ? "" : done.error().description);
    EXPECT_EQ(grown.All(), row.after == nullptr ? kGrown : row.after);
    if (done.number() == kRelatedRecordsExist) {
      EXPECT_THAT(done.error().description, HasSubstr("'Mid'"));
    }
    // A refusal leaves the transaction as it was.
    EXPECT_TRUE(grown.Insert("Old", Number(77)).ok());
  }
}

/// People and their chiefs, in one table.
struct Staff {
  explicit Staff(std::uint32_t flags) {
    TableBuilder table(file.file());
    table.Column("Id", ColumnType::Long).Column("Chief", ColumnType::Long);
    table.Index({0}, kPrimaryFlags, true);
    file.AddTable("Staff", table);
    file.Relate({"Chiefs", "Staff", "Staff", {{"Chief", "Id"}}, flags});
  }
  RowPointer Put(int id, Value chief) {
    std::vector<Value> row = {Number(id), std::move(chief)};
    const Result<RowPointer> at = file.table("Staff").Insert(row);
    EXPECT_TRUE(at.ok()) << at.error().description;
    return at.value_or({});
  }
  Status Set(RowPointer at, std::vector<ColumnChange> changes) {
    return file.table("Staff").Update(at, changes);
  }
  std::vector<Value> Fetch(RowPointer at) {
    return file.table("Staff").store().Fetch(at).value_or({});
  }
  std::uint32_t Count() { return file.table("Staff").store().RowCount().value_or(99); }

  CatalogFile file;
};

TEST(References, ToTheTableItself) {
  Staff staff(kCascadesUpdates | kCascadesDeletes);
  const RowPointer head = staff.Put(1, Number(1));  // refers to the row that comes in
  const RowPointer second = staff.Put(2, Number(1));
  const RowPointer third = staff.Put(3, Number(2));
  EXPECT_TRUE(staff.Set(head, {{0, Number(10)}}).ok());
  EXPECT_EQ(staff.Fetch(head), (std::vector<Value>{Number(10), Number(10)}));
  EXPECT_EQ(staff.Fetch(second), (std::vector<Value>{Number(2), Number(10)}));
  EXPECT_EQ(staff.Fetch(third), (std::vector<Value>{Number(3), Number(2)}));
  EXPECT_TRUE(staff.file.table("Staff").Delete(head).ok());
  EXPECT_EQ(staff.Count(), 0U);
}

TEST(References, InACircleGoTogether) {
  Staff staff(kCascadesUpdates | kCascadesDeletes);
  const RowPointer first = staff.Put(1, Null());
  const RowPointer second = staff.Put(2, Number(1));
  const RowPointer third = staff.Put(3, Number(2));
  ASSERT_TRUE(staff.Set(first, {{1, Number(3)}}).ok());
  EXPECT_TRUE(staff.Set(second, {{0, Number(20)}}).ok());
  EXPECT_EQ(staff.Fetch(third)[1], Number(20));
  EXPECT_TRUE(staff.file.table("Staff").Delete(third).ok());
  EXPECT_EQ(staff.Count(), 0U);
}

TEST(References, OfARowToItselfHoldNothingBack) {
  Staff staff(0);
  const RowPointer head = staff.Put(1, Number(1));
  EXPECT_EQ(staff.Set(head, {{0, Number(2)}}).number(), kRelatedRecordsExist);
  EXPECT_TRUE(staff.Set(head, {{0, Number(2)}, {1, Number(2)}}).ok());
  EXPECT_EQ(staff.Fetch(head), (std::vector<Value>{Number(2), Number(2)}));
  EXPECT_TRUE(staff.file.table("Staff").Delete(head).ok());
  EXPECT_EQ(staff.Count(), 0U);
}

TEST(References, GoManyLevelsDown) {
  constexpr int kLevels = 3000;
  Staff staff(kCascadesDeletes);
  const RowPointer head = staff.Put(1, Null());
  for (int id = 2; id <= kLevels; ++id) staff.Put(id, Number(id - 1));
  EXPECT_TRUE(staff.file.table("Staff").Delete(head).ok());
  EXPECT_EQ(staff.Count(), 0U);
}

// Two columns that refer to themselves crosswise: each new key asks for another one.
TEST(References, ThatNeverSettleAreRefused) {
  CatalogFile file;
  TableBuilder table(file.file());
  table.Column("X", ColumnType::Long).Column("Y", ColumnType::Long).Index({1, 0}, kUniqueIndex);
  file.AddTable("Cross", table);
  file.Relate({"Crosswise", "Cross", "Cross", {{"X", "Y"}, {"Y", "X"}}, kCascadesUpdates});
  std::vector<Value> row = {Number(1), Number(1)};
  const Result<RowPointer> at = file.table("Cross").Insert(row);
  ASSERT_TRUE(at.ok()) << at.error().description;
  const ColumnChange change{.position = 0, .value = Number(5)};
  const Status done = file.table("Cross").Update(at.value(), std::span(&change, 1));
  EXPECT_EQ(done.number(), kInvalidOperation);
  EXPECT_EQ(file.table("Cross").store().Fetch(at.value()).value_or({}), row);
}

}  // namespace
}  // namespace zent::jet::testing
