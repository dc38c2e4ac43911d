#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "jet/fakes/StoreChecks.h"
#include "jet/fakes/StoreFile.h"
#include "jet/store/IndexTree.h"

/// An index in a file of its own, beside a model of its entries.
namespace zent::jet::testing {

/// A key of the form that a long column has.
inline std::string LongKey(std::uint32_t number) {
  std::string key = "\x7F";
  for (const unsigned shift : {24U, 16U, 8U, 0U}) {
    key += static_cast<char>((number >> shift) & 0xFFU);
  }
  return key;
}

inline Entry EntryOf(std::string key, std::uint32_t number) {
  return {std::move(key),
          {.page = number / 200 + 10, .row = static_cast<std::uint8_t>(number % 200)}};
}

struct Index {
  void Insert(const Entry& entry) {
    const Status done = tree.Insert(entry.key, entry.row);
    ASSERT_TRUE(done.ok()) << done.error().description;
    ASSERT_TRUE(model.insert(entry).second);
  }
  void Delete(const Entry& entry) {
    const Status done = tree.Delete(entry.key, entry.row);
    ASSERT_TRUE(done.ok()) << done.error().description;
    ASSERT_EQ(model.erase(entry), 1U);
  }
  /// Checks everything; returns the number of pages.
  std::size_t Check() {
    const std::vector<PageNumber> pages = ExpectRightTree(file, tree, model);
    std::set<PageNumber> named(pages.begin(), pages.end());
    named.insert({table, map.page});
    ExpectAllPagesNamed(file, named);
    return pages.size();
  }

  StoreFile file;
  PageNumber table = file.NewPage();
  RowPointer map = file.NewMap();
  IndexTree tree = IndexTree::Create(file.maps(), table, map).value();
  std::set<Entry> model;
};

/// A leaf or node as a writer of another kind may leave it.
inline void Rewrite(StoreFile& file, PageNumber page, const IndexPage& content) {
  Result<PageEdit> edit = file.pager().Edit(page);
  ASSERT_TRUE(edit.ok());
  ASSERT_TRUE(BuildIndexPage(JetVersion::Jet4, content, edit.value().bytes()));
}
inline IndexPage Loaded(Index& index, PageNumber page) {
  return HoldIndexPage(index.file.pager(), page, index.table).value().view.Load();
}

}  // namespace zent::jet::testing
