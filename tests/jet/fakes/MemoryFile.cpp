#include <gtest/gtest.h>

#include "jet/fakes/MemoryNode.h"

namespace zent::jet::testing {

Status MemoryStorage::Machine::Change() {
  if (stopped) return StandardError(kDeviceIoError);
  ++calls;
  if (calls == stop_at) {
    stopped = true;
    return StandardError(kDeviceIoError);
  }
  if (calls == fail_at) return StandardError(fail_number);
  return {};
}

bool Keeps(const PowerLoss& loss, std::size_t index, std::size_t count, std::mt19937& random) {
  switch (loss.kind) {
    case PowerLoss::KeepsAll:
      return true;
    case PowerLoss::LosesAll:
      return false;
    case PowerLoss::KeepsFirst:
      return index < count / 2;
    case PowerLoss::KeepsLast:
      return index >= count / 2;
    case PowerLoss::KeepsOdd:
      return index % 2 == 1;
    case PowerLoss::KeepsRandom:
      return random() % 2 == 0;
  }
  return true;
}

std::string MemoryStorage::Node::After(const PowerLoss& loss, std::mt19937& random) const {
  std::string disk = durable;
  for (std::size_t i = 0; i < pending.size(); ++i) {
    if (!Keeps(loss, i, pending.size(), random)) continue;
    const Change& change = pending[i];
    if (change.is_resize) {
      disk.resize(change.at);
      continue;
    }
    disk.resize(std::max<std::size_t>(disk.size(), change.at + change.bytes.size()));
    disk.replace(change.at, change.bytes.size(), change.bytes);
  }
  return disk;
}

MemoryFile::MemoryFile(MemoryStorage::Machine& machine, MemoryStorage::NodePointer node,
                       Sharing sharing)
    : machine_(machine), node_(std::move(node)), sharing_(sharing) {
  node_->openers.emplace_back(this, sharing);
}

MemoryFile::~MemoryFile() {
  std::erase_if(node_->openers, [&](const auto& opener) { return opener.first == this; });
  std::erase_if(node_->locks, [&](const auto& lock) { return lock.owner == this; });
}

Result<std::uint64_t> MemoryFile::Size() {
  if (Status look = machine_.Look(); !look.ok()) return look.error();
  return std::uint64_t{node_->now.size()};
}

Result<std::size_t> MemoryFile::ReadAt(std::uint64_t offset, MutableBytes buffer) {
  if (Status look = machine_.Look(); !look.ok()) return look.error();
  ++machine_.reads;
  if (machine_.spoiled && offset <= *machine_.spoiled &&
      *machine_.spoiled - offset < buffer.size()) {
    return StandardError(kDeviceIoError);
  }
  const std::string& bytes = node_->now;
  if (offset >= bytes.size()) return std::size_t{0};
  const std::size_t count = std::min<std::size_t>(buffer.size(), bytes.size() - offset);
  std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(offset), count, buffer.begin());
  return count;
}

Status MemoryFile::Change() {
  if (sharing_ == Sharing::ReadOnly) return StandardError(kPathFileAccess);
  return machine_.Change();
}

std::uint64_t MemoryFile::Allowed(std::uint64_t size) const {
  if (!machine_.space || size <= node_->now.size()) return size;
  const std::uint64_t others = machine_.used - node_->now.size();
  const std::uint64_t room = *machine_.space > others ? *machine_.space - others : 0;
  return std::max<std::uint64_t>(node_->now.size(), std::min(size, room));
}

void MemoryFile::SetSize(std::uint64_t size) {
  machine_.used += size;
  machine_.used -= node_->now.size();
  node_->now.resize(size);
}

Status MemoryFile::WriteAt(std::uint64_t offset, ByteView bytes) {
  if (Status change = Change(); !change.ok()) {
    // A machine that stops is in the middle of this write: any of its blocks may reach the disk.
    if (!machine_.stopped || machine_.calls != machine_.stop_at) return change;
    machine_.stop_at = 0;
  }
  const std::uint64_t end = offset + bytes.size();
  const std::uint64_t allowed = Allowed(end);
  const std::uint64_t stop = std::min(end, allowed);
  if (stop > node_->now.size()) SetSize(stop);
  for (std::uint64_t at = offset; at < stop;) {
    const std::uint64_t next = std::min(stop, (at / kBlock + 1) * kBlock);
    const std::string part(AsText(bytes.subspan(at - offset, next - at)));
    node_->now.replace(at, part.size(), part);
    node_->pending.push_back({.is_resize = false, .at = at, .bytes = part});
    at = next;
  }
  if (machine_.stopped) return StandardError(kDeviceIoError);
  return stop == end ? Status() : Status(StandardError(kDiskFull));
}

Status MemoryFile::Resize(std::uint64_t size) {
  if (Status change = Change(); !change.ok()) return change;
  if (Allowed(size) != size) return StandardError(kDiskFull);
  SetSize(size);
  node_->pending.push_back({.is_resize = true, .at = size, .bytes = {}});
  return {};
}

Status MemoryFile::Flush() {
  if (Status change = Change(); !change.ok()) return change;
  ++machine_.flushes;
  node_->durable = node_->now;
  node_->pending.clear();
  return {};
}

Result<bool> MemoryFile::TryLock(std::uint64_t offset, std::uint64_t length, bool exclusive) {
  if (Status look = machine_.Look(); !look.ok()) return look.error();
  if (exclusive && sharing_ == Sharing::ReadOnly) return StandardError(kPathFileAccess);
  const std::uint64_t end = offset + length;
  for (const auto& lock : node_->locks) {
    if (lock.first >= end || offset >= lock.end) continue;
    EXPECT_NE(lock.owner, this) << "a range is locked twice by one opener: " << offset;
    if (lock.exclusive || exclusive) return false;
  }
  node_->locks.push_back({.owner = this, .first = offset, .end = end, .exclusive = exclusive});
  return true;
}

Status MemoryFile::Unlock(std::uint64_t offset, std::uint64_t length) {
  const auto erased = std::erase_if(node_->locks, [&](const auto& lock) {
    return lock.owner == this && lock.first == offset && lock.end == offset + length;
  });
  EXPECT_EQ(erased, 1U) << "a range is unlocked that is not locked: " << offset;
  return {};
}

}  // namespace zent::jet::testing
