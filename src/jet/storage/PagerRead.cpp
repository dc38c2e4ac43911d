#include <algorithm>
#include <utility>

#include "jet/storage/PagerCore.h"
#include "jet/storage/StorageErrors.h"

namespace zent::jet {
namespace {

constexpr int kRecoveries = 3;  // how often a state may turn out interrupted while we enter
constexpr int kResourceExceeded = 3035;  // DAO's number

RuntimeError AllPinned() {
  return {.number = kResourceExceeded,
          .description = "System resource exceeded. (all pages in memory are in use)",
          .source = "DAO"};
}

}  // namespace

Status Pager::Core::CheckUsable() const { return broken ? Status(*broken) : Status(); }

Status Pager::Core::Refresh() {
  const Result<std::uint64_t> size = file->Size();
  if (!size.ok()) return FileError(size.error());
  if (size.value() == 0 || size.value() % layout.page_size != 0) {
    return JetErrorBecause(kCannotOpenDatabase, "the file does not end with a page", path);
  }
  if (size.value() > layout.max_file_size) {
    return JetErrorBecause(kCannotOpenDatabase, "the file is larger than its format allows", path);
  }
  page_count = static_cast<PageNumber>(size.value() / layout.page_size);
  cache.DropAll();
  return {};
}

Status Pager::Core::Enter() {
  for (int tries = 0; tries < kRecoveries; ++tries) {
    if (Status locked = locks.LockForReading(); !locked.ok()) return locked;
    std::optional<Stamp> interrupted;
    if (header.version == JetVersion::Jet4) {
      const Result<std::optional<Stamp>> stamp = ReadStamp(*file);
      if (!stamp.ok()) {
        locks.UnlockForReading();
        return stamp.error();
      }
      interrupted = stamp.value();
    }
    if (!interrupted) {
      Status fresh = Refresh();
      if (!fresh.ok()) locks.UnlockForReading();
      return fresh;
    }
    locks.UnlockForReading();
    Status recovered = options.sharing == Sharing::ReadOnly
                           ? RecoverByOpening(storage, path, options)
                           : Recover(storage, path, *file, locks);
    if (!recovered.ok()) return recovered;
  }
  return LockError("another user's changes are interrupted again and again");
}

Status Pager::Core::MakeRoom() {
  if (cache.room() > 0) return {};
  if (depth > 0 && !doomed) {
    if (Status spilled = Spill(); !spilled.ok()) return spilled;
  }
  return cache.room() > 0 ? Status() : Status(AllPinned());
}

Result<PageFrame*> Pager::Core::Load(PageNumber page) {
  if (page >= page_count) return Damaged(page, "the file ends before this page does");
  if (PageFrame* const held = cache.Find(page); held != nullptr) return held;
  if (Status room = MakeRoom(); !room.ok()) return room.error();

  const std::size_t most = std::min({read_ahead.CountFor(page), cache.room(), cache.capacity() / 4,
                                     static_cast<std::size_t>(page_count - page)});
  std::vector<PageFrame*> frames = {cache.Add(page)};
  while (frames.size() < most) {
    const PageNumber next = page + static_cast<PageNumber>(frames.size());
    if (cache.Holds(next)) break;
    frames.push_back(cache.Add(next));
  }
  Status filled = Fill(frames);
  if (!filled.ok() && frames.size() > 1) {
    // One that nobody has asked for may be what cannot be read.
    frames = {cache.Add(page)};
    filled = Fill(frames);
  }
  if (!filled.ok()) return filled.error();
  read_ahead.Note(page, frames.size());
  counters.most_pages_held = std::max(counters.most_pages_held, cache.held());
  return frames.front();
}

Status Pager::Core::Fill(const std::vector<PageFrame*>& frames) {
  Status read = pages.Read(frames);
  if (!read.ok()) {
    for (const PageFrame* const frame : frames) cache.Drop(frame->page);
    return read;
  }
  // While a transaction is half in the file, page 0 carries its stamp.
  if (frames.front()->page == 0 && undo.armed()) {
    std::copy_n(undo.unstamped().begin(), kStampSize, frames.front()->bytes.get() + kStampOffset);
  }
  return read;
}

Status Pager::BeginRead() {
  Core& core = *core_;
  if (Status usable = core.CheckUsable(); !usable.ok()) return usable;
  if (core.scopes == 0 && core.depth == 0 && !core.exclusive) {
    if (Status entered = core.Enter(); !entered.ok()) return entered;
  }
  ++core.scopes;
  return {};
}

void Pager::EndRead() {
  Core& core = *core_;
  if (--core.scopes == 0 && core.depth == 0) core.locks.UnlockForReading();
}

Result<PageView> Pager::Read(PageNumber page) {
  const ReadScope scope(*this);
  if (!scope.status().ok()) return scope.status().error();
  const Result<PageFrame*> frame = core_->Load(page);
  if (!frame.ok()) return frame.error();
  return PageView(core_->cache, *frame.value());
}

}  // namespace zent::jet
