#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/storage/Journal.h"
#include "jet/storage/JournalFormat.h"
#include "jet/storage/PageFile.h"
#include "jet/storage/Storage.h"

namespace zent::jet {

/// What undoes one transaction after the other of a database: its journal and its stamp.
class UndoLog {
 public:
  UndoLog(Storage& storage, std::string path, PageFile& pages, PagerCounters& counters);

  /// A transaction begins over a database of so many pages.
  void Begin(PageNumber page_count);
  /// Keeps what `page` holds in the file unless that was done. Pages that the transaction added
  /// need nothing.
  Status Keep(const PageFrame& clean_frame);
  Status KeepStored(PageNumber page);

  /// After this pages may be overwritten: what was kept is on disk and the file says so.
  Status Arm();
  /// The file has been changed since Begin, or may have been.
  bool armed() const { return armed_; }
  /// Whether anything was kept.
  bool started() const { return started_; }
  /// What belongs in the file in the place of the stamp, while armed and else.
  const StampBytes& stamp() const { return stamp_; }
  const StampBytes& unstamped() const { return unstamped_; }

  /// Takes the stamp off: with this the transaction is committed.
  Status Disarm();
  /// Puts the file back to what it was at Begin.
  Status Undo();

  /// Deletes the journal file; a failure leaves one that means nothing.
  void RemoveJournal();

 private:
  Status Start();
  bool IsKept(PageNumber page) const { return page >= page_count_ || kept_[page]; }
  Status Add(PageNumber page, ByteView bytes);
  Status WriteStamp(const StampBytes& bytes);

  Storage& storage_;
  std::string path_;
  PageFile& pages_;
  PagerCounters& counters_;
  std::unique_ptr<Journal> journal_;
  PageNumber page_count_ = 0;
  std::vector<bool> kept_;
  bool started_ = false;
  bool armed_ = false;
  std::uint32_t stamped_records_ = 0;
  StampBytes stamp_ = {};
  StampBytes unstamped_ = {};
};

/// Removes a journal that means nothing, the database having no stamp: deletes one of this database
/// and a damaged one, renames one of another to "...-journal-other".
Status ClearLeftover(Storage& storage, std::string_view path, std::uint64_t database);

/// The stamp of an open file, if it has one.
Result<std::optional<Stamp>> ReadStamp(StoredFile& file);

/// Undoes the interrupted transaction that `file`, which nobody else may read meanwhile, is stamped
/// with, and removes the journal. kCannotOpenDatabase, and nothing changed, when the journal is
/// missing, damaged or not its own.
Status UndoInterrupted(Storage& storage, std::string_view path, const Stamp& stamp,
                       StoredFile& file);

}  // namespace zent::jet
