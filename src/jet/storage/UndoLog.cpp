#include "jet/storage/UndoLog.h"

#include <algorithm>
#include <array>
#include <random>
#include <utility>

#include "jet/format/JetErrors.h"
#include "jet/storage/StorageErrors.h"

namespace zent::jet {
namespace {

std::uint64_t DrawTransaction() {
  std::random_device device;
  return (std::uint64_t{device()} << 32U) | device();
}

}  // namespace

UndoLog::UndoLog(Storage& storage, std::string path, PageFile& pages, PagerCounters& counters)
    : storage_(storage), path_(std::move(path)), pages_(pages), counters_(counters) {}

void UndoLog::Begin(PageNumber page_count) {
  page_count_ = page_count;
  kept_.assign(page_count, false);
  started_ = false;
  armed_ = false;
  stamped_records_ = 0;
}

Status UndoLog::Start() {
  const Result<ByteView> page = pages_.ReadStored(0);
  if (!page.ok()) return page.error();
  std::copy_n(page.value().begin() + kStampOffset, kStampSize, unstamped_.begin());
  const JournalHeader header{.transaction = DrawTransaction(),
                             .database = DatabaseIdentity(page.value()),
                             .page_size = static_cast<std::uint32_t>(pages_.page_size()),
                             .page_count = page_count_,
                             .unstamped = unstamped_};
  if (!journal_) {
    Status cleared = ClearLeftover(storage_, path_, header.database);
    if (!cleared.ok()) return cleared;
    Result<std::unique_ptr<Journal>> journal = Journal::Create(storage_, path_);
    if (!journal.ok()) return journal.error();
    journal_ = std::move(journal.value());
  }
  journal_->Start(header);
  started_ = true;
  return {};
}

Status UndoLog::Add(PageNumber page, ByteView bytes) {
  if (Status added = journal_->Add(page, bytes); !added.ok()) return added;
  kept_[page] = true;
  ++counters_.pages_journalled;
  return {};
}

Status UndoLog::Keep(const PageFrame& clean_frame) {
  if (IsKept(clean_frame.page)) return {};
  if (!started_) {
    if (Status started = Start(); !started.ok()) return started;
  }
  // Page 0 in the file carries the stamp while armed; what was there before is what counts.
  return Add(clean_frame.page, pages_.Stored(clean_frame));
}

Status UndoLog::KeepStored(PageNumber page) {
  if (IsKept(page)) return {};
  if (!started_) {
    if (Status started = Start(); !started.ok()) return started;
  }
  const Result<ByteView> bytes = pages_.ReadStored(page);
  return bytes.ok() ? Add(page, bytes.value()) : Status(bytes.error());
}

Status UndoLog::Arm() {
  if (!started_) {
    if (Status started = Start(); !started.ok()) return started;
  }
  if (armed_ && stamped_records_ == journal_->records()) return {};
  if (Status synced = journal_->Sync(); !synced.ok()) return synced;
  armed_ = true;
  stamped_records_ = journal_->records();
  stamp_ =
      EncodeStamp({.transaction = journal_->header().transaction, .records = stamped_records_});
  return WriteStamp(stamp_);
}

Status UndoLog::WriteStamp(const StampBytes& bytes) {
  Status wrote = pages_.file().WriteAt(kStampOffset, bytes);
  if (wrote.ok()) wrote = pages_.file().Flush();
  return AsFileStatus(wrote);
}

Status UndoLog::Disarm() {
  Status wrote = WriteStamp(unstamped_);
  if (wrote.ok()) armed_ = false;
  return wrote;
}

Status UndoLog::Undo() {
  if (!armed_) return {};
  // The stamp may be off already, by a Disarm that failed half-way.
  if (Status stamped = WriteStamp(stamp_); !stamped.ok()) return stamped;
  const Stamp stamp{.transaction = journal_->header().transaction, .records = stamped_records_};
  Status undone = UndoTransaction(*journal_, stamp, pages_.file());
  if (undone.ok()) armed_ = false;
  return undone;
}

void UndoLog::RemoveJournal() {
  if (!journal_) return;
  journal_.reset();
  static_cast<void>(storage_.Delete(Journal::PathFor(path_)));
}

Status ClearLeftover(Storage& storage, std::string_view path, std::uint64_t database) {
  const std::string journal_path = Journal::PathFor(path);
  bool is_other = false;
  {
    const Result<std::unique_ptr<Journal>> journal = Journal::Open(storage, path);
    if (journal.number() == kFileNotFound) return {};
    if (!journal.ok() && journal.number() != kCannotOpenDatabase) return journal.error();
    is_other = journal.ok() && journal.value()->header().database != database;
  }
  if (is_other) return AsFileStatus(storage.Rename(journal_path, journal_path + "-other"));
  return AsFileStatus(storage.Delete(journal_path));
}

Result<std::optional<Stamp>> ReadStamp(StoredFile& file) {
  StampBytes bytes = {};
  const Result<std::size_t> got = file.ReadAt(kStampOffset, bytes);
  if (!got.ok()) return FileError(got.error());
  return DecodeStamp(ByteView(bytes).first(got.value()));
}

Status UndoInterrupted(Storage& storage, std::string_view path, const Stamp& stamp,
                       StoredFile& file) {
  {
    const Result<std::unique_ptr<Journal>> journal = Journal::Open(storage, path);
    if (journal.number() == kFileNotFound) {
      return Damaged(0, "a change was interrupted, and the journal to undo it is missing");
    }
    if (!journal.ok()) return journal.error();
    Status undone = UndoTransaction(*journal.value(), stamp, file);
    if (!undone.ok()) return undone;
  }
  static_cast<void>(storage.Delete(Journal::PathFor(path)));
  return {};
}

}  // namespace zent::jet
