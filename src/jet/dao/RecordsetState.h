#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/catalog/Table.h"
#include "jet/dao/DatabaseCore.h"
#include "jet/dao/Recordset.h"
#include "jet/dao/RowOrder.h"

namespace zent::jet {

/// The place of a column that the table no longer has.
inline constexpr std::size_t kGone = static_cast<std::size_t>(-1);

/// The real index of that name: kNotAnIndex.
Result<std::size_t> RealIndexOf(const TableDefinition& table, std::string_view name);

/// What the members of Recordset work on.
struct Recordset::State {
  State(DatabaseCore& a_core, RecordsetType a_type) : core(a_core), type(a_type) {}

  /// The table that the rows are of. Opened anew after a rollback or a change of the schema.
  Result<Table*> OpenTable();
  /// Finds the fields' columns and the index in a table that was opened anew. What is gone is
  /// missed when it is used; a row in work that has other columns by now cannot be saved.
  void Adopt(const Table& opened);
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
  std::vector<std::size_t> columns = {};        ///< of the fields, in the definition; kGone
  std::vector<std::uint16_t> numbers = {};      ///< of all columns of the definition
  std::vector<std::vector<Value>> copied = {};  ///< rows of a copy; their pointers count them
  std::unique_ptr<RowOrder> order = {};
  std::string index_name = {};            ///< of the index that orders the rows; or empty
  std::optional<std::size_t> index = {};  ///< its real index, as long as there is one

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
