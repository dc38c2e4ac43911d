#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/Status.h"
#include "jet/format/IndexKey.h"
#include "jet/format/RowCodec.h"
#include "jet/store/LongValues.h"
#include "jet/store/RowFields.h"
#include "jet/store/TableStore.h"
#include "jet/transfer/KeySorter.h"
#include "jet/transfer/RowAppender.h"

namespace zent::jet {

/// Fills an empty table: rows on full pages in the order in which they come, then its indexes, each
/// from its sorted keys. Rows are not held to rules, but to the indexes (kNullInKey,
/// kDuplicateKey). Within an open transaction, which is fit for a rollback only once this fails.
class TableLoader {
 public:
  /// kReadOnly for an index over text whose order is not known. `sort_bytes` is shared by the
  /// indexes.
  static Result<std::unique_ptr<TableLoader>> Open(UsageMaps& maps, PageNumber definition_page,
                                                   std::size_t sort_bytes);

  const TableDefinition& table() const { return table_; }

  /// The fields of a row; long values that are there are not stored yet.
  Status Add(RowFields& fields);
  /// The bytes of a row of this very layout; its long values are stored.
  Status AddStored(ByteView row);
  /// Stores a long value of the column of that number and returns its field; `apart`: outside of
  /// the row in any case.
  Result<std::string> StoreLongValue(std::uint16_t column, ByteView value, bool apart = false);

  /// Builds the indexes and writes the counters. `compacted`: the file is being made anew.
  Status Finish(bool compacted);
  std::uint32_t rows() const { return rows_; }

 private:
  struct LoadedIndex {
    std::vector<KeyColumn> key_columns;
    std::vector<const ColumnDefinition*> columns;
    bool required = false;
    bool ignores_nulls = false;
    std::unique_ptr<IndexTree> tree;
    std::unique_ptr<KeySorter> sorter;
  };

  TableLoader(UsageMaps& maps, StoredDefinition definition);
  Status StoreLongValues(RowFields& fields);
  Status OpenIndexes(std::size_t sort_bytes);
  /// Appends the key of one column to that of the row, and counts it where it is null.
  Status AppendColumn(const ColumnDefinition& column, const KeyColumn& key_column,
                      const RowView& row, RowPointer at, std::string& key, std::size_t& nulls);
  Status AddKey(LoadedIndex& index, const RowView& row, RowPointer at);
  Status WriteCounter(std::size_t offset, std::uint32_t value);

  UsageMaps& maps_;
  TableDefinition table_;
  std::vector<PageNumber> pages_;
  RowAppender appender_;
  RowBuilder builder_;
  std::vector<LoadedIndex> indexes_;
  std::map<std::uint16_t, RowAppender> long_values_;  ///< by number of the column
  std::uint32_t rows_ = 0;
};

}  // namespace zent::jet
