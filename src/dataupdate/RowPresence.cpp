#include "dataupdate/RowPresence.h"

#include <algorithm>

#include "base/Text.h"
#include "base/Utf.h"
#include "dataupdate/RowChange.h"

namespace zent {
namespace {

// Of a longer text a key takes the beginning alone.
constexpr std::size_t kKeyLength = 255;  // UTF-16 units

bool HasField(const std::vector<std::string>& fields, std::string_view name) {
  return std::any_of(fields.begin(), fields.end(),
                     [&](const std::string& field) { return EqualsIgnoringCase(field, name); });
}

/// Whether `index` leads straight to the rows that are equal in `fields`.
bool Serves(const IndexDefinition& index, const std::vector<std::string>& fields) {
  if (index.fields.size() < fields.size()) return false;
  return std::all_of(index.fields.begin(),
                     index.fields.begin() + static_cast<std::ptrdiff_t>(fields.size()),
                     [&](const IndexField& field) { return HasField(fields, field.name); });
}

bool IsTextField(const TableDefinition& table, std::string_view name) {
  return std::any_of(table.fields.begin(), table.fields.end(), [&](const FieldDefinition& field) {
    const bool is_text = field.type == FieldType::Text || field.type == FieldType::Memo;
    return is_text && EqualsIgnoringCase(field.name, name);
  });
}

/// Whether the key of a text takes all of it.
bool IsKeyedWhole(const std::string& text) {
  return text.size() <= kKeyLength || ToUtf16(text).size() <= kKeyLength;
}

bool AreKeyedWhole(const std::vector<std::string>& texts) {
  return std::all_of(texts.begin(), texts.end(), IsKeyedWhole);
}

std::string ListOf(const std::vector<std::string>& fields) {
  std::string list;
  for (const std::string& field : fields) list += (list.empty() ? "" : ", ") + field;
  return list;
}

}  // namespace

Result<RowPresence> RowPresence::Of(OpenedDatabase& database, std::string_view table,
                                    std::vector<std::string> fields) {
  RowPresence presence(database, std::move(fields));
  if (!database.EqualityKey("").has_value()) return presence;
  const Result<std::optional<TableDefinition>> found = database.Table(table);
  if (!found.ok()) return found.error();
  if (!found.value()) return presence;  // the first statement will say so
  const TableDefinition& definition = *found.value();
  const auto& wanted = presence.fields_;
  const bool indexed =
      std::any_of(definition.indexes.begin(), definition.indexes.end(),
                  [&](const IndexDefinition& index) { return Serves(index, wanted); });
  const bool texts = std::all_of(wanted.begin(), wanted.end(), [&](const std::string& field) {
    return IsTextField(definition, field);
  });
  if (indexed || !texts) return presence;
  if (Status read = presence.ReadAll(table); !read.ok()) return read.error();
  return presence;
}

Status RowPresence::ReadAll(std::string_view table) {
  const std::string statement = "SELECT " + ListOf(fields_) + " FROM " + std::string(table);
  Result<std::unique_ptr<Recordset>> opened =
      database_->OpenRecordset(statement, RecordsetUse::Read);
  if (!opened.ok()) return opened.error();
  Recordset& rows = *opened.value();
  std::vector<std::string> values(fields_.size());
  while (!rows.AtEnd()) {
    bool has_null = false;
    for (std::size_t i = 0; i < fields_.size(); ++i) {
      const Result<FieldValue> value = rows.Get(fields_[i]);
      if (!value.ok()) return value.error();
      has_null = has_null || value.value().IsNull();  // equal to nothing
      values[i] = value.value().AsText();
    }
    if (!has_null) Keep(values);
    if (Status moved = rows.MoveNext(); !moved.ok()) return moved;
  }
  in_memory_ = true;
  return {};
}

std::string RowPresence::KeyOf(const std::vector<std::string>& values) const {
  std::string key;
  for (const std::string& value : values) {
    const std::string part =
        database_->EqualityKey(FirstCharacters(value, kKeyLength)).value_or("");
    key += std::to_string(part.size()) + ':' + part;
  }
  return key;
}

Result<bool> RowPresence::Has(const std::string& statement,
                              const std::optional<std::vector<std::string>>& values) {
  if (in_memory_ && values) {
    const std::string key = KeyOf(*values);
    const bool has_whole = whole_.contains(key);
    // Texts that are equal begin alike; of those that are longer the database knows the rest.
    if (!has_whole && !beginnings_.contains(key)) return false;
    if (has_whole && AreKeyedWhole(*values)) return true;
  }
  const Result<std::unique_ptr<Recordset>> opened =
      database_->OpenRecordset(statement, RecordsetUse::Read);
  if (!opened.ok()) return opened.error();
  return !opened.value()->AtEnd();
}

void RowPresence::Added(const std::vector<std::string>& values) {
  if (in_memory_) Keep(values);
}

void RowPresence::Keep(const std::vector<std::string>& values) {
  (AreKeyedWhole(values) ? whole_ : beginnings_).insert(KeyOf(values));
}

}  // namespace zent
