#include "jet/catalog/ObjectTable.h"

#include <fmt/format.h>

#include <array>

#include "base/CaseFold.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

struct ObjectColumn {
  enum Place : std::size_t {
    Id,
    ParentId,
    Name,
    Type,
    Flags,
    DateCreate,
    DateUpdate,
    Connect,
    Database,
    ForeignName,
    Properties,
  };
};

constexpr std::array<std::string_view, 11> kObjectColumns = {
    "Id",         "ParentId", "Name",     "Type",        "Flags", "DateCreate",
    "DateUpdate", "Connect",  "Database", "ForeignName", "LvProp"};

}  // namespace

Result<ObjectTable> ObjectTable::Open(UsageMaps& maps) {
  Result<SystemTable> table = SystemTable::Open(maps, kObjectsPage, kObjectColumns);
  if (!table.ok()) return table.error();
  return ObjectTable(std::move(table.value()));
}

Result<CatalogObject> ObjectTable::Read(RowPointer at, ByteView bytes, PageNumber page) {
  SystemRow row(table_, bytes, page);
  CatalogObject object{.id = row.Long(ObjectColumn::Id),
                       .parent = row.Long(ObjectColumn::ParentId),
                       .type = static_cast<ObjectType>(row.Int(ObjectColumn::Type)),
                       .flags = row.Long(ObjectColumn::Flags),
                       .name = row.Text(ObjectColumn::Name),
                       .created = row.DateOf(ObjectColumn::DateCreate),
                       .updated = row.DateOf(ObjectColumn::DateUpdate),
                       .row = at};
  if (object.IsLinked()) {
    object.connect = row.Text(ObjectColumn::Connect);
    object.database = row.Text(ObjectColumn::Database);
    object.foreign_name = row.Text(ObjectColumn::ForeignName);
  }
  if (!row.status().ok()) return row.status().error();
  return object;
}

Result<std::vector<CatalogObject>> ObjectTable::All() {
  std::vector<CatalogObject> objects;
  RowScan scan(table_.store().rows());
  Result<bool> more = scan.Next();
  for (; more.value_or(false); more = scan.Next()) {
    Result<CatalogObject> object = Read(scan.at(), scan.bytes(), scan.page());
    if (!object.ok()) return object.error();
    objects.push_back(std::move(object.value()));
  }
  if (!more.ok()) return more.error();
  return objects;
}

template <typename Matches>
Result<std::optional<CatalogObject>> ObjectTable::Find(std::span<const std::size_t> columns,
                                                       std::span<const Value> values,
                                                       const Matches& matches) {
  const Result<std::optional<std::vector<RowPointer>>> rows = table_.Seek(columns, values);
  if (!rows.ok()) return rows.error();
  std::vector<CatalogObject> found;
  if (rows.value()) {
    for (const RowPointer at : *rows.value()) {
      const Result<StoredRow> row = table_.store().rows().Fetch(at);
      if (!row.ok()) return row.error();
      Result<CatalogObject> object = Read(at, row.value().bytes, row.value().page.page());
      if (!object.ok()) return object.error();
      found.push_back(std::move(object.value()));
    }
  } else {
    Result<std::vector<CatalogObject>> all = All();
    if (!all.ok()) return all.error();
    for (CatalogObject& object : all.value()) {
      if (matches(object)) found.push_back(std::move(object));
    }
  }
  if (found.empty()) return std::optional<CatalogObject>();
  if (found.size() > 1) {
    return Damaged(found[1].row.page,
                   fmt::format("the catalog has object {} more than once", found[1].name));
  }
  return std::optional(std::move(found.front()));
}

Result<std::optional<CatalogObject>> ObjectTable::FindIn(std::int32_t parent,
                                                         std::string_view name) {
  constexpr std::array<std::size_t, 2> kKey = {ObjectColumn::ParentId, ObjectColumn::Name};
  const std::array<Value, 2> values = {parent, Text(name)};
  return Find(kKey, values, [&](const CatalogObject& object) {
    return object.parent == parent && SameName(object.name, name);
  });
}

Result<std::optional<CatalogObject>> ObjectTable::FindById(std::int32_t id) {
  constexpr std::array<std::size_t, 1> kKey = {ObjectColumn::Id};
  const std::array<Value, 1> values = {id};
  return Find(kKey, values, [&](const CatalogObject& object) { return object.id == id; });
}

Result<std::string> ObjectTable::PropertyBytes(const CatalogObject& object) {
  const Result<StoredRow> stored = table_.store().rows().Fetch(object.row);
  if (stored.number() == kRecordDeleted) return JetError(kObjectNotFound, object.name);
  if (!stored.ok()) return stored.error();
  SystemRow row(table_, stored.value().bytes, stored.value().page.page());
  if (row.Long(ObjectColumn::Id) != object.id) return JetError(kObjectNotFound, object.name);
  std::string bytes = row.Bytes(ObjectColumn::Properties);
  if (!row.status().ok()) return row.status().error();
  return bytes;
}

}  // namespace zent::jet
