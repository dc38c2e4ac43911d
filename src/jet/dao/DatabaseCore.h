#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/Status.h"
#include "jet/catalog/Catalog.h"
#include "jet/dao/Workspace.h"
#include "jet/sql/execution/SqlSession.h"
#include "jet/storage/Pager.h"

namespace zent::jet {

/// What an open database is, for its parts.
struct DatabaseCore {
  DatabaseCore(Storage& a_storage, const WorkspaceOptions& some_options, OpenDatabases& others)
      : storage(a_storage), options(some_options), open_databases(others) {}

  Storage& storage;
  const WorkspaceOptions& options;
  OpenDatabases& open_databases;  ///< those of the workspace, this one among them
  std::string name = {};
  std::unique_ptr<Pager> pager = {};      ///< null once closed
  std::unique_ptr<Catalog> catalog = {};  ///< null once closed
  bool read_only = false;                 ///< as asked for, whatever the file allows
  int levels = 0;                         ///< of BeginTrans
  std::int64_t records_affected = 0;

  /// Opens the file `name`.
  Status Open(Sharing sharing, const std::string& password);
  /// kObjectInvalid once closed.
  Status CheckOpen() const;
  /// kReadOnly, or why else nothing can be changed.
  Status Writable() const;
  EvaluationContext context() const;
  Date now() const { return options.now ? options.now() : Date(); }
  void Close();

  /// Opens a transaction, or a part of the open one that can be undone alone. A transaction sees
  /// tables as other users have left them.
  Status Begin();
  Status Commit();
  /// The catalog forgets what it read meanwhile.
  Status Rollback();

  /// Runs `step` over one state of the file.
  Status ReadWhole(const std::function<Status()>& step);
  /// Runs `change` as a whole: committed at once unless a transaction is open, undone when it
  /// fails. What the open transaction did before stays.
  Status Change(const std::function<Status()>& change);
};

}  // namespace zent::jet
