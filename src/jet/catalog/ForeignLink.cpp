#include "jet/catalog/ForeignLink.h"

#include <fmt/format.h>

#include <algorithm>

#include "jet/catalog/Catalog.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

constexpr std::uint8_t kCascade = 1;
constexpr std::uint8_t kSetNull = 2;

RuntimeError NoOtherSide(const Table& table, PageNumber page, const LogicalIndex& index) {
  return Damaged(
      page, fmt::format("relationship {} of table {} has no other side", index.name, table.name()));
}

bool HaveSameKeys(const std::vector<KeyColumn>& a, const std::vector<KeyColumn>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const KeyColumn& one, const KeyColumn& other) {
                      return one.type == other.type && one.ascending == other.ascending &&
                             one.collation == other.collation;
                    });
}

ForeignLink::OnDelete OnDeleteOf(const LogicalIndex& index) {
  if (index.cascade_deletes == kCascade) return ForeignLink::OnDelete::Cascade;
  if (index.cascade_deletes == kSetNull) return ForeignLink::OnDelete::SetNull;
  return ForeignLink::OnDelete::Refuse;
}

/// Whether `index`, of the table `page`, is the other side of `own`, of the table `own_page`.
bool IsPartner(const LogicalIndex& index, const LogicalIndex& own, PageNumber own_page) {
  const ForeignSide wanted =
      own.side == ForeignSide::Referenced ? ForeignSide::Referring : ForeignSide::Referenced;
  return static_cast<std::int32_t>(index.number) == own.partner &&
         index.kind == IndexKind::Foreign && index.side == wanted && index.other_table == own_page;
}

Result<ForeignLink> OpenLink(Catalog& catalog, Table& table, const LogicalIndex& index) {
  const PageNumber page = table.store().page();
  const Result<std::optional<CatalogObject>> named =
      catalog.FindById(static_cast<std::int32_t>(index.other_table));
  if (!named.ok()) return named.error();
  if (!named.value() || !named.value()->IsLocalTable()) return NoOtherSide(table, page, index);
  const Result<Table*> other = catalog.OpenTableAt(index.other_table, named.value()->name);
  if (!other.ok()) return other.error();

  const std::vector<LogicalIndex>& there = other.value()->definition().logical_indexes;
  const auto partner = std::find_if(there.begin(), there.end(), [&](const LogicalIndex& one) {
    return IsPartner(one, index, page);
  });
  if (partner == there.end()) return NoOtherSide(table, page, index);
  const TableIndex& own_index = table.store().indexes()[index.real];
  const TableIndex& partner_index = other.value()->store().indexes()[partner->real];
  if (own_index.columns().size() != partner_index.columns().size()) {
    return NoOtherSide(table, page, index);
  }
  return ForeignLink{
      .side = index.side,
      .own = index.real,
      .other = other.value(),
      .partner = partner->real,
      .cascades_updates = index.cascade_updates == kCascade,
      .on_delete = OnDeleteOf(index),
      .same_keys = HaveSameKeys(own_index.key_columns(), partner_index.key_columns())};
}

}  // namespace

Result<std::vector<ForeignLink>> OpenLinks(Catalog& catalog, Table& table) {
  std::vector<ForeignLink> links;
  for (const LogicalIndex& index : table.definition().logical_indexes) {
    if (index.kind != IndexKind::Foreign) continue;
    Result<ForeignLink> link = OpenLink(catalog, table, index);
    if (!link.ok()) return link.error();
    links.push_back(link.value());
  }
  return links;
}

Result<std::vector<Value>> LinkValues(Table& table, const ForeignLink& link, const RowState& row) {
  TableStore& store = table.store();
  std::vector<Value> values;
  for (const std::size_t column : store.indexes()[link.own].columns()) {
    Result<Value> value =
        FieldValue(store.rows().maps().pager(), table.definition().columns[column],
                   row.fields[column], store.page());
    if (!value.ok()) return value.error();
    values.push_back(std::move(value.value()));
  }
  return values;
}

Result<std::optional<std::string>> PartnerKey(Table& table, const ForeignLink& link,
                                              const RowState& row) {
  const TableIndex::RowKey& own = row.keys[link.own];
  if (own.all_null) return std::optional<std::string>();
  if (link.same_keys) return own.key;
  const Result<std::vector<Value>> values = LinkValues(table, link, row);
  if (!values.ok()) return values.error();
  TableIndex& partner = link.other->store().indexes()[link.partner];
  Result<std::string> key = IndexKey(partner.key_columns(), values.value());
  if (!key.ok()) return key.error();
  return std::optional(std::move(key.value()));
}

}  // namespace zent::jet
