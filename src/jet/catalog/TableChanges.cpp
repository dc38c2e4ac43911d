#include <algorithm>

#include "jet/catalog/Catalog.h"
#include "jet/catalog/ChangePlan.h"
#include "jet/catalog/Table.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

/// How often a random AutoNumber is made when the first one is taken.
constexpr int kRandomAttempts = 16;

}  // namespace

bool Table::MakeNumbers(std::vector<Value>& values) {
  for (const std::size_t position : made_guids_) {
    if (IsNull(values[position])) values[position] = MakeGuid(catalog_.random());
  }
  bool made = false;
  for (const std::size_t position : made_numbers_) {
    if (!IsNull(values[position])) continue;
    values[position] = MakeRandomNumber(catalog_.random());
    made = true;
  }
  return made;
}

Result<RowPointer> Table::Insert(std::vector<Value>& values) {
  if (!properties_read_.ok()) return properties_read_.error();
  if (values.size() != definition().columns.size()) return JetError(kInvalidArgument);
  if (made_guids_.empty() && made_numbers_.empty()) return InsertMade(values);
  for (int attempt = 1;; ++attempt) {
    std::vector<Value> given = values;
    const bool random = MakeNumbers(given);
    Result<RowPointer> at = InsertMade(given);
    if (at.number() == kDuplicateKey && random && attempt < kRandomAttempts) continue;
    if (at.ok()) values = std::move(given);
    return at;
  }
}

Result<RowPointer> Table::InsertMade(std::vector<Value>& values) {
  if (!has_links_ && !check_) return store_->Insert(values);
  Result<RowChange> change = store_->CheckInsert(values);
  if (!change.ok()) return change.error();
  if (check_) {
    if (Status checked = check_(change.value().values); !checked.ok()) return checked.error();
  }
  if (Status found = CheckReferences(change.value().after); !found.ok()) return found.error();
  Result<RowPointer> at = store_->InsertChecked(change.value());
  if (at.ok()) values = std::move(change.value().values);
  return at;
}

/// Whether all that a new row refers to is there: in another row, or in the new one itself.
Status Table::CheckReferences(const RowState& row) {
  const Result<std::span<const ForeignLink>> links = Links();
  if (!links.ok()) return links.status();
  for (const ForeignLink& link : links.value()) {
    if (link.side != ForeignSide::Referring) continue;
    const Result<std::optional<std::string>> key = PartnerKey(*this, link, row);
    if (!key.ok()) return key.status();
    if (!key.value()) continue;
    if (link.other == this && row.keys[link.partner].key == key.value()) continue;
    const IndexTree& referenced = link.other->store().indexes()[link.partner].tree();
    const Result<bool> there = referenced.HasKey(*key.value());
    if (!there.ok()) return there.status();
    if (!there.value()) return JetError(kNoRelatedRecord, link.other->name());
  }
  return {};
}

Status Table::Update(RowPointer at, std::span<const ColumnChange> changes) {
  const bool linked = std::any_of(changes.begin(), changes.end(), [&](const ColumnChange& change) {
    return change.position < linked_columns_.size() && linked_columns_[change.position];
  });
  if (!linked) {
    Result<RowChange> change = CheckUpdate(at, changes);
    return change.ok() ? store_->UpdateChecked(change.value()) : change.status();
  }
  ChangePlan plan(catalog_.pager());
  if (Status planned = plan.Update(*this, at, changes); !planned.ok()) return planned;
  if (Status checked = plan.Check(); !checked.ok()) return checked;
  return plan.Make();
}

Status Table::Delete(RowPointer at) {
  if (!has_links_) {
    const Result<RowChange> change = CheckDelete(at);
    return change.ok() ? store_->DeleteChecked(change.value()) : change.status();
  }
  ChangePlan plan(catalog_.pager());
  if (Status planned = plan.Delete(*this, at); !planned.ok()) return planned;
  if (Status checked = plan.Check(); !checked.ok()) return checked;
  return plan.Make();
}

Result<RowChange> Table::CheckUpdate(RowPointer at, std::span<const ColumnChange> changes) {
  if (!properties_read_.ok()) return properties_read_.error();
  Result<RowChange> change = store_->CheckUpdate(at, changes);
  if (!change.ok() || !check_) return change;
  Result<std::vector<Value>> values = store_->Fetch(at);
  if (!values.ok()) return values.error();
  for (const ColumnChange& one : changes) values.value()[one.position] = one.value;
  if (Status checked = check_(values.value()); !checked.ok()) return checked.error();
  return change;
}

Result<RowChange> Table::CheckDelete(RowPointer at) {
  if (!properties_read_.ok()) return properties_read_.error();
  return store_->CheckDelete(at);
}

}  // namespace zent::jet
