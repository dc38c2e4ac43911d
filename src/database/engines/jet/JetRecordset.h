#pragma once

#include <memory>
#include <vector>

#include "database/port/Recordset.h"
#include "jet/dao/Recordset.h"

namespace zent {

/// Rows of an Access file.
class JetRecordset final : public Recordset {
 public:
  explicit JetRecordset(std::unique_ptr<jet::Recordset> rows);

  const std::vector<RecordsetField>& Fields() const override { return fields_; }
  bool AtEnd() const override { return rows_->AtEnd(); }
  Status MoveFirst() override;
  Status MoveNext() override;
  Result<FieldValue> Get(std::string_view field) override;
  Status Edit() override { return rows_->Edit(); }
  Status AddNew() override { return rows_->AddNew(); }
  Status Set(std::string_view field, const FieldValue& value) override;
  Status Update() override;
  void CancelUpdate() override;
  Status Delete() override { return rows_->Delete(); }

 private:
  std::unique_ptr<jet::Recordset> rows_;
  std::vector<RecordsetField> fields_;
};

}  // namespace zent
