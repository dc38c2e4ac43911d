#include "database/engines/jet/JetRecordset.h"

#include "database/engines/jet/JetValues.h"

namespace zent {

JetRecordset::JetRecordset(std::unique_ptr<jet::Recordset> rows) : rows_(std::move(rows)) {
  for (const jet::Field& field : rows_->Fields()) {
    fields_.push_back({field.name, FromJet(field.type), field.size});
  }
}

Status JetRecordset::MoveFirst() {
  CancelUpdate();
  if (rows_->AtBegin() && rows_->AtEnd()) return {};  // no row to go to
  return rows_->MoveFirst();
}

Status JetRecordset::MoveNext() {
  CancelUpdate();
  return rows_->MoveNext();
}

Result<FieldValue> JetRecordset::Get(std::string_view field) {
  const Result<jet::Value> value = rows_->Get(field);
  if (!value.ok()) return value.error();
  return FromJet(value.value());
}

Status JetRecordset::Set(std::string_view field, const FieldValue& value) {
  const Result<jet::Value> made = ToJet(value);
  if (!made.ok()) return made.error();
  return rows_->Put(field, made.value());
}

Status JetRecordset::Update() {
  Status updated = rows_->Update();
  if (!updated.ok()) CancelUpdate();
  return updated;
}

void JetRecordset::CancelUpdate() {
  if (rows_->edit_mode() != jet::EditMode::None) static_cast<void>(rows_->CancelUpdate());
}

}  // namespace zent
