#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "jet/format/TableDefinition.h"
#include "jet/format/Value.h"

/// A database as plain values, and what the engine must do with it. Only texts of small letters and
/// digits are in it: two of them have one key when they are equal.
namespace zent::jet::testing {

struct ModelColumn {
  std::string name = {};
  ColumnType type = ColumnType::Long;
  bool auto_number = false;
  bool required = false;

  bool IsLong() const { return type == ColumnType::Memo || type == ColumnType::Ole; }
};

struct ModelIndex {
  std::string name = {};
  std::vector<std::string> columns = {};
  bool unique = false;
  bool primary = false;
};

using ModelRow = std::vector<Value>;  ///< in the order of the columns

struct ModelTable {
  std::string name = {};
  int number = 0;  ///< the later made, the higher
  std::vector<ModelColumn> columns = {};
  std::vector<ModelIndex> indexes = {};
  std::map<RowPointer, ModelRow> rows = {};
  std::int32_t last_number = 0;  ///< of the AutoNumber

  std::size_t PositionOf(std::string_view column) const;
  bool HasColumn(std::string_view column) const;
  bool HasIndex(std::string_view index) const;
  bool HasPrimaryKey() const;
  bool IsIndexed(std::string_view column) const;
  ModelRow KeyOf(const ModelIndex& index, const ModelRow& row) const;
  /// What keeps the rows from having that index: kDuplicateKey, kNullInKey.
  std::set<int> FaultsOf(const ModelIndex& index) const;
};

/// An enforced relationship over one column each.
struct ModelRelation {
  std::string name = {};
  std::string table = {};       ///< the referring side
  std::string referenced = {};  ///< the other
  std::string column = {};
  std::string referenced_column = {};
  bool cascades_updates = false;
  bool cascades_deletes = false;
};

struct DatabaseModel {
  std::vector<ModelTable> tables = {};
  std::vector<ModelRelation> relations = {};

  ModelTable* Find(std::string_view table);
  const ModelTable* Find(std::string_view table) const;
  bool IsRelated(std::string_view table) const;
  /// Whether a relationship uses that column.
  bool IsRelated(std::string_view table, std::string_view column) const;

  /// Makes the change; the numbers of errors that it may be refused with when it must not be. Then
  /// the model is of no use any more: change a copy.
  std::set<int> Insert(std::string_view table, RowPointer at, const ModelRow& row);
  std::set<int> Update(std::string_view table, RowPointer at, const ModelRow& row);
  std::set<int> Delete(std::string_view table, RowPointer at);

 private:
  /// `before`: the values of a row that was there; those that stay may lack what must be given, as
  /// they do in a column that came later.
  void CheckRow(const ModelTable& table, RowPointer at, const ModelRow* before,
                std::set<int>& faults) const;
  void CascadeUpdate(const std::string& table, const ModelRow& before, const ModelRow& after,
                     std::set<int>& faults);
};

}  // namespace zent::jet::testing
