#include "jet/transfer/KeySorter.h"

#include <algorithm>

#include "jet/format/JetErrors.h"
#include "jet/store/IndexBuilder.h"

namespace zent::jet {
namespace {

constexpr std::size_t kAhead = 8;
// Sorting holds the entries twice.
constexpr std::size_t kEntryBytes = 2 * sizeof(KeyEntry);

/// The first bytes of a key as a number that compares as they do.
std::uint64_t HeadOf(std::string_view key) {
  std::uint64_t head = 0;
  for (std::size_t i = 0; i < sizeof head; ++i) {
    const auto byte = i < key.size() ? static_cast<std::uint8_t>(key[i]) : std::uint8_t{0};
    head = head << 8U | byte;
  }
  return head;
}

}  // namespace

bool KeySorter::Before(const KeyEntry& a, const KeyEntry& b) const {
  if (a.head != b.head) return a.head < b.head;
  const int order = KeyOf(a).compare(KeyOf(b));
  return order != 0 ? order < 0 : a.row < b.row;
}

Status KeySorter::Add(std::string_view key, RowPointer row) {
  keys_ += key;
  return AddKey(row);
}

Status KeySorter::AddKey(RowPointer row) {
  const std::size_t length = keys_.size() - begin_;
  if (length > kMaxIndexKey) {
    DropKey();
    return JetError(kRecordTooLarge);
  }
  entries_.push_back({.head = 0,
                      .at = static_cast<std::uint32_t>(begin_),
                      .length = static_cast<std::uint32_t>(length),
                      .row = row});
  begin_ = keys_.size();
  return keys_.size() + entries_.size() * kEntryBytes < limit_ ? Status() : Flush();
}

Status KeySorter::Finish() { return entries_.empty() && built_ ? Status() : Flush(); }

// Keys often begin alike: then only what follows tells them apart at a glance.
void KeySorter::SetHeads() {
  if (entries_.empty()) return;
  std::string_view common = KeyOf(entries_.front());
  for (const KeyEntry& entry : entries_) {
    const std::string_view key = KeyOf(entry);
    const std::size_t least = std::min(common.size(), key.size());
    if (key.compare(0, least, common, 0, least) == 0 && least == common.size()) continue;
    const auto end = std::mismatch(common.begin(), common.begin() + least, key.begin()).first;
    common = common.substr(0, static_cast<std::size_t>(end - common.begin()));
  }
  for (KeyEntry& entry : entries_) entry.head = HeadOf(KeyOf(entry).substr(common.size()));
}

void KeySorter::Sort() {
  SetHeads();
  const auto before = [this](const KeyEntry& a, const KeyEntry& b) { return Before(a, b); };
  // Rows often come in the order of a key.
  if (std::is_sorted(entries_.begin(), entries_.end(), before)) return;
  SortByHead(entries_);
  for (auto first = entries_.begin(); first != entries_.end();) {
    const auto last = std::find_if(
        first, entries_.end(), [&](const KeyEntry& entry) { return entry.head != first->head; });
    if (last - first > 1) std::sort(first, last, before);
    first = last;
  }
}

Status KeySorter::Flush() {
  Sort();
  Status done = built_ ? Insert() : Build();
  built_ = true;
  entries_.clear();
  keys_.clear();
  begin_ = 0;
  return done;
}

Status KeySorter::CheckUnique(std::string_view key, bool known) const {
  if (!known || !unique_ || key == null_key_) return {};
  return JetError(kDuplicateKey);
}

Status KeySorter::Build() {
  IndexBuilder builder(tree_);
  const KeyEntry* last = nullptr;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    // In order the keys lie all over the memory: ask for them before they are needed.
    if (i + kAhead < entries_.size()) __builtin_prefetch(&keys_[entries_[i + kAhead].at]);
    const KeyEntry& entry = entries_[i];
    const std::string_view key = KeyOf(entry);
    const bool known = last != nullptr && last->head == entry.head && KeyOf(*last) == key;
    if (Status allowed = CheckUnique(key, known); !allowed.ok()) return allowed;
    if (Status added = builder.Add(key, entry.row); !added.ok()) return added;
    if (!known) ++distinct_;
    last = &entry;
  }
  return builder.Finish();
}

Status KeySorter::Insert() {
  for (const KeyEntry& entry : entries_) {
    const std::string_view key = KeyOf(entry);
    const Result<bool> known = tree_.HasKey(key);
    if (!known.ok()) return known.error();
    if (Status allowed = CheckUnique(key, known.value()); !allowed.ok()) return allowed;
    if (Status added = tree_.Insert(key, entry.row); !added.ok()) return added;
    if (!known.value()) ++distinct_;
  }
  return {};
}

}  // namespace zent::jet
