#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "jet/fakes/StoreChecks.h"
#include "jet/fakes/TableBuilder.h"
#include "jet/format/JetErrors.h"
#include "jet/store/TableStore.h"

namespace zent::jet::testing {
namespace {

constexpr std::uint8_t kPrimaryFlags = kUniqueIndex | kRequiredIndex;

enum Position : std::uint8_t { Id, Name, City, Born, Member, Note };

/// A table of people: AutoNumber key, unique name, city and birthday together, notes.
struct People {
  RowPointer Insert(std::vector<Value> values) {
    const Result<RowPointer> at = table->Insert(values);
    EXPECT_TRUE(at.ok()) << at.error().description;
    return at.value_or({});
  }
  std::vector<Value> Fetch(RowPointer at) { return table->Fetch(at).value_or({}); }
  TableRows Check() { return ExpectRightTable(file, *table); }

  StoreFile file;
  std::unique_ptr<TableStore> table = TableBuilder(file)
                                          .AutoNumber("Id")
                                          .Column("Name", ColumnType::Text, 100)
                                          .Column("City", ColumnType::Text, 60)
                                          .Column("Born", ColumnType::Date)
                                          .Column("Member", ColumnType::Bool)
                                          .Column("Note", ColumnType::Memo)
                                          .Index({Id}, kPrimaryFlags, true)
                                          .Index({Name}, kUniqueIndex)
                                          .Index({City, ~Born})
                                          .Index({Born}, kIgnoreNullsIndex)
                                          .Build();
};

std::vector<Value> Person(Value name, Value city = Null(), Value born = Null(),
                          Value note = Null()) {
  return {Null(), std::move(name), std::move(city), std::move(born), true, std::move(note)};
}

TEST(TableStore, GivesBackWhatWasInserted) {
  People people;
  const std::string note(9000, 'n');
  std::vector<Value> values = Person("Ada", "London", Date{-30000.25}, note);
  const Result<RowPointer> at = people.table->Insert(values);
  ASSERT_TRUE(at.ok()) << at.error().description;
  EXPECT_EQ(values[Id], Value(std::int32_t{1}));
  EXPECT_EQ(people.Fetch(at.value()), values);
  const TableRows expected = {{at.value(), values}};
  EXPECT_EQ(people.Check(), expected);
  const Result<StoredRow> row = people.table->rows().Fetch(at.value());
  EXPECT_EQ(people.table->Field(row.value().bytes, City, 1).value_or(Null()), Value("London"));
}

struct NumberCase {
  const char* what;
  Value given;
  std::int32_t stored;
  std::int32_t last;
};
const NumberCase kNumbers[] = {
    {"the first", Null(), 1, 1},
    {"a given one beyond the last", std::int32_t{40}, 40, 40},
    {"goes on behind it", Null(), 41, 41},
    {"a given one below", std::int32_t{-5}, -5, 41},
    {"goes on as before", Null(), 42, 42},
};
TEST(TableStore, NumbersRows) {
  People people;
  for (const NumberCase& row : kNumbers) {
    SCOPED_TRACE(row.what);
    std::vector<Value> values = Person(std::string("n") + row.what);
    values[Id] = row.given;
    ASSERT_TRUE(people.table->Insert(values).ok());
    EXPECT_EQ(values[Id], Value(row.stored));
    EXPECT_EQ(people.table->LastAutoNumber().value_or(0), row.last);
  }
  people.Check();
}

struct RefusalCase {
  const char* what;
  std::vector<Value> values;
  int error;
};
std::vector<RefusalCase> Refusals() {
  std::vector<Value> same_id = Person("Grace");
  same_id[Id] = std::int32_t{1};
  return {
      {"a name that is taken", Person("Ada"), kDuplicateKey},
      {"a name that is taken in other letters", Person("ADA  "), kDuplicateKey},
      {"a number that is taken", same_id, kDuplicateKey},
      {"a text that is too long", Person(std::string(51, 'x')), kFieldTooSmall},
      {"a number for a text", Person(std::int32_t{5}), kDataTypeConversion},
      {"a text for a date", Person("Grace", "x", "y"), kDataTypeConversion},
      {"null where a value is required", Person("Grace", Null()), kValueRequired},
      {"no text where some is required", Person("Grace", ""), kZeroLengthNotAllowed},
      {"too few values", {Null()}, kInvalidArgument},
  };
}
TEST(TableStore, RefusesARowBeforeAnythingChanges) {
  People people;
  people.table->SetRules(City, {.required = true, .empty_text = ColumnRules::EmptyText::Refused});
  const RowPointer ada = people.Insert(Person("Ada", "London"));
  const RowPointer bob = people.Insert(Person("Bob", "Paris"));
  const TableRows before = people.Check();
  const std::uint64_t pages = people.file.pager().page_count();
  for (RefusalCase row : Refusals()) {
    SCOPED_TRACE(row.what);
    if (row.values.size() > City && row.error != kValueRequired &&
        row.error != kZeroLengthNotAllowed) {
      row.values[City] = "Rome";
    }
    EXPECT_EQ(people.table->Insert(row.values).number(), row.error);
    std::vector<ColumnChange> changes;
    for (std::size_t i = 1; i < row.values.size(); ++i) changes.push_back({i, row.values[i]});
    if (row.values.size() > 1 && !IsNull(row.values[Id])) changes = {{Id, row.values[Id]}};
    if (row.values.size() == 1) changes = {{99, Null()}};
    const int expected = row.values.size() == 1 ? kItemNotFound : row.error;
    EXPECT_EQ(people.table->Update(bob, changes).number(), expected);
  }
  EXPECT_EQ(people.table->Update(ada, std::vector<ColumnChange>{{Id, Null()}}).number(),
            kNullInKey);
  EXPECT_EQ(people.Check(), before);
  EXPECT_EQ(people.file.pager().page_count(), pages);
  people.file.Commit();  // the transaction is as good as before
}

TEST(TableStore, StoresEmptyTextAsTheRulesSay) {
  People people;
  const RowPointer kept = people.Insert(Person("a", ""));
  people.table->SetRules(City, {.empty_text = ColumnRules::EmptyText::BecomesNull});
  const RowPointer null = people.Insert(Person("b", ""));
  EXPECT_EQ(people.Fetch(kept)[City], Value(""));
  EXPECT_EQ(people.Fetch(null)[City], Value(Null()));
}

TEST(TableStore, TakesAnyNumberOfNullsIntoAUniqueIndex) {
  People people;
  people.Insert(Person(Null()));
  people.Insert(Person(Null()));
  EXPECT_EQ(people.Check().size(), 2U);
}

TEST(TableStore, RefusesARowThatNoPageTakes) {
  StoreFile file;
  TableBuilder builder(file);
  for (int i = 0; i < 20; ++i) builder.Column("T" + std::to_string(i), ColumnType::Text, 510);
  const std::unique_ptr<TableStore> table = builder.Build();
  std::vector<Value> values(20, Value(std::string(200, 'x')));
  EXPECT_EQ(table->Insert(values).number(), kRecordTooLarge);
  EXPECT_TRUE(ExpectRightTable(file, *table).empty());
}

TEST(TableStore, StoresManyShortMemosOutsideOfARowThatHasNoRoom) {
  constexpr std::size_t kMemos = 64;
  StoreFile file;
  TableBuilder builder(file);
  builder.AutoNumber("Id").Column("Name", ColumnType::Text, 510);
  for (std::size_t i = 0; i < kMemos; ++i) {
    builder.Column("Memo" + std::to_string(i), ColumnType::Memo);
  }
  const std::unique_ptr<TableStore> table = builder.Build();
  // 50 bytes each, kept in the row as long as there is room: with the name there is none.
  std::vector<Value> values(2 + kMemos, Null());
  for (std::size_t i = 0; i < 60; ++i) values[2 + i] = Text(25, static_cast<char>('a' + i % 26));
  const Result<RowPointer> first = table->Insert(values);
  ASSERT_TRUE(first.ok()) << first.error().description;
  TableRows expected = {{first.value(), values}};
  EXPECT_EQ(ExpectRightTable(file, *table), expected);
  values[1] = Text(255, 'n');
  for (std::size_t i = 0; i < kMemos; ++i) values[2 + i] = Text(30, 'm');
  values[0] = Null();
  const Result<RowPointer> second = table->Insert(values);
  ASSERT_TRUE(second.ok()) << second.error().description;
  expected[second.value()] = values;
  const ColumnChange longer[] = {{1, Text(255, 'y')}};
  ASSERT_TRUE(table->Update(first.value(), longer).ok());
  expected[first.value()][1] = Text(255, 'y');
  EXPECT_EQ(ExpectRightTable(file, *table), expected);

  const ColumnChange shorter[] = {{2, Text("brief")}, {3, Null()}};
  ASSERT_TRUE(table->Update(second.value(), shorter).ok());
  ASSERT_TRUE(table->Delete(first.value()).ok());
  expected.erase(first.value());
  expected[second.value()][2] = Text("brief");
  expected[second.value()][3] = Null();
  EXPECT_EQ(ExpectRightTable(file, *table), expected);
}

TEST(TableStore, ChangesOnlyWhatAnUpdateNames) {
  People people;
  const RowPointer at = people.Insert(Person("Ada", "London", Date{1.5}, std::string(500, 'n')));
  people.Insert(Person("Bob", "Paris"));
  ASSERT_TRUE(people.table->Update(at, std::vector<ColumnChange>{{City, "Rome"}}).ok());
  EXPECT_EQ(people.Fetch(at)[City], Value("Rome"));
  EXPECT_EQ(people.Fetch(at)[Note], Value(std::string(500, 'n')));
  // Its own key is no duplicate.
  ASSERT_TRUE(people.table->Update(at, std::vector<ColumnChange>{{Name, "ADA"}}).ok());
  ASSERT_TRUE(people.table->Update(at, std::vector<ColumnChange>{{Note, Null()}}).ok());
  EXPECT_EQ(people.Check().at(at)[Name], Value("ADA"));
}

TEST(TableStore, KeepsItsCountersInTheFile) {
  People people;
  people.Insert(Person("Ada", "Rome"));
  people.file.Commit();
  const RowPointer bob = people.Insert(Person("Bob", "Rome"));
  ASSERT_TRUE(people.table->Delete(bob).ok());
  EXPECT_EQ(people.table->Delete(bob).number(), kRecordDeleted);
  EXPECT_EQ(people.table->RowCount().value_or(9), 1U);
  EXPECT_EQ(people.table->LastAutoNumber().value_or(9), 2);
  const Result<StoredDefinition> stored = ReadDefinition(people.file.pager(), people.table->page());
  EXPECT_EQ(stored.value().table.real_indexes[1].distinct_keys, 2U);
  EXPECT_EQ(stored.value().table.real_indexes[2].distinct_keys, 1U);  // ("Rome", null) twice
  people.file.Rollback();
  EXPECT_EQ(people.table->RowCount().value_or(9), 1U);
  EXPECT_EQ(people.table->LastAutoNumber().value_or(9), 1);
  people.Check();
}

TEST(TableStore, DoomsTheTransactionOfAChangeThatFailsHalfWay) {
  People people;
  const RowPointer at = people.Insert(Person("Ada", "Rome"));
  people.file.Commit();
  // The last index lost its page: the row is on its way when that shows.
  people.file.Overwrite(people.table->definition().real_indexes[2].root, 4, {0x77});
  std::vector<Value> values = Person("Bob", "Paris", Date{1});
  EXPECT_EQ(people.table->Insert(values).number(), kCannotOpenDatabase);
  EXPECT_FALSE(people.file.pager().Commit().ok());
  EXPECT_EQ(people.Fetch(at)[Name], Value("Ada"));
  EXPECT_EQ(people.table->RowCount().value_or(9), 1U);
}

/// Empty for null.
std::string TextOf(const Value& value) {
  const Text* const text = std::get_if<Text>(&value);
  return text == nullptr ? std::string() : *text;
}

Value RandomValue(std::mt19937& random, std::size_t position, unsigned step) {
  if (random() % 6 == 0) return Null();
  switch (position) {
    case Name:
      return "name " + std::to_string(random() % 4000);
    case City:
      return std::string(1 + random() % 30, static_cast<char>('a' + random() % 5));
    case Born:
      return Date{static_cast<double>(random() % 500)};
    default:
      return std::string(random() % (step % 7 == 0 ? 12000 : 200), 'n');
  }
}

TEST(TableStore, EqualsAModelAfterRandomChanges) {
  People people;
  std::mt19937 random(13);
  TableRows model;
  std::set<std::string> names;  // those in use; null is no name
  std::size_t refused = 0;
  for (unsigned step = 0; step < 2500; ++step) {
    const unsigned what = static_cast<unsigned>(random() % 10);
    const auto at = model.empty() ? model.end()
                                  : std::next(model.begin(),
                                              static_cast<std::ptrdiff_t>(random() % model.size()));
    if (at == model.end() || what < (step < 1500 ? 6U : 2U)) {
      std::vector<Value> values = Person(Null());
      for (const std::size_t i : {Name, City, Born, Note}) values[i] = RandomValue(random, i, step);
      const bool taken = names.contains(TextOf(values[Name]));
      const Result<RowPointer> done = people.table->Insert(values);
      ASSERT_EQ(done.number(), taken ? kDuplicateKey : 0);
      refused += taken ? 1 : 0;
      if (taken) continue;
      if (!IsNull(values[Name])) names.insert(TextOf(values[Name]));
      model.emplace(done.value(), values);
    } else if (what < 8) {
      const std::size_t column = std::array{Name, City, Born, Note}.at(random() % 4);
      const ColumnChange change{column, RandomValue(random, column, step)};
      const bool taken = column == Name && change.value != at->second[Name] &&
                         names.contains(TextOf(change.value));
      ASSERT_EQ(people.table->Update(at->first, {&change, 1}).number(), taken ? kDuplicateKey : 0);
      if (taken) continue;
      if (column == Name) {
        names.erase(TextOf(at->second[Name]));
        if (!IsNull(change.value)) names.insert(TextOf(change.value));
      }
      at->second[column] = change.value;
    } else {
      ASSERT_TRUE(people.table->Delete(at->first).ok());
      names.erase(TextOf(at->second[Name]));
      model.erase(at);
    }
    if (step % 500 == 499) {
      EXPECT_EQ(people.Check(), model);
      people.file.Commit();
    }
  }
  EXPECT_GT(refused, 10U);
}

TEST(TableStore, RefusesTextWhoseOrderItDoesNotKnow) {
  StoreFile file;
  const std::unique_ptr<TableStore> built =
      TableBuilder(file).Column("Name", ColumnType::Text, 20).Build();
  file.OverwriteU32(built->page(), 63 + 11, 0x01000409);  // collation of the only column
  const std::unique_ptr<TableStore> table =
      std::move(TableStore::Open(file.maps(), built->page()).value());
  std::vector<Value> values = {"x"};
  EXPECT_EQ(table->Insert(values).number(), kReadOnly);
  EXPECT_EQ(built->Insert(values).number(), 0);
  EXPECT_EQ(table->Delete({1, 0}).number(), kReadOnly);
}

TEST(TableStore, OpensNoDefinitionThatIsDamaged) {
  StoreFile file;
  const PageNumber page = file.NewPage();
  EXPECT_EQ(TableStore::Open(file.maps(), page).number(), kCannotOpenDatabase);
  EXPECT_EQ(TableStore::Open(file.maps(), kGlobalMapPage).number(), kCannotOpenDatabase);
  EXPECT_EQ(TableStore::Open(file.maps(), 900).number(), kCannotOpenDatabase);
}

}  // namespace
}  // namespace zent::jet::testing
