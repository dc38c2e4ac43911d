#include "jet/sql/execution/NewDefinitions.h"

#include <algorithm>

#include "jet/sql/execution/MadeNames.h"

namespace zent::jet {
namespace {

constexpr std::uint8_t kMostDigits = 28;
constexpr std::uint8_t kCurrencyDecimals = 4;

/// How much numbers of that type hold; each holds what those before it do. 0: no number.
int RankOf(ColumnType type) {
  switch (type) {
    case ColumnType::Bool:  // -1 and 0
    case ColumnType::Byte:
      return 1;
    case ColumnType::Int:
      return 2;
    case ColumnType::Long:
      return 3;
    case ColumnType::Currency:
      return 4;
    case ColumnType::Numeric:
      return 5;
    case ColumnType::Single:
    case ColumnType::Date:
    case ColumnType::Double:
      return 6;
    default:
      return 0;
  }
}

/// A type that holds the values of two types.
ColumnType TypeOfBoth(ColumnType a, ColumnType b) {
  if (a == b) return a;
  const int rank = std::max(RankOf(a), RankOf(b));
  if (RankOf(a) == 0 || RankOf(b) == 0) return ColumnType::Text;
  if (rank == 1) return ColumnType::Int;
  if (rank == RankOf(ColumnType::Double)) return ColumnType::Double;
  return RankOf(a) == rank ? a : b;
}

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
  if (index.name.empty()) made.name = index.primary ? "PrimaryKey" : CutName(made.name);
  return made;
}

void SeenValues::Add(const Value& value) {
  if (IsNull(value)) return;
  const ColumnType type = TypeOf(value);
  if (type == ColumnType::Currency) scale_ = std::max(scale_, kCurrencyDecimals);
  if (const auto* const decimal = std::get_if<Decimal>(&value)) {
    scale_ = std::max(scale_, decimal->scale);
  }
  type_ = type_ ? TypeOfBoth(*type_, type) : type;
}

NewColumn MakeColumn(const ResultColumn& column, const SeenValues& seen) {
  NewColumn made{.name = column.name};
  if (!column.type) {
    made.type = seen.type().value_or(ColumnType::Text);
    // What an expression gives may be longer in the next row.
    if (made.type == ColumnType::Text) made.type = ColumnType::Memo;
    if (made.type == ColumnType::Binary) made.type = ColumnType::Ole;
    made.precision = kMostDigits;
    made.scale = seen.scale();
  } else {
    made.type = *column.type;
    if (made.type == ColumnType::Text || made.type == ColumnType::Binary) made.size = column.size;
    if (made.type == ColumnType::Numeric) {
      made.precision = column.precision;
      made.scale = column.scale;
    }
  }
  return made;
}

}  // namespace zent::jet
