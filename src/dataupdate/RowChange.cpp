#include "dataupdate/RowChange.h"

namespace zent {
namespace {

Status Save(Recordset& rows, const FieldChanges& changes) {
  for (const FieldChange& change : changes) {
    if (Status set = rows.Set(change.field, change.value); !set.ok()) {
      rows.CancelUpdate();
      return set;
    }
  }
  Status saved = rows.Update();
  if (!saved.ok()) rows.CancelUpdate();
  return saved;
}

}  // namespace

Status AddRow(Recordset& rows, const FieldChanges& changes) {
  if (Status begun = rows.AddNew(); !begun.ok()) return begun;
  return Save(rows, changes);
}

Status ChangeRow(Recordset& rows, const FieldChanges& changes) {
  if (Status begun = rows.Edit(); !begun.ok()) return begun;
  return Save(rows, changes);
}

Result<std::string> FieldText(Recordset& rows, std::string_view field) {
  const Result<FieldValue> value = rows.Get(field);
  if (!value.ok()) return value.error();
  return value.value().AsText();
}

}  // namespace zent
