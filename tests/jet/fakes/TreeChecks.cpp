#include <gtest/gtest.h>

#include <algorithm>

#include "jet/fakes/StoreChecks.h"

namespace zent::jet::testing {
namespace {

/// Goes down a tree and keeps what it met.
class TreeWalk {
 public:
  TreeWalk(StoreFile& file, const IndexTree& tree) : file_(file), tree_(tree) {}

  std::vector<PageNumber> pages;
  std::vector<PageNumber> leaves;

  /// Checks what is below `page`; `last` becomes the last entry there.
  void Visit(PageNumber page, int level, Entry& last) {
    SCOPED_TRACE(page);
    pages.push_back(page);
    const Result<IndexPageHold> hold = HoldIndexPage(file_.pager(), page, tree_.place().table);
    ASSERT_TRUE(hold.ok()) << hold.error().description;
    const IndexPage content = hold.value().view.Load();
    if (level >= 0) {
      EXPECT_EQ(content.level, level);
    }
    EXPECT_EQ(content.leaf, content.level == 0);
    if (content.leaf) {
      leaves.push_back(page);
      EXPECT_TRUE(level < 0 || !content.entries.empty());
      if (!content.entries.empty()) last = {content.entries.back().key, content.entries.back().row};
      return;
    }
    VisitChildren(content, last);
  }

 private:
  void VisitChildren(const IndexPage& node, Entry& last) {
    std::vector<PageNumber> children;
    for (const IndexEntry& entry : node.entries) {
      children.push_back(entry.child);
      Visit(entry.child, node.level - 1, last);
      EXPECT_EQ(last, (Entry{entry.key, entry.row}));
    }
    ASSERT_NE(node.tail, 0U);
    children.push_back(node.tail);
    Visit(node.tail, node.level - 1, last);
    if (node.level > 1) ExpectLinked(children);
  }

 public:
  /// The pages follow each other, and no others are before or behind them.
  void ExpectLinked(const std::vector<PageNumber>& chain) {
    for (std::size_t i = 0; i < chain.size(); ++i) {
      const Result<IndexPageHold> hold =
          HoldIndexPage(file_.pager(), chain[i], tree_.place().table);
      ASSERT_TRUE(hold.ok());
      EXPECT_EQ(hold.value().view.previous(), i == 0 ? 0 : chain[i - 1]);
      EXPECT_EQ(hold.value().view.next(), i + 1 == chain.size() ? 0 : chain[i + 1]);
    }
  }

 private:
  StoreFile& file_;
  const IndexTree& tree_;
};

}  // namespace

std::vector<PageNumber> ExpectRightTree(StoreFile& file, const IndexTree& tree,
                                        const std::set<Entry>& entries) {
  std::vector<Entry> found;
  IndexCursor cursor = tree.Cursor();
  for (bool on = cursor.SeekFirst().value_or(false); on; on = cursor.Next().value_or(false)) {
    found.push_back({cursor.key(), cursor.row()});
  }
  const std::vector<Entry> expected(entries.begin(), entries.end());
  EXPECT_TRUE(found == expected) << found.size() << " entries, not " << expected.size();
  found.clear();
  for (bool on = cursor.SeekLast().value_or(false); on; on = cursor.Previous().value_or(false)) {
    found.push_back({cursor.key(), cursor.row()});
  }
  std::reverse(found.begin(), found.end());
  EXPECT_TRUE(found == expected) << found.size() << " entries backward";

  TreeWalk walk(file, tree);
  Entry last;
  walk.Visit(tree.place().root, -1, last);
  walk.ExpectLinked(walk.leaves);
  std::sort(walk.pages.begin(), walk.pages.end());
  EXPECT_EQ(walk.pages, file.maps().Pages(tree.place().map).value_or({}));
  return walk.pages;
}

}  // namespace zent::jet::testing
