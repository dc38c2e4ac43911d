#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/Status.h"
#include "jet/format/Value.h"

namespace zent::jet {

class Catalog;

struct TableCopy {
  std::string table = {};     ///< a local table of the source
  std::string new_name = {};  ///< of the copy; empty: the same name
  bool rows = true;           ///< false: the structure alone
  Date created = {};          ///< written as the date of the copy
  /// Bytes of keys that are sorted in memory; what goes beyond is sorted in parts. For tests.
  std::size_t sort_bytes = std::size_t{32} << 20U;
};

/// Copies a table with its fields, properties, indexes and rows into another open database (or, by
/// another name, into the same one) and returns how many rows it got. The AutoNumber goes on where
/// that of the source stands. Relationships, and the indexes that stand for nothing else, stay
/// behind; dropped columns leave no gap.
///
/// `target` needs an open transaction; a copy that fails half way leaves it fit for a rollback
/// only. Refused before anything is touched: kNoSuchTable, kTableExists, kReadOnly (also for text
/// whose order is not known). A source of Jet 3 is converted.
Result<std::int64_t> CopyTable(Catalog& source, Catalog& target, const TableCopy& copy);

}  // namespace zent::jet
