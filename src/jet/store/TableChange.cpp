#include <algorithm>

#include "jet/format/JetErrors.h"
#include "jet/store/TableStore.h"

namespace zent::jet {
namespace {

/// A change that begins after all checks. When it fails half way the transaction around it can only
/// be rolled back.
template <typename Steps>
Status AsOne(Pager& pager, const Steps& steps) {
  PageTransaction transaction(pager);
  if (!transaction.status().ok()) return transaction.status();
  if (Status done = steps(); !done.ok()) return done;
  return transaction.Commit();
}

}  // namespace

Result<RowPointer> TableStore::Insert(std::vector<Value>& values) {
  Result<RowChange> change = CheckInsert(values);
  if (!change.ok()) return change.error();
  Result<RowPointer> at = InsertChecked(change.value());
  if (at.ok()) values = std::move(change.value().values);
  return at;
}

Status TableStore::Update(RowPointer at, std::span<const ColumnChange> changes) {
  Result<RowChange> change = CheckUpdate(at, changes);
  return change.ok() ? UpdateChecked(change.value()) : change.status();
}

Status TableStore::Delete(RowPointer at) {
  const Result<RowChange> change = CheckDelete(at);
  return change.ok() ? DeleteChecked(change.value()) : change.status();
}

Result<RowPointer> TableStore::InsertChecked(RowChange& change) {
  RowPointer at;
  const Status stored = AsOne(maps_.pager(), [&]() -> Status {
    const Result<RowPointer> row =
        StoreRow(change.after.fields, change.after.keys, change.last_number);
    at = row.value_or({});
    return row.status();
  });
  if (!stored.ok()) return stored.error();
  return at;
}

Status TableStore::UpdateChecked(RowChange& change) {
  return AsOne(maps_.pager(), [&] {
    return ReplaceRow(change.at, change.before, change.after.fields, change.after.keys);
  });
}

Status TableStore::DeleteChecked(const RowChange& change) {
  return AsOne(maps_.pager(), [&] { return RemoveRow(change.at, change.before); });
}

Result<RowChange> TableStore::CheckInsert(std::vector<Value> values) {
  if (Status writable = Writable(); !writable.ok()) return writable.error();
  if (values.size() != table_.columns.size()) return JetError(kInvalidArgument);
  RowChange change{.values = std::move(values)};
  if (Status numbered = GiveNumbers(change.values, change.last_number); !numbered.ok()) {
    return numbered.error();
  }
  RowState& after = change.after;
  after.fields.resize(change.values.size());
  for (std::size_t i = 0; i < after.fields.size(); ++i) {
    Result<FieldBytes> field = Accept(i, change.values[i]);
    if (!field.ok()) return field.error();
    after.fields[i] = std::move(field.value());
  }
  Result<RowKeys> keys = KeysOf(after.fields, page());
  if (!keys.ok()) return keys.error();
  after.keys = std::move(keys.value());
  if (Status checked = CheckChange(after.fields, nullptr, after.keys); !checked.ok()) {
    return checked.error();
  }
  return change;
}

Result<RowChange> TableStore::CheckUpdate(RowPointer at, std::span<const ColumnChange> changes) {
  if (Status writable = Writable(); !writable.ok()) return writable.error();
  Result<RowState> before = OpenRow(at);
  if (!before.ok()) return before.error();
  RowChange change{.at = at, .before = std::move(before.value())};
  RowState& after = change.after;
  after.fields = change.before.fields;
  for (const ColumnChange& one : changes) {
    if (one.position >= after.fields.size()) return JetError(kItemNotFound);
    Result<FieldBytes> field = Accept(one.position, one.value);
    if (!field.ok()) return field.error();
    after.fields[one.position] = std::move(field.value());
  }
  Result<RowKeys> keys = KeysOf(after.fields, at.page);
  if (!keys.ok()) return keys.error();
  after.keys = std::move(keys.value());
  Status checked = CheckChange(after.fields, &change.before.keys, after.keys);
  if (!checked.ok()) return checked.error();
  return change;
}

Result<RowChange> TableStore::CheckDelete(RowPointer at) {
  if (Status writable = Writable(); !writable.ok()) return writable.error();
  Result<RowState> before = OpenRow(at);
  if (!before.ok()) return before.error();
  return RowChange{.at = at, .before = std::move(before.value())};
}

/// Fills in numbers, and tells the highest one when the counter must follow.
Status TableStore::GiveNumbers(std::vector<Value>& values,
                               std::optional<std::int32_t>& last_number) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    const ColumnDefinition& column = table_.columns[i];
    if (!column.IsAutoNumber() || column.type != ColumnType::Long) continue;
    const Result<std::int32_t> last = LastAutoNumber();
    if (!last.ok()) return last.error();
    if (IsNull(values[i])) {
      values[i] = static_cast<std::int32_t>(static_cast<std::uint32_t>(last.value()) + 1U);
      last_number = std::get<std::int32_t>(values[i]);
      continue;
    }
    const std::int32_t* const number = std::get_if<std::int32_t>(&values[i]);
    if (number != nullptr && *number > last.value()) last_number = *number;
  }
  return {};
}

Result<FieldBytes> TableStore::Accept(std::size_t position, const Value& value) {
  const ColumnDefinition& column = table_.columns[position];
  const ColumnRules& rules = rules_[position];
  bool null = IsNull(value);
  if (const Text* const text = std::get_if<Text>(&value); text != nullptr && text->empty()) {
    if (rules.empty_text == ColumnRules::EmptyText::Refused) {
      return JetError(kZeroLengthNotAllowed, column.name);
    }
    null = rules.empty_text == ColumnRules::EmptyText::BecomesNull;
  }
  if (null && rules.required && column.type != ColumnType::Bool) {
    return JetError(kValueRequired, column.name);
  }
  return EncodeValue(column, null ? Value(Null()) : value);
}

Result<TableStore::RowKeys> TableStore::KeysOf(const RowFields& fields, PageNumber page) {
  RowKeys keys;
  keys.reserve(indexes_.size());
  for (TableIndex& index : indexes_) {
    Result<TableIndex::RowKey> key = index.KeyOf(table_, fields, page);
    if (!key.ok()) return key.error();
    keys.push_back(std::move(key.value()));
  }
  return keys;
}

Status TableStore::CheckChange(RowFields& fields, const RowKeys* before, const RowKeys& after) {
  for (std::size_t i = 0; i < indexes_.size(); ++i) {
    if (before != nullptr && (*before)[i].key == after[i].key) continue;
    if (Status checked = indexes_[i].Check(after[i]); !checked.ok()) return checked;
  }
  Status built = BuildRow(table_, fields, builder_).status();
  if (built.number() == kRecordTooLarge && MoveApart(table_, fields)) {
    built = BuildRow(table_, fields, builder_).status();
  }
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const bool is_new = fields[i].present && !fields[i].stored && IsLong(table_.columns[i].type);
    if (is_new && !long_values_.contains(i)) {
      return Damaged(page(), "a memo or OLE field without maps");
    }
  }
  return built;
}

Result<RowState> TableStore::OpenRow(RowPointer at) {
  const Result<StoredRow> row = rows_.Fetch(at);
  if (!row.ok()) return row.error();
  const PageNumber page = row.value().page.page();
  Result<RowFields> fields = LoadFields(table_, row.value().bytes, page);
  if (!fields.ok()) return fields.error();
  Result<RowKeys> keys = KeysOf(fields.value(), page);
  if (!keys.ok()) return keys.error();
  return RowState{std::move(fields.value()), std::move(keys.value())};
}

}  // namespace zent::jet
