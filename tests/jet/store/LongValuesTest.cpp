#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "jet/fakes/StoreChecks.h"
#include "jet/fakes/StoreFile.h"
#include "jet/format/JetErrors.h"
#include "jet/store/LongValues.h"

namespace zent::jet::testing {
namespace {

struct Column {
  Column() : maps{.column = 3, .owned = file.NewMap(), .free = file.NewMap()} {}

  std::string Written(std::string_view value) {
    Result<std::string> field = values.Write(AsBytes(value));
    EXPECT_TRUE(field.ok()) << field.error().description;
    return field.value_or({});
  }
  Result<std::string> Read(const std::string& field) {
    return ReadLongValue(file.pager(), AsBytes(field), 99);
  }
  LongValueKind KindOf(const std::string& field) {
    return ParseLongValue(AsBytes(field), 99).value().kind;
  }
  RowPages::Owner owner() const {
    return {
        .number = kLongValueOwner, .owned = maps.owned, .free = maps.free, .reuses_slots = true};
  }

  StoreFile file;
  LongValueMaps maps;
  LongValues values{file.maps(), maps};
};

struct FormCase {
  const char* what;
  std::size_t size;
  LongValueKind kind;
  std::size_t pages;
};
constexpr FormCase kForms[] = {
    {"empty", 0, LongValueKind::Inline, 0},
    {"the longest inline value", 64, LongValueKind::Inline, 0},
    {"the shortest in a row", 65, LongValueKind::Single, 1},
    {"the longest in a row", 4076, LongValueKind::Single, 1},
    {"the shortest chain", 4077, LongValueKind::Chain, 2},
    {"two full rows", 8144, LongValueKind::Chain, 2},
    {"two full rows and a byte", 8145, LongValueKind::Chain, 3},
    {"a picture", 300000, LongValueKind::Chain, 74},
};
TEST(LongValues, TakesTheFormThatTheLengthAsksFor) {
  for (const FormCase& row : kForms) {
    SCOPED_TRACE(row.what);
    Column column;
    const std::string value = SampleBytes(row.size, 1);
    const std::string field = column.Written(value);
    EXPECT_EQ(column.KindOf(field), row.kind);
    EXPECT_EQ(column.Read(field).value_or("not read"), value);
    EXPECT_EQ(ExpectRightRowPages(column.file, column.owner()).size(), row.pages);
    ASSERT_TRUE(column.values.Release(AsBytes(field), 99).ok());
    ExpectAllPagesNamed(column.file, {column.maps.owned.page});
  }
}

TEST(LongValues, SharesPagesAmongValues) {
  Column column;
  std::vector<std::string> fields;
  for (unsigned i = 0; i < 30; ++i) fields.push_back(column.Written(SampleBytes(100 + i, i)));
  EXPECT_EQ(ExpectRightRowPages(column.file, column.owner()).size(), 1U);
  ASSERT_TRUE(column.values.Release(AsBytes(fields[4]), 99).ok());
  EXPECT_FALSE(column.Read(fields[4]).ok());
  fields[4] = column.Written(SampleBytes(104, 4));
  for (unsigned i = 0; i < 30; ++i) {
    EXPECT_EQ(column.Read(fields[i]).value_or(""), SampleBytes(100 + i, i));
  }
}

TEST(LongValues, EqualsAModelAfterRandomChanges) {
  Column column;
  std::mt19937 random(3);
  std::map<std::string, std::string> model;  // field, value
  for (unsigned step = 0; step < 1500; ++step) {
    if (model.size() < 5 || random() % 2 == 0) {
      const std::size_t size = 65 + random() % (random() % 4 == 0 ? 20000 : 1500);
      const std::string value = SampleBytes(size, step);
      ASSERT_TRUE(model.emplace(column.Written(value), value).second);
    } else {
      const auto at =
          std::next(model.begin(), static_cast<std::ptrdiff_t>(random() % model.size()));
      ASSERT_TRUE(column.values.Release(AsBytes(at->first), 99).ok());
      model.erase(at);
    }
    if (step % 100 != 0) continue;
    for (const auto& [field, value] : model) EXPECT_EQ(column.Read(field).value_or(""), value);
    const std::vector<PageNumber> owned = ExpectRightRowPages(column.file, column.owner());
    std::set<PageNumber> named(owned.begin(), owned.end());
    named.insert(column.maps.owned.page);
    ExpectAllPagesNamed(column.file, named);
  }
}

/// A field of `kind` and `length` whose first row is `first`.
std::string FieldOf(LongValueKind kind, std::uint32_t length, RowPointer first) {
  const auto bytes = LongValueField(kind, length, first);
  return std::string(AsText(bytes));
}

struct DamageCase {
  const char* what;
  LongValueKind kind;
  std::uint32_t length;
  RowPointer first;
};
// Page 7 has, in slot 0, a row of 200 bytes; in slots 1 to 3 what the test says.
constexpr DamageCase kDamage[] = {
    {"longer than the file", LongValueKind::Chain, 0x3FFFFFFF, {7, 0}},
    {"a row that is too short", LongValueKind::Single, 201, {7, 0}},
    {"no such slot", LongValueKind::Single, 100, {7, 9}},
    {"a page beyond the end", LongValueKind::Single, 100, {900, 0}},
    {"a page of maps", LongValueKind::Single, 10, {6, 0}},
    {"page 0", LongValueKind::Single, 10, {0, 0}},
    {"a chain that ends early", LongValueKind::Chain, 500, {7, 1}},
    {"a chain that names itself", LongValueKind::Chain, 5000, {7, 2}},
    {"a chain with an empty row", LongValueKind::Chain, 100, {7, 3}},
};
TEST(LongValues, RefusesDamage) {
  Column column;
  column.Written(SampleBytes(200, 1));
  std::string chain = SampleBytes(200, 2);
  chain.replace(0, 4, std::string(4, '\0'));
  column.Written(chain);
  chain.replace(0, 4, std::string("\x02\x07\0\0", 4));
  column.Written(chain);
  const std::string pointer("\0\x07\0\0", 4);  // to the row of 200 bytes, and nothing else
  RowPages pages(column.file.maps(), column.owner());
  ASSERT_TRUE(pages.Insert(AsBytes(pointer), SlotKind::Row).ok());
  ASSERT_EQ(column.file.maps().Pages(column.maps.owned).value(), std::vector<PageNumber>{7});
  for (const DamageCase& row : kDamage) {
    SCOPED_TRACE(row.what);
    const std::string field = FieldOf(row.kind, row.length, row.first);
    EXPECT_EQ(column.Read(field).number(), kCannotOpenDatabase);
  }
  const std::string loop = FieldOf(LongValueKind::Chain, 150, {7, 2});
  EXPECT_EQ(column.values.Release(AsBytes(loop), 99).number(), kCannotOpenDatabase);
  const std::string whole = FieldOf(LongValueKind::Single, 150, {7, 0});
  EXPECT_EQ(column.Read(whole).value_or(""), SampleBytes(200, 1).substr(0, 150));
}

TEST(LongValues, ReleasesNothingOfAnotherColumn) {
  Column column;
  const std::string field = column.Written(SampleBytes(200, 1));
  LongValues other(column.file.maps(),
                   {.column = 4, .owned = column.file.NewMap(), .free = column.file.NewMap()});
  EXPECT_EQ(other.Release(AsBytes(field), 99).number(), kCannotOpenDatabase);
  EXPECT_EQ(column.Read(field).value_or(""), SampleBytes(200, 1));
}

}  // namespace
}  // namespace zent::jet::testing
