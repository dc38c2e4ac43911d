#pragma once

#include <memory>
#include <vector>

#include "database/engines/odbc/OdbcFaults.h"
#include "database/port/Recordset.h"
#include "odbc/OdbcRecordset.h"

namespace zent {

/// Rows of a server.
class OdbcRows final : public Recordset {
 public:
  /// `faults` outlives this.
  OdbcRows(std::unique_ptr<odbc::OdbcRecordset> rows, OdbcFaults& faults);

  const std::vector<RecordsetField>& Fields() const override { return fields_; }
  bool AtEnd() const override { return rows_->AtEnd(); }
  Status MoveFirst() override { return faults_.Told(rows_->MoveFirst()); }
  Status MoveNext() override { return faults_.Told(rows_->MoveNext()); }
  Result<FieldValue> Get(std::string_view field) override;
  Status Edit() override { return faults_.Told(rows_->Edit()); }
  Status AddNew() override { return faults_.Told(rows_->AddNew()); }
  Status Set(std::string_view field, const FieldValue& value) override;
  Status Update() override { return faults_.Told(rows_->Update()); }
  void CancelUpdate() override { rows_->CancelUpdate(); }
  Status Delete() override { return faults_.Told(rows_->Delete()); }

 private:
  Result<std::size_t> PositionOf(std::string_view field);

  std::unique_ptr<odbc::OdbcRecordset> rows_;
  OdbcFaults& faults_;
  std::vector<RecordsetField> fields_;
};

}  // namespace zent
