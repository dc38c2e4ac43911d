#include "database/engines/odbc/OdbcRows.h"

#include <utility>

#include "database/engines/odbc/OdbcTypes.h"
#include "database/engines/odbc/OdbcValues.h"

namespace zent {

OdbcRows::OdbcRows(std::unique_ptr<odbc::OdbcRecordset> rows, OdbcFaults& faults)
    : rows_(std::move(rows)), faults_(faults) {
  for (const odbc::OdbcColumn& column : rows_->columns()) {
    fields_.push_back({column.name, FieldTypeOf(column.type), FieldSizeOf(column.type)});
  }
}

Result<std::size_t> OdbcRows::PositionOf(std::string_view field) {
  const std::optional<std::size_t> position = rows_->Find(field);
  if (position) return *position;
  return faults_.Told(odbc::EngineError(odbc::kItemNotFound, "Item not found in this collection."));
}

Result<FieldValue> OdbcRows::Get(std::string_view field) {
  const Result<std::size_t> position = PositionOf(field);
  if (!position.ok()) return position.error();
  const Result<odbc::OdbcValue> value = faults_.Told(rows_->Value(position.value()));
  if (!value.ok()) return value.error();
  return FromOdbc(value.value(), rows_->columns()[position.value()].type);
}

Status OdbcRows::Set(std::string_view field, const FieldValue& value) {
  const Result<std::size_t> position = PositionOf(field);
  if (!position.ok()) return position.error();
  Result<odbc::OdbcValue> made =
      faults_.Told(ToOdbc(value, rows_->columns()[position.value()].type));
  if (!made.ok()) return made.error();
  return faults_.Told(rows_->Set(position.value(), std::move(made.value())));
}

}  // namespace zent
