#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/storage/JournalFormat.h"
#include "jet/storage/Storage.h"

namespace zent::jet {

/// The rollback journal of one database: what its pages held before a transaction. See
/// JournalFormat.h for what makes it count.
class Journal {
 public:
  /// "Korvo.mdb-journal" for "Korvo.mdb", in the same folder.
  static std::string PathFor(std::string_view database);

  /// Creates the journal, or opens the one left over to be written anew.
  static Result<std::unique_ptr<Journal>> Create(Storage& storage, std::string_view database);
  /// Opens one to be read. kFileNotFound where there is none, kCannotOpenDatabase when its header
  /// is damaged.
  static Result<std::unique_ptr<Journal>> Open(Storage& storage, std::string_view database);

  /// Begins a transaction: what the journal held counts no more.
  void Start(const JournalHeader& header);
  /// Adds what a page holds in the file. Reaches the disk with Sync at the latest. After an error
  /// the record is not in the journal.
  Status Add(PageNumber page, ByteView bytes);
  /// Returns when all records, and the journal's name, are on disk.
  Status Sync();

  const JournalHeader& header() const { return header_; }
  /// Records added since Start.
  std::uint32_t records() const { return records_; }

  /// kCannotOpenDatabase unless the first `records` records are whole.
  Status Check(std::uint32_t records);
  /// Writes the pages of the first `records` records back into the database, the stamp left on.
  Status Restore(std::uint32_t records, StoredFile& database);

 private:
  Journal(Storage& storage, std::string path, std::unique_ptr<StoredFile> file, bool is_new);

  Status WriteOut();
  Result<std::vector<std::uint8_t>> ReadRecords(std::uint32_t first, std::uint32_t count);

  Storage& storage_;
  std::string path_;
  std::unique_ptr<StoredFile> file_;
  bool name_flushed_;
  JournalHeader header_;
  std::uint32_t records_ = 0;
  std::vector<std::uint8_t> buffer_;  ///< what follows `written_`
  std::uint64_t written_ = 0;         ///< bytes of the journal that the file has
};

/// Puts a stamped database back to what it was before that transaction, and takes the stamp off.
/// The journal is checked whole before anything is written; being interrupted does no harm.
Status UndoTransaction(Journal& journal, const Stamp& stamp, StoredFile& database);

}  // namespace zent::jet
