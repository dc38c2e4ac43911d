#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "jet/format/JetErrors.h"
#include "jet/storage/FileLocks.h"
#include "jet/storage/LockFile.h"
#include "jet/storage/PageCache.h"
#include "jet/storage/PageFile.h"
#include "jet/storage/Pager.h"
#include "jet/storage/UndoLog.h"

namespace zent::jet {

/// An open database file, before its pages are looked at.
struct OpenedFile {
  std::unique_ptr<StoredFile> file;
  std::unique_ptr<LockFile> lock_file;  ///< none when exclusive, or when the folder takes none
  FileHeader header;
};

/// Opens `path` as the options say, enters the lock file and undoes an interrupted transaction.
Result<OpenedFile> OpenDatabaseFile(Storage& storage, const std::string& path,
                                    const PagerOptions& options);

/// Undoes the transaction that `file` is stamped with, if it still is, keeping readers and writers
/// out meanwhile.
Status Recover(Storage& storage, const std::string& path, StoredFile& file, FileLocks& locks);
/// As Recover, by opening the file once more, for writing.
Status RecoverByOpening(Storage& storage, const std::string& path, const PagerOptions& options);

/// A part of a transaction that can be undone alone: the pages that it changed, as they were
/// before.
struct PagerPart {
  int depth = 0;  ///< of its Begin
  PageNumber page_count = 0;
  bool lost = false;  ///< not all that it changed is known
  std::unordered_map<PageNumber, std::vector<std::uint8_t>> pages = {};
};

/// What the members of Pager work on.
struct Pager::Core {
  Core(Storage& storage, std::string path, const PagerOptions& options, OpenedFile opened);

  // Reading (PagerRead.cpp).
  Status CheckUsable() const;
  /// Takes the read lock over a committed state and forgets what was read before.
  Status Enter();
  Status Refresh();
  Result<PageFrame*> Load(PageNumber page);
  Status Fill(const std::vector<PageFrame*>& frames);
  /// Makes room for at least one frame.
  Status MakeRoom();

  // Changing (PagerWrite.cpp).
  Status CheckChange() const;
  Status Spill();
  Status WritePages(const std::vector<PageNumber>& pages);
  Status WriteGroup(const std::vector<PageFrame*>& group);
  Status WriteChanges();
  Status Discard();
  void EndTransaction();
  // Parts of a transaction (PagerParts.cpp).
  /// Keeps what the page holds before the innermost part changes it.
  void KeepForPart(const PageFrame& frame);
  /// The part that began at the present depth, if there is one, belongs to what is around it.
  void JoinPart();
  bool InPartOfDepth() const { return !parts.empty() && parts.back().depth == depth; }
  Status UndoPart();
  Status PutBack(const PagerPart& part);

  /// Ends the transaction by undoing it; `cause`, unless undoing failed as well.
  Status Abandon(const Status& cause);

  Storage& storage;
  std::string path;
  PagerOptions options;
  bool exclusive;
  FileHeader header;
  const Layout& layout;
  std::unique_ptr<StoredFile> file;
  std::unique_ptr<LockFile> lock_file;
  FileLocks locks;
  PagerCounters counters;
  PageFile pages;
  PageCache cache;
  UndoLog undo;
  ReadAhead read_ahead;

  PageNumber page_count = 0;
  int scopes = 0;                      ///< open read scopes
  int depth = 0;                       ///< open Begins
  PageNumber original_count = 0;       ///< pages before the transaction
  bool shrunk = false;                 ///< the file must be cut at the commit
  bool doomed = false;                 ///< the transaction can only be rolled back
  std::vector<PagerPart> parts;        ///< the innermost last
  std::optional<RuntimeError> broken;  ///< why nothing works any more
};

}  // namespace zent::jet
