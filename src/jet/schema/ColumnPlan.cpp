#include "jet/schema/ColumnPlan.h"

#include <algorithm>

#include "jet/format/JetErrors.h"
#include "jet/format/TextKey.h"
#include "jet/schema/Names.h"

namespace zent::jet {
namespace {

constexpr std::uint16_t kMaxBinary = 255;     // bytes
constexpr std::uint8_t kMaxPrecision = 28;    // digits
constexpr std::size_t kRowFrame = 2 + 2 + 2;  // column count, end of data, count of slots

/// Type by type: how long, and whether it lies in the fixed area.
Status SetSize(const NewColumn& column, ColumnDefinition& planned) {
  switch (column.type) {
    case ColumnType::Text:
    case ColumnType::Binary: {
      const bool text = column.type == ColumnType::Text;
      if (column.size == 0 || column.size > (text ? kMaxTextUnits : kMaxBinary)) {
        return JetErrorBecause(kFieldTooSmall, "a size from 1 to 255 is wanted");
      }
      planned.length = static_cast<std::uint16_t>(text ? 2 * column.size : column.size);
      if (column.fixed) planned.flags |= kFixedColumn;
      return {};
    }
    case ColumnType::Memo:
    case ColumnType::Ole:
      return {};
    case ColumnType::Numeric:
      if (column.precision == 0 || column.precision > kMaxPrecision ||
          column.scale > column.precision) {
        return JetErrorBecause(kInvalidFieldType, "precision and scale do not go together");
      }
      planned.details = {column.precision, column.scale, 0, 0};
      break;
    case ColumnType::Internal:
      return JetError(kInvalidFieldType);
    default:
      break;
  }
  const bool is_bool = column.type == ColumnType::Bool;
  const std::size_t size = is_bool ? 1 : FixedSizeOf(column.type);
  if (size == 0) return JetError(kInvalidFieldType);
  planned.length = static_cast<std::uint16_t>(size);
  planned.flags |= kFixedColumn;
  return {};
}

/// What holds for some types alone.
Status SetFlags(const NewColumn& column, ColumnDefinition& planned) {
  if (column.auto_number) {
    if (column.type == ColumnType::Long) {
      planned.flags |= kAutoNumberColumn;
    } else if (column.type == ColumnType::Guid) {
      planned.flags |= kGuidAutoNumberColumn;
    } else {
      return JetErrorBecause(kInvalidFieldType, "only long and GUID fields count by themselves");
    }
  }
  if (column.hyperlink) {
    if (column.type != ColumnType::Memo) return JetError(kInvalidFieldType);
    planned.flags |= kHyperlinkColumn;
  }
  if (IsText(column.type) && column.compressed && !planned.IsFixed()) {
    planned.extended_flags |= kCompressedColumn;
  }
  return {};
}

}  // namespace

Result<ColumnDefinition> PlanColumn(const NewColumn& column) {
  if (Status named = CheckName(column.name); !named.ok()) return named.error();
  ColumnDefinition planned{.name = column.name, .type = column.type};
  if (Status sized = SetSize(column, planned); !sized.ok()) return sized.error();
  if (Status flagged = SetFlags(column, planned); !flagged.ok()) return flagged.error();
  return planned;
}

void PlaceColumn(ColumnDefinition column, std::size_t fixed_end, TableDefinition& table) {
  column.number = table.max_columns++;
  column.slot = table.variable_slots;
  if (!column.IsFixed()) {
    ++table.variable_slots;
  } else if (column.type != ColumnType::Bool) {
    column.fixed_offset = static_cast<std::uint16_t>(std::max(fixed_end, table.FixedAreaSize()));
  }
  table.columns.push_back(std::move(column));
}

Status CheckColumns(const TableDefinition& table) {
  if (table.columns.empty()) return JetErrorBecause(kInvalidArgument, "a table without fields");
  if (table.max_columns > kMaxColumns) return JetError(kTooManyFields);
  for (auto one = table.columns.begin(); one != table.columns.end(); ++one) {
    const bool twice = std::any_of(one + 1, table.columns.end(), [&](const ColumnDefinition& two) {
      return SameKey(one->name, two.name);
    });
    if (twice) return JetError(kFieldDefinedTwice, one->name);
  }
  const auto numbers =
      std::count_if(table.columns.begin(), table.columns.end(),
                    [](const ColumnDefinition& column) { return column.IsAutoNumber(); });
  if (numbers > 1) return JetErrorBecause(kInvalidFieldType, "a table has one AutoNumber");
  const std::size_t row = kRowFrame + table.FixedAreaSize() +
                          std::size_t{2} * table.variable_slots + (table.max_columns + 7U) / 8U;
  if (row > LayoutOf(table.version).data.max_row) return JetError(kRecordTooLarge);
  return {};
}

}  // namespace zent::jet
