#pragma once

#include <vector>

#include "database/fakes/MemoryDatabase.h"

namespace zent::testing {

/// Rows of a table in memory that match a statement: found when it is opened, changed in place.
class MemoryRecordset final : public Recordset {
 public:
  MemoryRecordset(MemoryWorld& world, MemoryTable& table, const MemoryStatement& statement);

  const std::vector<RecordsetField>& Fields() const override { return fields_; }
  bool AtEnd() const override { return at_ >= rows_.size(); }
  Status MoveFirst() override;
  Status MoveNext() override;
  Result<FieldValue> Get(std::string_view field) override;
  Status Edit() override;
  Status AddNew() override;
  Status Set(std::string_view field, const FieldValue& value) override;
  Status Update() override;
  void CancelUpdate() override { state_ = State::Reading; }
  Status Delete() override;

 private:
  enum class State { Reading, Editing, Adding };

  bool HasRow() const { return !AtEnd() && !deleted_; }
  /// Error: another row has the values of a unique index.
  Status CheckKeys() const;
  /// Error: a field that is required has no value. The fake knows no other rules.
  Status CheckRequired() const;

  MemoryWorld& world_;
  MemoryTable& table_;
  std::vector<RecordsetField> fields_;
  std::vector<std::size_t> rows_;  ///< positions in the table
  std::size_t at_ = 0;
  State state_ = State::Reading;
  bool deleted_ = false;  ///< the present row
  MemoryRow changed_;
};

}  // namespace zent::testing
