#pragma once

#include <cstdint>
#include <optional>

#include "jet/schema/NewTable.h"
#include "jet/sql/execution/ResultSet.h"
#include "jet/sql/syntax/Statement.h"

/// What statements say of columns and indexes, as the schema takes it.
namespace zent::jet {

NewColumn MakeColumn(const ColumnSpecification& column);
/// A constraint without a name is called after its columns, a primary key "PrimaryKey".
NewIndex MakeIndex(const IndexSpecification& index);

/// What the values of an expression are, seen one after the other.
class SeenValues {
 public:
  void Add(const Value& value);
  /// The type that holds them all without loss; nothing when all were null.
  std::optional<ColumnType> type() const { return type_; }
  /// Of decimals: the most digits behind the point.
  std::uint8_t scale() const { return scale_; }

 private:
  std::optional<ColumnType> type_;
  std::uint8_t scale_ = 0;
};

/// A column for the values of a result: of the same type, or, for an expression, of one that holds
/// what was `seen` of it.
NewColumn MakeColumn(const ResultColumn& column, const SeenValues& seen);

}  // namespace zent::jet
