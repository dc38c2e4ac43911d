#include "xml/ChildIndex.h"

#include <algorithm>

#include "xml/PlainTests.h"

namespace zent::xml {

ChildIndex::ChildIndex(const xmlNode* parent, std::string_view child_name, const PlainTest& test)
    : parent_(parent), child_name_(child_name), like_(test) {
  for (xmlNode* child = parent->children; child != nullptr; child = child->next) {
    Collect(child, entries_);
  }
  std::sort(entries_.begin(), entries_.end());
  constexpr std::size_t kSpare = 4096;
  worn_above_ = 2 * entries_.size() + kSpare;
}

void ChildIndex::Changed(xmlNode* child) {
  if (changed_.empty() || changed_.back() != child) changed_.push_back(child);
}

bool ChildIndex::IsWorn() const {
  return entries_.size() + recent_.size() + changed_.size() > worn_above_;
}

std::vector<xmlNode*> ChildIndex::Find(const PlainTest& test) {
  TakeInChanges();
  const std::uint64_t hash = HashOfText(*test.value);
  std::vector<xmlNode*> found;
  // False when that is enough.
  const auto consider = [&](const Entry& entry) {
    xmlNode* const child = entry.second;
    const bool fits = entry.first == hash && child->parent == parent_ && Passes(child, test);
    if (fits && (found.empty() || found.front() != child)) found.push_back(child);
    return found.size() < 2;
  };
  const auto first = std::lower_bound(entries_.begin(), entries_.end(), Entry{hash, nullptr});
  for (auto at = first; at != entries_.end() && at->first == hash; ++at) {
    if (!consider(*at)) return found;
  }
  for (const Entry& entry : recent_) {
    if (!consider(entry)) break;
  }
  return found;
}

void ChildIndex::TakeInChanges() {
  for (xmlNode* child : changed_) {
    if (child->parent == parent_) Collect(child, recent_);
  }
  changed_.clear();
  constexpr std::size_t kMostRecent = 512;  // looked through about as fast as the others
  if (recent_.size() < kMostRecent) return;
  std::sort(recent_.begin(), recent_.end());
  const auto middle = static_cast<std::ptrdiff_t>(entries_.size());
  entries_.insert(entries_.end(), recent_.begin(), recent_.end());
  std::inplace_merge(entries_.begin(), entries_.begin() + middle, entries_.end());
  entries_.erase(std::unique(entries_.begin(), entries_.end()), entries_.end());
  recent_.clear();
}

void ChildIndex::Collect(xmlNode* child, std::vector<Entry>& into) const {
  if (!IsElementCalled(child, child_name_)) return;
  ForEachCompared(child, like_,
                  [&](const xmlNode* compared) { into.emplace_back(HashOfText(compared), child); });
}

}  // namespace zent::xml
