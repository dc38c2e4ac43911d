#include <algorithm>
#include <utility>

#include "jet/storage/PagerCore.h"
#include "jet/storage/StorageErrors.h"

namespace zent::jet {

Status Pager::Core::CheckChange() const {
  if (Status usable = CheckUsable(); !usable.ok()) return usable;
  if (depth == 0) return JetErrorBecause(kInvalidOperation, "no transaction is open");
  if (doomed) return JetErrorBecause(kInvalidOperation, "the transaction was rolled back");
  return {};
}

Status Pager::Core::WriteGroup(const std::vector<PageFrame*>& group) {
  if (group.empty()) return {};
  Status wrote = pages.Write(group, undo.stamp());
  if (!wrote.ok()) return wrote;
  for (PageFrame* const frame : group) cache.MarkClean(*frame);
  return {};
}

Status Pager::Core::WritePages(const std::vector<PageNumber>& numbers) {
  std::vector<PageFrame*> group;
  for (const PageNumber page : numbers) {
    const bool joins =
        !group.empty() && group.back()->page + 1 == page && group.size() < PageFile::kGroup;
    if (!joins) {
      if (Status wrote = WriteGroup(group); !wrote.ok()) return wrote;
      group.clear();
    }
    group.push_back(cache.Find(page));
  }
  return WriteGroup(group);
}

Status Pager::Core::Spill() {
  const std::vector<PageNumber> dirty = cache.DirtyPages(true);
  if (dirty.empty()) return {};
  if (Status alone = locks.LockOutReaders(); !alone.ok()) return alone;
  Status done = undo.Arm();
  if (done.ok()) done = WritePages(dirty);
  if (done.ok()) {
    ++counters.spills;
    return done;
  }
  // Of what failed half-way nothing is known but how to undo it, and not a part of it alone.
  doomed = true;
  for (PagerPart& part : parts) part.lost = true;
  return done;
}

Status Pager::Core::WriteChanges() {
  const std::vector<PageNumber> dirty = cache.DirtyPages(false);
  if (dirty.empty() && !shrunk && !undo.armed()) return {};
  if (Status alone = locks.LockOutReaders(); !alone.ok()) return alone;
  if (Status armed = undo.Arm(); !armed.ok()) return armed;
  if (Status wrote = WritePages(dirty); !wrote.ok()) return wrote;
  if (shrunk) {
    const Status cut = file->Resize(std::uint64_t{page_count} * layout.page_size);
    if (!cut.ok()) return AsFileStatus(cut);
  }
  if (Status flushed = file->Flush(); !flushed.ok()) return AsFileStatus(flushed);
  return undo.Disarm();
}

Status Pager::Core::Discard() {
  Status undone = undo.Undo();
  if (!undone.ok()) {
    broken = undone.error();
    broken->description += " (a change could not be undone: the database must be opened again)";
  }
  cache.DropAll();
  page_count = original_count;
  shrunk = false;
  return undone;
}

void Pager::Core::EndTransaction() {
  depth = 0;
  doomed = false;
  parts.clear();
  // Alone with the file the journal stays for the next transaction.
  if (!exclusive && !broken) undo.RemoveJournal();
  locks.AdmitReaders(scopes > 0);
  if (scopes == 0) locks.UnlockForReading();
  locks.UnlockForWriting();
}

Status Pager::Core::Abandon(const Status& cause) {
  Status discarded = Discard();
  EndTransaction();
  return discarded.ok() ? cause : discarded;
}

Status Pager::Begin() {
  Core& core = *core_;
  if (Status usable = core.CheckUsable(); !usable.ok()) return usable;
  if (core.depth > 0) {
    if (Status change = core.CheckChange(); !change.ok()) return change;
    ++core.depth;
    return {};
  }
  if (Status writable = Writable(); !writable.ok()) return writable;
  // Who waits while reading may wait for a writer who waits for him.
  Status ready = core.locks.LockForWriting(core.scopes == 0);
  if (!ready.ok()) return ready;
  if (core.lock_file) {
    const Result<bool> foreign = core.lock_file->HasForeignUser();
    if (!foreign.ok()) {
      ready = foreign.error();
    } else if (foreign.value()) {
      ready = JetErrorBecause(kDatabaseInUse, "by a program of another kind: only reading is safe",
                              core.path);
    }
  }
  if (ready.ok() && core.scopes == 0 && !core.exclusive) ready = core.Enter();
  if (!ready.ok()) {
    core.locks.UnlockForWriting();
    return ready;
  }
  core.depth = 1;
  core.original_count = core.page_count;
  core.shrunk = false;
  core.undo.Begin(core.page_count);
  return {};
}

Status Pager::Commit() {
  Core& core = *core_;
  if (core.depth == 0) return JetErrorBecause(kInvalidOperation, "no transaction is open");
  if (core.depth > 1) {
    core.JoinPart();
    --core.depth;
    return core.CheckChange();
  }
  if (Status change = core.CheckChange(); !change.ok()) return core.Abandon(change);
  if (core.cache.HasEdits()) {
    return JetErrorBecause(kInvalidOperation, "a page is still being changed");
  }
  Status written = core.WriteChanges();
  if (!written.ok()) return core.Abandon(written);
  core.EndTransaction();
  return {};
}

Status Pager::Rollback() {
  Core& core = *core_;
  if (core.depth == 0) return JetErrorBecause(kInvalidOperation, "no transaction is open");
  if (core.depth == 1) return core.Abandon({});
  if (core.InPartOfDepth()) return core.UndoPart();
  --core.depth;
  if (core.doomed) return {};
  core.doomed = true;
  // The part around it may still be undone alone.
  return core.parts.empty() ? core.Discard() : Status();
}

Result<PageEdit> Pager::Edit(PageNumber page) {
  Core& core = *core_;
  if (Status change = core.CheckChange(); !change.ok()) return change.error();
  const Result<PageFrame*> frame = core.Load(page);
  if (!frame.ok()) return frame.error();
  core.KeepForPart(*frame.value());
  if (!frame.value()->dirty) {
    if (Status kept = core.undo.Keep(*frame.value()); !kept.ok()) return kept.error();
    core.cache.MarkDirty(*frame.value());
  }
  return PageEdit(core.cache, *frame.value());
}

Result<PageEdit> Pager::Append() {
  Core& core = *core_;
  if (Status change = core.CheckChange(); !change.ok()) return change.error();
  if ((std::uint64_t{core.page_count} + 1) * core.layout.page_size > core.layout.max_file_size) {
    return JetError(kDatabaseTooLarge);
  }
  if (Status room = core.MakeRoom(); !room.ok()) return room.error();
  PageFrame& frame = *core.cache.Add(core.page_count);
  std::fill_n(frame.bytes.get(), core.layout.page_size, std::uint8_t{0});
  core.cache.MarkDirty(frame);
  ++core.page_count;
  core.counters.most_pages_held = std::max(core.counters.most_pages_held, core.cache.held());
  return PageEdit(core.cache, frame);
}

Status Pager::Shrink(PageNumber page_count) {
  Core& core = *core_;
  if (Status change = core.CheckChange(); !change.ok()) return change;
  if (page_count == 0 || page_count > core.page_count) {
    return JetErrorBecause(kInvalidArgument, "pages to keep");
  }
  if (core.cache.PinnedFrom(page_count)) {
    return JetErrorBecause(kInvalidOperation, "a page to be cut off is in use");
  }
  for (PageNumber page = page_count; page < core.page_count; ++page) {
    if (Status kept = core.undo.KeepStored(page); !kept.ok()) return kept;
  }
  for (PagerPart& part : core.parts) part.lost = true;
  core.cache.DropFrom(page_count);
  core.page_count = page_count;
  core.shrunk = true;
  return {};
}

}  // namespace zent::jet
