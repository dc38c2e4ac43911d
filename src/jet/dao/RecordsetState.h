#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "jet/catalog/Table.h"
#include "jet/dao/DatabaseCore.h"
#include "jet/dao/Recordset.h"
#include "jet/dao/RowOrder.h"

namespace zent::jet {

/// What the members of Recordset work on.
struct Recordset::State {
  State(DatabaseCore& a_core, RecordsetType a_type) : core(a_core), type(a_type) {}

  /// The table that the rows are of. Opened anew after a rollback or a change of the schema.
  Result<Table*> OpenTable();
  /// kNoCurrentRecord, kObjectInvalid.
  Status CheckCurrent() const;
  Status CheckUpdatable();

  /// Takes the outcome of a move; `beyond` is where it ends without a row.
  enum class Place : std::uint8_t { Before, Row, Behind, Nowhere };
  Status Move(const RowOrder::Found& found, Place beyond);

  /// The value of the field at `position` of the list, of the current row.
  Result<Value> Stored(std::size_t position);
  Result<std::vector<Value>> DefaultValues(Table& table) const;
  Status SaveNew(Table& table);
  Status SaveChanges(Table& table);

  DatabaseCore& core;
  RecordsetType type;
  std::string table = {};  ///< empty for a copy
  Collection<Field> fields = {};
  std::vector<std::size_t> columns = {};        ///< of the fields, in the table's definition
  std::vector<std::vector<Value>> copied = {};  ///< rows of a copy; their pointers count them
  std::unique_ptr<RowOrder> order = {};
  std::optional<std::size_t> index = {};  ///< real index that orders the rows

  Place place = Place::Behind;
  bool empty = true;  ///< both ends at once
  RowPointer row = {};
  RowPointer last_modified = {};
  bool no_match = false;

  Table* kept_table = nullptr;   ///< by OpenTable, for as long as the catalog keeps it
  std::uint64_t generation = 0;  ///< of the catalog then

  EditMode mode = EditMode::None;
  std::vector<Value> values = {};  ///< of the row in work, by position in the definition
  std::vector<bool> touched = {};  ///< those that were given
};

/// A row of a copy as a row pointer, and back.
inline RowPointer CopiedRow(std::size_t row) {
  return RowPointer::FromPacked(static_cast<std::uint32_t>(row));
}

}  // namespace zent::jet
