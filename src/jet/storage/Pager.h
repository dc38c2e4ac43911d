#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/format/FileHeader.h"
#include "jet/format/Layout.h"
#include "jet/storage/LockFile.h"
#include "jet/storage/PageCache.h"
#include "jet/storage/PageFile.h"
#include "jet/storage/Storage.h"

namespace zent::jet {

struct PagerOptions {
  Sharing sharing = Sharing::Exclusive;
  User user = {};                            ///< written to the .ldb unless exclusive
  std::size_t cache_bytes = 64U << 20U;      ///< bound of the pages held in memory
  int lock_attempts = 100;                   ///< how often a lock is tried ...
  std::chrono::milliseconds lock_pause{50};  ///< ... and the pause in between
  std::string like = {};  ///< Create: the file whose owner and rights the new one gets
};

/// The pages of one database file: cached, decrypted, changed in transactions.
///
/// Reading. `Read` gives a pinned view of a page. In a file opened Shared or ReadOnly others may
/// commit between two calls: a ReadScope keeps them from it, and within one everything read is
/// one committed state. Without a scope each Read is a scope of its own. Opened Exclusive, scopes
/// cost nothing.
///
/// Writing. `Begin`, `Edit` / `Append` / `Shrink`, then `Commit` or `Rollback`; changes outside a
/// transaction are refused (kInvalidOperation). A transaction is a read scope, and only one at a
/// time is open in all processes. Before a page of the file is overwritten its old contents are in
/// the journal (path + "-journal", see JournalFormat.h) and flushed; the file after a commit, or
/// after one interrupted at any point and the recovery at the next open, is the state after or
/// before the transaction, byte for byte. A failed change leaves its transaction as it was before
/// the call; a failed Commit rolls back. If even that fails, every later call fails, and the next
/// open recovers.
///
/// Refused before anything changes: writing a file opened ReadOnly or one of Jet 3 (kReadOnly), a
/// file that would exceed its limit (kDatabaseTooLarge), and writing while a program that does not
/// take part in our locks has a user slot (kDatabaseInUse).
///
/// The 32 bytes of page 0 from kStampOffset on, which the format leaves zero, are the pager's.
/// Pinned pages (PageView, PageEdit) must not outlive the pager. One thread at a time.
class Pager {
 public:
  /// Opens the file, undoing a transaction that was interrupted. A file opened ReadOnly is opened
  /// for writing a moment for that; when this is not allowed, the error is kCannotOpenFile.
  static Result<std::unique_ptr<Pager>> Open(Storage& storage, std::string_view path,
                                             const PagerOptions& options);

  /// Creates a file of one page, page 0, and opens it Exclusive whatever the options say.
  static Result<std::unique_ptr<Pager>> Create(Storage& storage, std::string_view path,
                                               ByteView header_page, const PagerOptions& options);

  /// Rolls back an open transaction, gives back locks and the user slot.
  ~Pager();
  Pager(const Pager&) = delete;
  Pager& operator=(const Pager&) = delete;

  JetVersion version() const;
  const Layout& layout() const;
  std::size_t page_size() const;
  /// Pages of the file, with those appended in the open transaction. Of a file that others may
  /// write: as of the last scope.
  PageNumber page_count() const;
  const std::string& path() const;
  Sharing sharing() const;
  /// kReadOnly, or the reason in another error, when Begin cannot succeed for good; else ok.
  Status Writable() const;
  const PagerCounters& counters() const;
  /// Users with the file open, ourselves included; empty when opened Exclusive.
  Result<std::vector<User>> Users();

  /// A page of the file. kCannotOpenDatabase for a number beyond the end.
  Result<PageView> Read(PageNumber page);

  /// A page to change. The view of an earlier Read of it sees the changes.
  Result<PageEdit> Edit(PageNumber page);
  /// A new page at the end, all zero.
  Result<PageEdit> Append();
  /// Cuts the file down to `page_count` pages (at least 1). Pages cut off must not be pinned.
  Status Shrink(PageNumber page_count);

  /// Opens a transaction. Within one it only counts: the inner Commit keeps the changes for the
  /// outer one to decide.
  Status Begin();
  /// As an inner Begin, of a part that its Rollback undoes alone: the outer transaction goes on as
  /// if the part had never begun. A part of more than kMaxPartPages changed pages, or one that cuts
  /// the file, is as an ordinary Begin.
  Status BeginPart();
  static constexpr std::size_t kMaxPartPages = 4096;
  Status Commit();
  /// Undoes everything since the outermost Begin. On an inner level that is no part the outer
  /// transaction (or the part around it) stays open but refuses all but its own Rollback (its
  /// Commit fails and ends it).
  Status Rollback();
  bool in_transaction() const;

  /// Use ReadScope.
  Status BeginRead();
  void EndRead();

 private:
  struct Core;
  explicit Pager(std::unique_ptr<Core> core);
  std::unique_ptr<Core> core_;
};

/// One committed state for all reads while it lives. May be nested.
class ReadScope {
 public:
  explicit ReadScope(Pager& pager) : pager_(pager), status_(pager.BeginRead()) {}
  ~ReadScope() {
    if (status_.ok()) pager_.EndRead();
  }
  ReadScope(const ReadScope&) = delete;
  ReadScope& operator=(const ReadScope&) = delete;

  /// Why the state cannot be read; else ok.
  const Status& status() const { return status_; }

 private:
  Pager& pager_;
  Status status_;
};

/// A transaction of pages that rolls back unless committed.
class PageTransaction {
 public:
  explicit PageTransaction(Pager& pager)
      : pager_(pager), status_(pager.Begin()), open_(status_.ok()) {}
  ~PageTransaction() {
    if (open_) static_cast<void>(pager_.Rollback());
  }
  PageTransaction(const PageTransaction&) = delete;
  PageTransaction& operator=(const PageTransaction&) = delete;

  /// Why it could not begin; else ok.
  const Status& status() const { return status_; }
  Status Commit() {
    open_ = false;
    return pager_.Commit();
  }

 private:
  Pager& pager_;
  Status status_;
  bool open_;
};

}  // namespace zent::jet
