#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/Status.h"
#include "jet/format/IndexKey.h"
#include "jet/format/TableDefinition.h"
#include "jet/store/IndexTree.h"
#include "jet/store/RowFields.h"

namespace zent::jet {

/// An index of a table: its tree, and what its keys are made of.
class TableIndex {
 public:
  /// `position` is the place among the real indexes of `table`.
  static Result<TableIndex> Open(UsageMaps& maps, PageNumber page, const TableDefinition& table,
                                 std::size_t position);

  IndexTree& tree() { return tree_; }
  std::size_t position() const { return position_; }
  bool unique() const { return unique_; }
  const std::vector<KeyColumn>& key_columns() const { return key_columns_; }
  /// The positions of its columns in the definition.
  const std::vector<std::size_t>& columns() const { return columns_; }

  /// What a row is found by. No key: the index leaves the row out.
  struct RowKey {
    std::optional<std::string> key = {};
    bool has_null = false;
    bool all_null = false;
  };
  /// `page` is that of the row, for errors.
  Result<RowKey> KeyOf(const TableDefinition& table, const RowFields& fields, PageNumber page);

  /// Whether a row may come in with that key: kNullInKey, kDuplicateKey, kRecordTooLarge.
  Status Check(const RowKey& key);

 private:
  TableIndex(const IndexTree& tree, std::size_t position) : tree_(tree), position_(position) {}

  IndexTree tree_;
  std::size_t position_;
  bool unique_ = false;
  bool required_ = false;
  bool ignores_nulls_ = false;
  std::vector<KeyColumn> key_columns_;
  std::vector<std::size_t> columns_;
  std::vector<Value> values_;  ///< of one key; kept for the next
};

}  // namespace zent::jet
