#include "database/fakes/MemoryRecordset.h"

#include <algorithm>

#include "base/Text.h"
#include "database/port/EngineErrors.h"

namespace zent::testing {
namespace {

RuntimeError Fault(int number, const char* description) {
  return {.number = number, .description = description, .source = kEngineSource};
}

RuntimeError NoCurrentRecord() { return Fault(3021, "No current record."); }

RuntimeError ItemNotFound() { return Fault(kEngineItemNotFound, "Item not found."); }

bool IsNumber(FieldType type) {
  return type == FieldType::Byte || type == FieldType::Integer || type == FieldType::Long ||
         type == FieldType::Single || type == FieldType::Double;
}

/// Whether a field takes a value: the fake knows no more than texts that are too long, and words
/// for a number.
Status CheckValue(const FieldDefinition& field, const FieldValue& value) {
  const std::string text = value.AsText();
  if (field.type == FieldType::Text && field.size > 0 &&
      CountCharacters(text) > static_cast<std::size_t>(field.size)) {
    return Fault(3163, "The field is too small.");
  }
  if (IsNumber(field.type) && text.find_first_not_of("+-.0123456789E") != std::string::npos) {
    return Fault(3421, "Data type conversion error.");
  }
  return {};
}

}  // namespace

MemoryRecordset::MemoryRecordset(MemoryWorld& world, MemoryTable& table,
                                 const MemoryStatement& statement)
    : world_(world), table_(table) {
  for (const FieldDefinition& field : table.definition.fields) {
    fields_.push_back({.name = field.name, .type = field.type, .size = field.size});
  }
  for (std::size_t i = 0; i < table.rows.size(); ++i) {
    if (statement.Matches(table, table.rows[i])) rows_.push_back(i);
  }
}

Status MemoryRecordset::MoveFirst() {
  state_ = State::Reading;
  deleted_ = false;
  at_ = 0;
  return {};
}

Status MemoryRecordset::MoveNext() {
  if (AtEnd()) return NoCurrentRecord();
  state_ = State::Reading;
  deleted_ = false;
  ++at_;
  return {};
}

Result<FieldValue> MemoryRecordset::Get(std::string_view field) {
  const auto position = table_.PositionOf(field);
  if (!position) return ItemNotFound();
  if (state_ != State::Reading) return changed_.at(*position);
  if (!HasRow()) return NoCurrentRecord();
  return table_.rows.at(rows_[at_]).at(*position);
}

Status MemoryRecordset::Edit() {
  if (!HasRow()) return NoCurrentRecord();
  changed_ = table_.rows.at(rows_[at_]);
  state_ = State::Editing;
  return world_.Note("Edit");
}

Status MemoryRecordset::AddNew() {
  changed_.assign(fields_.size(), FieldValue());
  state_ = State::Adding;
  return world_.Note("AddNew");
}

Status MemoryRecordset::Set(std::string_view field, const FieldValue& value) {
  const auto position = table_.PositionOf(field);
  if (!position) return ItemNotFound();
  if (state_ == State::Reading) return Fault(3020, "Update without AddNew or Edit.");
  Status fits = CheckValue(table_.definition.fields.at(*position), value);
  if (!fits.ok()) return fits;
  changed_.at(*position) = value;
  return world_.Note("Set " + std::string(field) + "=" + value.AsText());
}

Status MemoryRecordset::CheckKeys() const {
  for (const IndexDefinition& index : table_.definition.indexes) {
    if (!index.unique) continue;
    for (std::size_t row = 0; row < table_.rows.size(); ++row) {
      if (state_ == State::Editing && row == rows_[at_]) continue;
      const bool same =
          std::all_of(index.fields.begin(), index.fields.end(), [&](const IndexField& field) {
            const std::size_t position = table_.PositionOf(field.name).value();
            return table_.rows[row].at(position) == changed_.at(position);
          });
      if (same) return Fault(kEngineDuplicateKey, "The key is there already.");
    }
  }
  return {};
}

Status MemoryRecordset::CheckRequired() const {
  for (std::size_t i = 0; i < changed_.size(); ++i) {
    if (table_.definition.fields.at(i).required && changed_[i].IsNull()) {
      return Fault(3314, "The field must have a value.");
    }
  }
  return {};
}

Status MemoryRecordset::Update() {
  const State state = state_;
  if (state == State::Reading) return Fault(3020, "Update without AddNew or Edit.");
  Status saved = world_.Note("Update");
  if (saved.ok()) saved = CheckRequired();
  if (saved.ok()) saved = CheckKeys();
  state_ = State::Reading;
  if (!saved.ok()) return saved;
  if (state == State::Adding) {
    table_.rows.push_back(changed_);
  } else {
    table_.rows.at(rows_[at_]) = changed_;
  }
  return {};
}

Status MemoryRecordset::Delete() {
  state_ = State::Reading;
  if (!HasRow()) return NoCurrentRecord();
  if (Status failed = world_.Note("Delete"); !failed.ok()) return failed;
  table_.rows.erase(table_.rows.begin() + static_cast<std::ptrdiff_t>(rows_[at_]));
  for (std::size_t& row : rows_) {
    if (row > rows_[at_]) --row;
  }
  deleted_ = true;
  return {};
}

}  // namespace zent::testing
