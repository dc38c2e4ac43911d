#include "jet/store/IndexBuilder.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "jet/format/JetErrors.h"
#include "jet/store/IndexChange.h"

namespace zent::jet {
namespace {

std::size_t SizeOf(const IndexEntry& entry, bool leaf) { return entry.key.size() + (leaf ? 4 : 8); }

}  // namespace

IndexBuilder::IndexBuilder(IndexTree& tree)
    : tree_(tree), room_(IndexPageRoom(tree.maps().pager().version())), levels_(1) {
  levels_[0].content.owner = tree.place().table;
}

Status IndexBuilder::Add(std::string_view key, RowPointer row) {
  if (key.size() > kMaxIndexKey) return JetError(kRecordTooLarge);
  const std::vector<IndexEntry>& entries = levels_[0].content.entries;
  if (!entries.empty() && CompareEntries(entries.back().key, entries.back().row, key, row) >= 0) {
    return JetErrorBecause(kInvalidArgument, "the entries of an index are not in order");
  }
  return AddTo(0, NewEntry(key, row));
}

IndexEntry IndexBuilder::NewEntry(std::string_view key, RowPointer row) {
  if (spent_.empty()) return {.key = std::string(key), .row = row};
  IndexEntry entry = std::move(spent_.back());
  spent_.pop_back();
  entry.key = key;
  entry.row = row;
  entry.child = 0;
  return entry;
}

bool IndexBuilder::HasRoom(const Level& level, const IndexEntry& entry) const {
  const std::vector<IndexEntry>& entries = level.content.entries;
  const std::size_t bytes = level.bytes + SizeOf(entry, level.content.leaf);
  if (bytes <= room_) return true;
  const std::string& first = entries.front().key;
  const auto shared = static_cast<std::size_t>(
      std::mismatch(first.begin(), first.end(), entry.key.begin(), entry.key.end()).first -
      first.begin());
  return bytes - entries.size() * shared <= room_;
}

/// `entry` becomes the last one of its level. A page that has no room for it is written; its last
/// entry is copied to the level above.
Status IndexBuilder::AddTo(std::size_t depth, IndexEntry entry) {
  if (!HasRoom(levels_[depth], entry)) {
    if (Status flushed = Flush(depth, entry.child); !flushed.ok()) return flushed;
  }
  Level& level = levels_[depth];
  level.bytes += SizeOf(entry, level.content.leaf);
  level.content.entries.push_back(std::move(entry));
  return {};
}

Status IndexBuilder::Flush(std::size_t depth, PageNumber next_child) {
  Level full = std::move(levels_[depth]);
  if (full.page == 0) {
    const Result<PageNumber> page = NewPage();
    if (!page.ok()) return page.status();
    full.page = page.value();
  }
  const Result<PageNumber> next = NewPage();
  if (!next.ok()) return next.status();
  full.content.next = next.value();
  IndexEntry promoted = full.content.entries.back();
  if (!full.content.leaf) {  // the last child goes without an entry
    full.content.tail = promoted.child;
    full.content.entries.pop_back();
    if (Status s = IndexChange(tree_).CutNodeLinks(promoted.child, next_child); !s.ok()) {
      return s;
    }
  }
  promoted.child = full.page;
  if (Status written = Write(full, full.page); !written.ok()) return written;

  std::move(full.content.entries.begin(), full.content.entries.end(), std::back_inserter(spent_));
  levels_[depth] = {.content = {.level = full.content.level,
                                .leaf = full.content.leaf,
                                .owner = full.content.owner,
                                .previous = full.page},
                    .page = next.value()};
  levels_[depth].content.entries.reserve(full.content.entries.size());
  if (depth + 1 == levels_.size()) {
    Level above;
    above.content.level = static_cast<std::uint8_t>(full.content.level + 1);
    above.content.leaf = false;
    above.content.owner = full.content.owner;
    levels_.push_back(std::move(above));
  }
  return AddTo(depth + 1, std::move(promoted));
}

Status IndexBuilder::Finish() {
  for (std::size_t depth = 0; depth + 1 < levels_.size(); ++depth) {
    const Level& level = levels_[depth];
    if (Status written = Write(level, level.page); !written.ok()) return written;
    levels_[depth + 1].content.tail = level.page;
  }
  return Write(levels_.back(), tree_.place().root);
}

Result<PageNumber> IndexBuilder::NewPage() {
  const Result<PageEdit> page = tree_.maps().AllocateFor(tree_.place().map);
  if (!page.ok()) return page.error();
  return page.value().page();
}

Status IndexBuilder::Write(const Level& level, PageNumber page) {
  Pager& pager = tree_.maps().pager();
  Result<PageEdit> edit = pager.Edit(page);
  if (!edit.ok()) return edit.error();
  if (BuildIndexPage(pager.version(), level.content, edit.value().bytes())) return {};
  return JetError(kRecordTooLarge);
}

}  // namespace zent::jet
