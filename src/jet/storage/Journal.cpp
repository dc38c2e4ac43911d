#include "jet/storage/Journal.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "jet/format/JetErrors.h"
#include "jet/storage/StorageErrors.h"

namespace zent::jet {
namespace {

constexpr std::uint32_t kGroup = 64;  // records that are read or written in one call

constexpr int kAttempts = 20;
constexpr std::chrono::milliseconds kPause{10};

/// Calls `open` until nobody is in the way: a scanner that has the file open, or the last one who
/// holds a journal that was deleted.
template <typename Open>
Result<std::unique_ptr<StoredFile>> OpenPatiently(Storage& storage, const Open& open) {
  for (int attempt = 1;; ++attempt) {
    Result<std::unique_ptr<StoredFile>> file = open();
    if (file.number() != kPermissionDenied || attempt == kAttempts) return file;
    storage.Pause(kPause);
  }
}

RuntimeError JournalDamaged() {
  return Damaged(0, "a change was interrupted, and the journal to undo it is damaged");
}

}  // namespace

std::string Journal::PathFor(std::string_view database) {
  return std::string(database) + "-journal";
}

Journal::Journal(Storage& storage, std::string path, std::unique_ptr<StoredFile> file, bool is_new)
    : storage_(storage), path_(std::move(path)), file_(std::move(file)), name_flushed_(!is_new) {}

Result<std::unique_ptr<Journal>> Journal::Create(Storage& storage, std::string_view database) {
  std::string path = PathFor(database);
  Result<std::unique_ptr<StoredFile>> file = OpenPatiently(storage, [&] {
    Result<std::unique_ptr<StoredFile>> made = storage.Create(path, Sharing::Shared, database);
    if (made.number() == kFileAlreadyExists) made = storage.Open(path, Sharing::Shared);
    return made;
  });
  if (!file.ok()) return FileError(file.error());
  // Whether the name of one left over is on disk is not known: it counts as new.
  return std::unique_ptr<Journal>(
      new Journal(storage, std::move(path), std::move(file.value()), true));
}

Result<std::unique_ptr<Journal>> Journal::Open(Storage& storage, std::string_view database) {
  std::string path = PathFor(database);
  Result<std::unique_ptr<StoredFile>> file =
      OpenPatiently(storage, [&] { return storage.Open(path, Sharing::ReadOnly); });
  if (file.number() == kFileNotFound) return file.error();
  if (!file.ok()) return FileError(file.error());

  std::array<std::uint8_t, kJournalHeaderSize> bytes = {};
  const Result<std::size_t> got = file.value()->ReadAt(0, bytes);
  if (!got.ok()) return FileError(got.error());
  const Result<JournalHeader> header = DecodeJournalHeader(ByteView(bytes).first(got.value()));
  if (!header.ok()) return header.error();
  std::unique_ptr<Journal> journal(
      new Journal(storage, std::move(path), std::move(file.value()), false));
  journal->header_ = header.value();
  return journal;
}

void Journal::Start(const JournalHeader& header) {
  header_ = header;
  records_ = 0;
  written_ = 0;
  const auto bytes = EncodeJournalHeader(header);
  buffer_.assign(bytes.begin(), bytes.end());
}

Status Journal::Add(PageNumber page, ByteView bytes) {
  const std::size_t record_size = kRecordHeadSize + header_.page_size;
  if (buffer_.size() >= kGroup * record_size) {
    if (Status wrote = WriteOut(); !wrote.ok()) return wrote;
  }
  const std::size_t at = buffer_.size();
  buffer_.resize(at + record_size);
  const MutableBytes record = MutableBytes(buffer_).subspan(at);
  std::copy(bytes.begin(), bytes.end(), record.begin() + kRecordHeadSize);
  SealRecord(header_.transaction, page, record);
  ++records_;
  return {};
}

Status Journal::WriteOut() {
  if (buffer_.empty()) return {};
  if (Status wrote = file_->WriteAt(written_, buffer_); !wrote.ok()) return AsFileStatus(wrote);
  written_ += buffer_.size();
  buffer_.clear();
  return {};
}

Status Journal::Sync() {
  if (Status wrote = WriteOut(); !wrote.ok()) return wrote;
  if (Status flushed = file_->Flush(); !flushed.ok()) return AsFileStatus(flushed);
  if (!name_flushed_) {
    if (Status named = storage_.FlushFolder(path_); !named.ok()) return AsFileStatus(named);
    name_flushed_ = true;
  }
  return {};
}

Result<std::vector<std::uint8_t>> Journal::ReadRecords(std::uint32_t first, std::uint32_t count) {
  const std::size_t record_size = kRecordHeadSize + header_.page_size;
  std::vector<std::uint8_t> bytes(count * record_size);
  const Result<std::size_t> got = file_->ReadAt(RecordOffset(header_.page_size, first), bytes);
  if (!got.ok()) return FileError(got.error());
  if (got.value() < bytes.size()) return JournalDamaged();
  for (std::size_t at = 0; at < bytes.size(); at += record_size) {
    const auto page = CheckRecord(header_.transaction, ByteView(bytes).subspan(at, record_size));
    if (!page || *page >= header_.page_count) return JournalDamaged();
  }
  return bytes;
}

Status Journal::Check(std::uint32_t records) {
  for (std::uint32_t first = 0; first < records; first += kGroup) {
    const auto read = ReadRecords(first, std::min(kGroup, records - first));
    if (!read.ok()) return read.error();
  }
  return {};
}

Status Journal::Restore(std::uint32_t records, StoredFile& database) {
  const std::size_t page_size = header_.page_size;
  const std::size_t record_size = kRecordHeadSize + page_size;
  const StampBytes stamp = EncodeStamp({.transaction = header_.transaction, .records = records});
  for (std::uint32_t first = 0; first < records; first += kGroup) {
    Result<std::vector<std::uint8_t>> read = ReadRecords(first, std::min(kGroup, records - first));
    if (!read.ok()) return read.error();
    for (std::size_t at = 0; at < read.value().size(); at += record_size) {
      const MutableBytes record = MutableBytes(read.value()).subspan(at, record_size);
      const MutableBytes bytes = record.subspan(kRecordHeadSize);
      const PageNumber page = LoadU32(record, 0);
      // The file stays marked until all of it is restored.
      if (page == 0) std::copy(stamp.begin(), stamp.end(), bytes.begin() + kStampOffset);
      Status wrote = database.WriteAt(std::uint64_t{page} * page_size, bytes);
      if (!wrote.ok()) return AsFileStatus(wrote);
    }
  }
  return {};
}

Status UndoTransaction(Journal& journal, const Stamp& stamp, StoredFile& database) {
  const JournalHeader& header = journal.header();
  if (header.transaction != stamp.transaction) {
    return Damaged(0, "a change was interrupted, and the journal beside it is not its own");
  }
  constexpr std::size_t kPageSize = 4096;  // only Jet 4 is written
  if (header.page_size != kPageSize || header.page_count == 0) return JournalDamaged();
  if (Status whole = journal.Check(stamp.records); !whole.ok()) return whole;

  if (Status restored = journal.Restore(stamp.records, database); !restored.ok()) return restored;
  const Status sized = database.Resize(std::uint64_t{header.page_count} * header.page_size);
  if (!sized.ok()) return AsFileStatus(sized);
  if (Status flushed = database.Flush(); !flushed.ok()) return AsFileStatus(flushed);
  const Status unstamped = database.WriteAt(kStampOffset, header.unstamped);
  if (!unstamped.ok()) return AsFileStatus(unstamped);
  return AsFileStatus(database.Flush());
}

}  // namespace zent::jet
