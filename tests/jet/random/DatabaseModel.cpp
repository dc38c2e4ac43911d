#include "jet/random/DatabaseModel.h"

#include <algorithm>

#include "jet/format/JetErrors.h"

namespace zent::jet::testing {
namespace {

bool IsAllNull(const ModelRow& key) {
  return std::all_of(key.begin(), key.end(), [](const Value& value) { return IsNull(value); });
}

bool HasNull(const ModelRow& key) {
  return std::any_of(key.begin(), key.end(), [](const Value& value) { return IsNull(value); });
}

/// The rows whose column has that value.
std::vector<RowPointer> RowsWith(const ModelTable& table, std::string_view column,
                                 const Value& value) {
  std::vector<RowPointer> found;
  const std::size_t position = table.PositionOf(column);
  for (const auto& [at, row] : table.rows) {
    if (row[position] == value) found.push_back(at);
  }
  return found;
}

}  // namespace

std::size_t ModelTable::PositionOf(std::string_view column) const {
  const auto found = std::find_if(columns.begin(), columns.end(),
                                  [&](const ModelColumn& one) { return one.name == column; });
  return static_cast<std::size_t>(found - columns.begin());
}

bool ModelTable::HasColumn(std::string_view column) const {
  return PositionOf(column) < columns.size();
}

bool ModelTable::HasIndex(std::string_view index) const {
  return std::any_of(indexes.begin(), indexes.end(),
                     [&](const ModelIndex& one) { return one.name == index; });
}

bool ModelTable::HasPrimaryKey() const {
  return std::any_of(indexes.begin(), indexes.end(),
                     [](const ModelIndex& one) { return one.primary; });
}

bool ModelTable::IsIndexed(std::string_view column) const {
  return std::any_of(indexes.begin(), indexes.end(), [&](const ModelIndex& index) {
    return std::find(index.columns.begin(), index.columns.end(), column) != index.columns.end();
  });
}

ModelRow ModelTable::KeyOf(const ModelIndex& index, const ModelRow& row) const {
  ModelRow key;
  for (const std::string& column : index.columns) key.push_back(row[PositionOf(column)]);
  return key;
}

std::set<int> ModelTable::FaultsOf(const ModelIndex& index) const {
  std::set<int> faults;
  std::vector<ModelRow> keys;
  for (const auto& [at, row] : rows) {
    ModelRow key = KeyOf(index, row);
    if (index.primary && HasNull(key)) faults.insert(kNullInKey);
    if ((!index.unique && !index.primary) || IsAllNull(key)) continue;
    if (std::find(keys.begin(), keys.end(), key) != keys.end()) faults.insert(kDuplicateKey);
    keys.push_back(std::move(key));
  }
  return faults;
}

ModelTable* DatabaseModel::Find(std::string_view table) {
  const auto found = std::find_if(tables.begin(), tables.end(),
                                  [&](const ModelTable& one) { return one.name == table; });
  return found == tables.end() ? nullptr : &*found;
}

const ModelTable* DatabaseModel::Find(std::string_view table) const {
  return const_cast<DatabaseModel*>(this)->Find(table);  // NOLINT: the same search
}

bool DatabaseModel::IsRelated(std::string_view table) const {
  return std::any_of(relations.begin(), relations.end(), [&](const ModelRelation& relation) {
    return relation.table == table || relation.referenced == table;
  });
}

bool DatabaseModel::IsRelated(std::string_view table, std::string_view column) const {
  return std::any_of(relations.begin(), relations.end(), [&](const ModelRelation& relation) {
    return (relation.table == table && relation.column == column) ||
           (relation.referenced == table && relation.referenced_column == column);
  });
}

void DatabaseModel::CheckRow(const ModelTable& table, RowPointer at, const ModelRow* before,
                             std::set<int>& faults) const {
  const ModelRow& row = table.rows.at(at);
  for (std::size_t i = 0; i < row.size(); ++i) {
    const bool changed = before == nullptr || (*before)[i] != row[i];
    if (table.columns[i].required && IsNull(row[i]) && changed) faults.insert(kValueRequired);
  }
  for (const ModelIndex& index : table.indexes) {
    const ModelRow key = table.KeyOf(index, row);
    if (index.primary && HasNull(key)) faults.insert(kNullInKey);
    if ((!index.unique && !index.primary) || IsAllNull(key)) continue;
    for (const auto& [other, values] : table.rows) {
      if (other != at && table.KeyOf(index, values) == key) faults.insert(kDuplicateKey);
    }
  }
  for (const ModelRelation& relation : relations) {
    if (relation.table != table.name) continue;
    const Value& value = row[table.PositionOf(relation.column)];
    if (IsNull(value)) continue;
    const ModelTable& referenced = *Find(relation.referenced);
    if (RowsWith(referenced, relation.referenced_column, value).empty()) {
      faults.insert(kNoRelatedRecord);
    }
  }
}

std::set<int> DatabaseModel::Insert(std::string_view table, RowPointer at, const ModelRow& row) {
  std::set<int> faults;
  ModelTable& changed = *Find(table);
  changed.rows[at] = row;
  CheckRow(changed, at, nullptr, faults);
  return faults;
}

void DatabaseModel::CascadeUpdate(const std::string& table, const ModelRow& before,
                                  const ModelRow& after, std::set<int>& faults) {
  for (const ModelRelation& relation : relations) {
    if (relation.referenced != table) continue;
    const std::size_t position = Find(table)->PositionOf(relation.referenced_column);
    if (IsNull(before[position]) || before[position] == after[position]) continue;
    ModelTable& referring = *Find(relation.table);
    for (const RowPointer at : RowsWith(referring, relation.column, before[position])) {
      if (!relation.cascades_updates) {
        faults.insert(kRelatedRecordsExist);
        continue;
      }
      const ModelRow old = referring.rows.at(at);
      referring.rows.at(at)[referring.PositionOf(relation.column)] = after[position];
      CascadeUpdate(referring.name, old, referring.rows.at(at), faults);
      CheckRow(referring, at, &old, faults);
    }
  }
}

std::set<int> DatabaseModel::Update(std::string_view table, RowPointer at, const ModelRow& row) {
  std::set<int> faults;
  ModelTable& changed = *Find(table);
  const ModelRow before = changed.rows.at(at);
  changed.rows.at(at) = row;
  CheckRow(changed, at, &before, faults);
  CascadeUpdate(changed.name, before, row, faults);
  return faults;
}

std::set<int> DatabaseModel::Delete(std::string_view table, RowPointer at) {
  std::set<int> faults;
  const ModelRow row = Find(table)->rows.at(at);
  Find(table)->rows.erase(at);
  for (const ModelRelation& relation : relations) {
    if (relation.referenced != table) continue;
    const Value& value = row[Find(table)->PositionOf(relation.referenced_column)];
    if (IsNull(value)) continue;
    for (const RowPointer other : RowsWith(*Find(relation.table), relation.column, value)) {
      if (!relation.cascades_deletes) faults.insert(kRelatedRecordsExist);
      faults.merge(Delete(relation.table, other));
    }
  }
  return faults;
}

}  // namespace zent::jet::testing
