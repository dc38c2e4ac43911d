#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "database/port/FieldType.h"
#include "database/port/FieldValue.h"

namespace zent {

struct RecordsetField {
  std::string name;
  FieldType type = FieldType::Unknown;
  std::int32_t size = 0;  ///< as in FieldDefinition
};

/// The rows of a table or of a SELECT, one of them the present one; at first the first row. Rows
/// are fetched as they are needed: memory does not grow with their number.
///
/// Rows may be changed while they are walked (Edit .. Update, Delete), also by statements beside
/// the walk: each row that was there at the start and is still there is met exactly once; whether
/// rows added meanwhile are met is the engine's own business.
class Recordset {
 public:
  /// Closes it, giving up a change that has not been saved.
  virtual ~Recordset() = default;

  virtual const std::vector<RecordsetField>& Fields() const = 0;

  /// True behind the last row, and at once when there is none.
  virtual bool AtEnd() const = 0;
  virtual Status MoveFirst() = 0;
  /// Gives up a change that has not been saved. Behind the last row: 3021.
  virtual Status MoveNext() = 0;

  /// A field of the present row, or what has been set of it since Edit or AddNew. The name is
  /// matched without regard to case. Errors: kEngineItemNotFound; 3021 without a present row.
  virtual Result<FieldValue> Get(std::string_view field) = 0;

  /// Begins a change of the present row, or a new row; Update saves it and Get then gives the
  /// present row again: after AddNew that is the row from before. What fails in Update has changed
  /// nothing and stays as not begun.
  virtual Status Edit() = 0;
  virtual Status AddNew() = 0;
  /// Errors: 3020 outside Edit and AddNew, 3163 a text too long, 3421 a value of a wrong type.
  virtual Status Set(std::string_view field, const FieldValue& value) = 0;
  /// Error kEngineWriteConflict: the row is no longer as it was when read, as far as servers
  /// compare values: not long texts, long bytes and floating-point numbers. An engine that cannot
  /// tell whether exactly one row was changed says so by an error and changes none.
  virtual Status Update() = 0;
  virtual void CancelUpdate() = 0;
  /// Deletes the present row; MoveNext goes on behind it.
  virtual Status Delete() = 0;
};

}  // namespace zent
