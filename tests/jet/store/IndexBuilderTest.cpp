#include <fmt/format.h>
#include <gtest/gtest.h>

#include "jet/fakes/StoreChecks.h"
#include "jet/fakes/StoreFile.h"
#include "jet/format/JetErrors.h"
#include "jet/store/IndexBuilder.h"

namespace zent::jet::testing {
namespace {

struct Index {
  /// Entry `i` of those whose keys have `key_size` bytes: the number, first or last in the key.
  static Entry EntryOf(std::size_t i, std::size_t key_size, bool number_first) {
    const std::string number = fmt::format("{:06}", i);
    const std::string rest(key_size - number.size(), 'k');
    return {number_first ? number + rest : rest + number,
            {.page = static_cast<PageNumber>(i + 10), .row = 7}};
  }

  void Check() {
    const std::vector<PageNumber> pages = ExpectRightTree(file, tree, model);
    std::set<PageNumber> named(pages.begin(), pages.end());
    named.insert({table, map.page});
    ExpectAllPagesNamed(file, named);
    page_count = pages.size();
  }

  StoreFile file;
  PageNumber table = file.NewPage();
  RowPointer map = file.NewMap();
  IndexTree tree = IndexTree::Create(file.maps(), table, map).value();
  std::set<Entry> model;
  std::size_t page_count = 0;
};

struct BuildCase {
  const char* what;
  std::size_t count;
  std::size_t key_size;
  bool number_first;
  std::size_t pages;
};
constexpr BuildCase kBuilds[] = {
    {"nothing", 0, 10, true, 1},
    {"one entry", 1, 10, true, 1},
    {"a full leaf", 258, 10, true, 1},
    {"one entry more", 259, 10, true, 3},
    {"common prefixes are left out", 800, 100, false, 3},
    {"two levels", 20000, 10, true, 79},
    {"the longest keys: a high tree", 400, kMaxIndexKey, true, 230},
};
TEST(IndexBuilder, FillsPagesFromLeftToRight) {
  for (const BuildCase& row : kBuilds) {
    SCOPED_TRACE(row.what);
    Index index;
    IndexBuilder builder(index.tree);
    for (std::size_t i = 0; i < row.count; ++i) {
      const Entry entry = Index::EntryOf(i, row.key_size, row.number_first);
      ASSERT_TRUE(builder.Add(entry.key, entry.row).ok());
      index.model.insert(entry);
    }
    ASSERT_TRUE(builder.Finish().ok());
    index.Check();
    EXPECT_LE(index.page_count, row.pages);
  }
}

TEST(IndexBuilder, LeavesATreeThatGrowsAndShrinks) {
  Index index;
  IndexBuilder builder(index.tree);
  for (std::size_t i = 0; i < 400; i += 2) {
    const Entry entry = Index::EntryOf(i, 900, true);
    ASSERT_TRUE(builder.Add(entry.key, entry.row).ok());
    index.model.insert(entry);
  }
  ASSERT_TRUE(builder.Finish().ok());
  for (std::size_t i = 1; i < 400; i += 2) {
    const Entry entry = Index::EntryOf(i, 900, true);
    ASSERT_TRUE(index.tree.Insert(entry.key, entry.row).ok());
    index.model.insert(entry);
  }
  index.Check();
  while (!index.model.empty()) {
    const Entry entry = *std::prev(index.model.end());
    ASSERT_TRUE(index.tree.Delete(entry.key, entry.row).ok());
    index.model.erase(entry);
  }
  index.Check();
  EXPECT_EQ(index.page_count, 1U);
}

TEST(IndexBuilder, RefusesWhatIsOutOfOrderOrTooLong) {
  Index index;
  IndexBuilder builder(index.tree);
  ASSERT_TRUE(builder.Add("b", {20, 1}).ok());
  EXPECT_EQ(builder.Add("a", {20, 2}).number(), kInvalidArgument);
  EXPECT_EQ(builder.Add("b", {20, 1}).number(), kInvalidArgument);
  EXPECT_EQ(builder.Add(std::string(kMaxIndexKey + 1, 'c'), {20, 3}).number(), kRecordTooLarge);
  EXPECT_TRUE(builder.Add("b", {20, 2}).ok());
  ASSERT_TRUE(builder.Finish().ok());
  index.model = {{"b", {20, 1}}, {"b", {20, 2}}};
  index.Check();
}

}  // namespace
}  // namespace zent::jet::testing
