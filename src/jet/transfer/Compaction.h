#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/Status.h"
#include "jet/storage/Storage.h"

namespace zent::jet {

struct Compaction {
  std::string source = {};
  std::string target = {};
  std::string password = {};                     ///< of the source
  std::optional<std::string> new_password = {};  ///< nothing: that of the source; empty: none
  /// Of each of the two files. Their pages are needed once: what stays in the processor's cache is
  /// worth more than many of them.
  std::size_t cache_bytes = std::size_t{2} << 20U;
  std::size_t sort_bytes = std::size_t{64} << 20U;  ///< of the keys of a table
};

/// Writes everything that a database holds into a new file, densely: all tables with their rows in
/// the order of the file, full pages, rebuilt indexes and no trace of dropped columns; AutoNumbers,
/// properties, queries, relationships, rights, linked tables and other objects as they are.
/// Collation, code page, encryption and password stay, unless a new password is given.
///
/// The source is opened exclusively and not changed: kDatabaseInUse, kOpenedExclusively,
/// kDatabaseNotFound, kInvalidPassword. A target that is there already is left alone
/// (kDatabaseExists). Files of Jet 3, and text whose order is not known, are refused (kReadOnly).
/// The new file is written beside its name (`target` + ".zent-new"), flushed and renamed: there is
/// never half a file of that name.
Status CompactDatabase(Storage& storage, const Compaction& compaction);

}  // namespace zent::jet
