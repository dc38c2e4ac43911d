#include "jet/sql/execution/NewDefinitions.h"

namespace zent::jet {
namespace {

constexpr std::size_t kLongestName = 64;
constexpr std::uint16_t kUnitSize = 2;
constexpr std::uint8_t kMostDigits = 28;

}  // namespace

NewColumn MakeColumn(const ColumnSpecification& column) {
  NewColumn made{.name = column.name, .type = column.type};
  if (column.size > 0) made.size = column.size;
  if (column.precision > 0) made.precision = column.precision;
  made.scale = column.scale;
  made.auto_number = column.auto_number;
  made.required = column.required;
  return made;
}

NewIndex MakeIndex(const IndexSpecification& index) {
  NewIndex made{.name = index.name,
                .unique = index.unique,
                .primary = index.primary,
                .required = index.disallow_null,
                .ignore_nulls = index.ignore_null};
  for (const IndexTerm& term : index.columns) {
    made.columns.push_back({term.column, term.descending});
    if (index.name.empty() && !index.primary) made.name += term.column;
  }
  if (index.name.empty() && index.primary) made.name = "PrimaryKey";
  if (made.name.size() > kLongestName) made.name.resize(kLongestName);
  return made;
}

NewColumn MakeColumn(const ResultColumn& column, const Value& sample) {
  NewColumn made{.name = column.name};
  if (!column.type) {
    made.type = IsNull(sample) ? ColumnType::Text : TypeOf(sample);
    // What an expression gives may be longer in the next row.
    if (made.type == ColumnType::Text) made.type = ColumnType::Memo;
    if (made.type == ColumnType::Binary) made.type = ColumnType::Ole;
  } else {
    made.type = *column.type;
    if (made.type == ColumnType::Text) made.size = column.size / kUnitSize;
    if (made.type == ColumnType::Binary) made.size = column.size;
  }
  if (const auto* const decimal = std::get_if<Decimal>(&sample)) {
    made.precision = kMostDigits;
    made.scale = decimal->scale;
  }
  return made;
}

}  // namespace zent::jet
