#include "jet/store/TableStore.h"

/// The steps of changes that have passed all checks.
namespace zent::jet {

Status TableStore::StoreLongValues(RowFields& fields) {
  for (std::size_t i = 0; i < fields.size(); ++i) {
    FieldBytes& field = fields[i];
    if (!field.present || field.stored || !IsLong(table_.columns[i].type)) continue;
    Result<std::string> written = long_values_.at(i).Write(AsBytes(field.bytes), field.apart);
    if (!written.ok()) return written.error();
    field.bytes = std::move(written.value());
    field.stored = true;
  }
  return {};
}

Status TableStore::ReleaseLongValue(std::size_t position, const FieldBytes& field,
                                    PageNumber page) {
  const auto values = long_values_.find(position);
  if (!field.present || !field.stored || values == long_values_.end()) return {};
  return values->second.Release(AsBytes(field.bytes), page);
}

Status TableStore::NoteDistinctKey(TableIndex& index) {
  const std::size_t offset = DistinctKeysOffset(table_.version, index.position());
  const Result<std::uint32_t> count = ReadCounter(offset);
  if (!count.ok()) return count.error();
  return WriteCounter(offset, count.value() + 1);
}

Status TableStore::InsertEntry(TableIndex& index, const std::string& key, RowPointer at) {
  bool is_new = index.unique();
  if (!is_new) {
    const Result<bool> known = index.tree().HasKey(key);
    if (!known.ok()) return known.error();
    is_new = !known.value();
  }
  if (Status inserted = index.tree().Insert(key, at); !inserted.ok()) return inserted;
  return is_new ? NoteDistinctKey(index) : Status();
}

Result<RowPointer> TableStore::StoreRow(RowFields& fields, const RowKeys& keys,
                                        std::optional<std::int32_t> last_number) {
  if (Status stored = StoreLongValues(fields); !stored.ok()) return stored.error();
  const Result<ByteView> row = BuildRow(table_, fields, builder_);
  if (!row.ok()) return row.error();
  Result<RowPointer> at = rows_.Insert(row.value());
  if (!at.ok()) return at;
  for (std::size_t i = 0; i < indexes_.size(); ++i) {
    if (!keys[i].key) continue;
    if (Status s = InsertEntry(indexes_[i], *keys[i].key, at.value()); !s.ok()) return s.error();
  }
  const Result<std::uint32_t> count = RowCount();
  if (!count.ok()) return count.error();
  if (Status counted = WriteCounter(RowCountOffset(table_.version), count.value() + 1);
      !counted.ok()) {
    return counted.error();
  }
  if (!last_number) return at;
  const auto number = static_cast<std::uint32_t>(*last_number);
  if (Status noted = WriteCounter(AutoNumberOffset(table_.version), number); !noted.ok()) {
    return noted.error();
  }
  return at;
}

Status TableStore::ReplaceRow(RowPointer at, const RowState& before, RowFields& fields,
                              const RowKeys& keys) {
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (!IsLong(table_.columns[i].type) || fields[i].stored) continue;
    if (Status s = ReleaseLongValue(i, before.fields[i], at.page); !s.ok()) return s;
  }
  if (Status stored = StoreLongValues(fields); !stored.ok()) return stored;
  const Result<ByteView> row = BuildRow(table_, fields, builder_);
  if (!row.ok()) return row.error();
  if (Status updated = rows_.Update(at, row.value()); !updated.ok()) return updated;
  for (std::size_t i = 0; i < indexes_.size(); ++i) {
    const std::optional<std::string>& old_key = before.keys[i].key;
    if (old_key == keys[i].key) continue;
    if (old_key) {
      if (Status s = indexes_[i].tree().Delete(*old_key, at); !s.ok()) return s;
    }
    if (!keys[i].key) continue;
    if (Status s = InsertEntry(indexes_[i], *keys[i].key, at); !s.ok()) return s;
  }
  return {};
}

Status TableStore::RemoveRow(RowPointer at, const RowState& before) {
  for (std::size_t i = 0; i < indexes_.size(); ++i) {
    if (!before.keys[i].key) continue;
    if (Status s = indexes_[i].tree().Delete(*before.keys[i].key, at); !s.ok()) return s;
  }
  for (std::size_t i = 0; i < before.fields.size(); ++i) {
    if (Status s = ReleaseLongValue(i, before.fields[i], at.page); !s.ok()) return s;
  }
  if (Status deleted = rows_.Delete(at); !deleted.ok()) return deleted;
  const Result<std::uint32_t> count = RowCount();
  if (!count.ok()) return count.error();
  if (count.value() == 0) return {};  // it was off: informational
  return WriteCounter(RowCountOffset(table_.version), count.value() - 1);
}

}  // namespace zent::jet
