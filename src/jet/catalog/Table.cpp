#include "jet/catalog/Table.h"

#include <algorithm>
#include <numeric>
#include <tuple>

#include "base/CaseFold.h"
#include "base/Text.h"
#include "jet/catalog/Catalog.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

constexpr std::uint8_t kSystemTable = 'S';

/// The value of a property that says yes or no; no when there is none.
bool IsSet(JetVersion version, const Property* property) {
  if (property == nullptr) return false;
  const Value value = PropertyValue(version, *property);
  const bool* const set = std::get_if<bool>(&value);
  return set != nullptr && *set;
}

std::vector<std::size_t> DisplayOrder(const std::vector<ColumnDefinition>& columns) {
  std::vector<std::size_t> order(columns.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return std::tie(columns[a].ordinal, columns[a].number) <
           std::tie(columns[b].ordinal, columns[b].number);
  });
  return order;
}

bool MakesRandomNumbers(JetVersion version, const Property* default_value) {
  if (default_value == nullptr) return false;
  const Value value = PropertyValue(version, *default_value);
  const Text* const text = std::get_if<Text>(&value);
  return text != nullptr && FindIgnoringCase(*text, "GenUniqueID()") != std::string::npos;
}

}  // namespace

Table::Table(Catalog& catalog, std::string name, std::unique_ptr<TableStore> store,
             const Result<PropertyBlob>& properties)
    : catalog_(catalog),
      name_(std::move(name)),
      store_(std::move(store)),
      properties_(properties.value_or({})),
      properties_read_(properties.status()) {
  const std::vector<ColumnDefinition>& columns = definition().columns;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    positions_.emplace(FoldName(columns[i].name), i);
  }
  display_order_ = DisplayOrder(columns);
  ReadRules();
  NoteLinks();
}

void Table::NoteLinks() {
  linked_columns_.resize(definition().columns.size());
  for (const LogicalIndex& index : definition().logical_indexes) {
    if (index.kind != IndexKind::Foreign) continue;
    has_links_ = true;
    for (const std::size_t column : store_->indexes()[index.real].columns()) {
      linked_columns_[column] = true;
    }
  }
}

void Table::ReadRules() {
  const JetVersion version = definition().version;
  const bool system = definition().kind == kSystemTable;
  for (std::size_t i = 0; i < definition().columns.size(); ++i) {
    const ColumnDefinition& column = definition().columns[i];
    const bool keeps_empty = system || IsSet(version, PropertyOf(i, "AllowZeroLength"));
    store_->SetRules(i, {.required = IsSet(version, PropertyOf(i, "Required")),
                         .empty_text = keeps_empty ? ColumnRules::EmptyText::Kept
                                                   : ColumnRules::EmptyText::BecomesNull});
    const bool guid =
        column.type == ColumnType::Guid && (column.flags & kGuidAutoNumberColumn) != 0;
    if (guid) made_guids_.push_back(i);
    const bool counted = column.type == ColumnType::Long && column.IsAutoNumber();
    if (counted && MakesRandomNumbers(version, PropertyOf(i, "DefaultValue"))) {
      made_numbers_.push_back(i);
    }
  }
}

const Property* Table::PropertyOf(std::size_t position, std::string_view property) const {
  const PropertySet* const set = properties_.Find(definition().columns[position].name);
  return set == nullptr ? nullptr : set->Find(property);
}

Result<std::size_t> Table::PositionOf(std::string_view column) const {
  const auto found = positions_.find(FoldName(column));
  if (found == positions_.end()) return JetErrorBecause(kItemNotFound, column);
  return found->second;
}

Status Table::Writable() const {
  if (Status writable = store_->Writable(); !writable.ok()) return writable;
  return properties_read_;
}

Result<std::span<const ForeignLink>> Table::Links() {
  if (!links_) {
    Result<std::vector<ForeignLink>> links = OpenLinks(catalog_, *this);
    if (!links.ok()) return links.error();
    links_.emplace(std::move(links.value()));
  }
  return std::span<const ForeignLink>(*links_);
}

}  // namespace zent::jet
