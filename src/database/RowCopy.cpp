#include "database/RowCopy.h"

#include <algorithm>
#include <cstddef>

#include "base/CaseFold.h"
#include "base/Text.h"

namespace zent {
namespace {

bool IsTextType(FieldType type) { return type == FieldType::Text || type == FieldType::Memo; }

class RowCopy {
 public:
  RowCopy(UpdateRun& run, const std::string& table, Recordset& from, Recordset& to,
          const std::vector<ChangedField>& changed)
      : run_(run), table_(table), from_(from), to_(to), changed_(changed) {}

  /// Copies the present row.
  Result<SyncEnd> Copy() {
    if (const Status begun = to_.AddNew(); !begun.ok()) return begun.error();
    for (const RecordsetField& field : from_.Fields()) {
      const Result<FieldValue> value = from_.Get(field.name);
      if (!value.ok()) return value.error();
      Result<SyncEnd> set = Set(field.name, value.value());
      if (!set.ok() || set.value() == SyncEnd::Stopped) return set;
    }
    if (const Status saved = to_.Update(); !saved.ok()) return saved.error();
    return SyncEnd::Done;
  }

 private:
  Result<SyncEnd> Set(const std::string& name, const FieldValue& value) {
    const auto field = std::find_if(
        changed_.begin(), changed_.end(),
        [&](const ChangedField& candidate) { return SameName(candidate.before.name, name); });
    if (field == changed_.end()) return Outcome(to_.Set(name, value));

    // A blank text is no number and no date: it is an empty field.
    const bool is_empty = !IsTextType(field->after.type) && value.IsBlank();
    const Status set = to_.Set(name, is_empty ? FieldValue() : value);
    if (set.ok()) return SyncEnd::Done;
    if (!AskToGoOn(*field, value)) return SyncEnd::Stopped;
    run_.Warn("a value of " + table_ + "." + name + " was left out");
    return Outcome(to_.Set(name, FieldValue()));
  }

  static Result<SyncEnd> Outcome(const Status& status) {
    if (!status.ok()) return status.error();
    return SyncEnd::Done;
  }

  bool AskToGoOn(const ChangedField& field, const FieldValue& value) {
    constexpr std::size_t kShown = 255;  // characters of a value: a box holds no whole memo
    const std::string line_break(kLineBreak);
    const std::string text = value.AsText();
    const Answer answer =
        run_.Ask({.title = {},
                  .text = "Error copying field." + line_break + "Table Name: " + table_ +
                          line_break + "Field Name: " + field.before.name + line_break +
                          "Field Value: " + std::string(FirstCharacters(text, kShown)) +
                          line_break + "Field Size (Old): " + std::to_string(field.before.size) +
                          line_break + "Field Size (New): " + std::to_string(field.after.size) +
                          line_break + "Do you want to continue?",
                  .buttons = BoxButtons::YesNo,
                  .icon = BoxIcon::Question});
    return answer == Answer::Yes;
  }

  UpdateRun& run_;
  const std::string& table_;
  Recordset& from_;
  Recordset& to_;
  const std::vector<ChangedField>& changed_;
};

}  // namespace

Result<SyncEnd> CopyRows(UpdateRun& run, const std::string& table, Recordset& from, Recordset& to,
                         const std::vector<ChangedField>& changed) {
  RowCopy row(run, table, from, to, changed);
  while (!from.AtEnd()) {
    Result<SyncEnd> copied = row.Copy();
    if (!copied.ok() || copied.value() == SyncEnd::Stopped) {
      to.CancelUpdate();
      return copied;
    }
    if (const Status moved = from.MoveNext(); !moved.ok()) return moved.error();
  }
  return SyncEnd::Done;
}

}  // namespace zent
