#include "jet/tools/CatalogCheck.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "base/CaseFold.h"
#include "jet/format/JetErrors.h"
#include "jet/format/PropertyBlob.h"
#include "jet/tools/CatalogRows.h"

namespace zent::jet {
namespace {

constexpr std::string_view kCatalog = "catalog";
constexpr std::int32_t kRootParent = 0x0F000000;  // the parent of the containers; has no row itself
constexpr std::size_t kMostObjects = 32768;

}  // namespace

std::string CheckedObject::Subject() const {
  return fmt::format("{} {}", IsTable() ? "table" : "object", name);
}

bool CatalogCheck::ReadObjects() {
  const Result<std::unique_ptr<TableStore>> catalog = TableStore::Open(maps_, kObjectsPage);
  if (!catalog.ok()) {
    faults_.Add(std::string(kCatalog), catalog.error());
    return false;
  }
  const Status read = ForEachCatalogRow(*catalog.value(), [&](const CatalogRow& row) {
    AddObject({.id = row.Number("Id"),
               .parent = row.Number("ParentId"),
               .type = row.Number("Type"),
               .flags = row.Number("Flags"),
               .name = row.TextOf("Name")});
    return objects_.size() <= kMostObjects;
  });
  if (!read.ok()) faults_.Add(std::string(kCatalog), read.error());
  if (objects_.size() > kMostObjects) {
    faults_.Add(std::string(kCatalog), fmt::format("more than {} objects", kMostObjects));
  }
  CheckParents();
  return true;
}

void CatalogCheck::AddObject(CheckedObject object) {
  const bool known = !by_id_.try_emplace(object.id, objects_.size()).second;
  if (known) faults_.Add(std::string(kCatalog), fmt::format("id {} is there twice", object.id));
  if (object.name.empty()) {
    faults_.Add(std::string(kCatalog), fmt::format("object {} has no name", object.id));
  }
  if (!known) objects_.push_back(std::move(object));
}

void CatalogCheck::CheckParents() {
  std::set<std::pair<std::int32_t, std::string>> names;
  for (const CheckedObject& object : objects_) {
    if (object.parent != kRootParent && !by_id_.contains(object.parent)) {
      faults_.Add(object.Subject(), fmt::format("its parent {} is not there", object.parent));
    }
    if (!names.emplace(object.parent, FoldName(object.name)).second) {
      faults_.Add(object.Subject(), "another object has its name");
    }
  }
}

void CatalogCheck::CheckBelongings() {
  CheckBelonging(kAcesPage, "MSysACEs");
  CheckBelonging(kQueriesPage, "MSysQueries");
}

void CatalogCheck::CheckBelonging(PageNumber page, const std::string& name) {
  const Result<std::unique_ptr<TableStore>> table = TableStore::Open(maps_, page);
  if (!table.ok()) return faults_.Add("table " + name, table.error());
  const Status read = ForEachCatalogRow(*table.value(), [&](const CatalogRow& row) {
    if (by_id_.contains(row.Number("ObjectId"))) return true;
    faults_.Add("table " + name, fmt::format("page {} row {}: object {} is not there",
                                             row.at().page, row.at().row, row.Number("ObjectId")));
    return true;
  });
  if (!read.ok()) faults_.Add("table " + name, read.error());
}

void CatalogCheck::AddTable(const CheckedObject& object, const TableDefinition& table) {
  const auto page = static_cast<PageNumber>(object.id);
  tables_.emplace(page, KnownTable{.name = object.name, .page = page, .definition = table});
}

void CatalogCheck::CheckProperties() {
  const Result<std::unique_ptr<TableStore>> catalog = TableStore::Open(maps_, kObjectsPage);
  if (!catalog.ok()) return;
  // Blobs that are all the same long value could make this endless.
  Pager& pager = maps_.pager();
  std::uint64_t left = std::uint64_t{pager.page_count()} * pager.page_size();
  const Status read = ForEachCatalogRow(*catalog.value(), [&](const CatalogRow& row) {
    const auto object = by_id_.find(row.Number("Id"));
    if (object == by_id_.end()) return true;
    const Result<std::string> bytes = row.Bytes("LvProp");
    if (!bytes.ok()) {
      faults_.Add(objects_[object->second].Subject() + ", properties", bytes.error());
    } else {
      CheckBlob(objects_[object->second], bytes.value(), row.at().page);
      left -= std::min<std::uint64_t>(left, bytes.value().size());
    }
    return left > 0;
  });
  if (!read.ok()) faults_.Add(std::string(kCatalog), read.error());
}

void CatalogCheck::CheckBlob(const CheckedObject& object, const std::string& bytes,
                             PageNumber page) {
  const std::string subject = object.Subject() + ", properties";
  const Result<PropertyBlob> blob =
      ParsePropertyBlob(maps_.pager().version(), AsBytes(bytes), page);
  if (!blob.ok()) return faults_.Add(subject, blob.error());
  const auto table = tables_.find(static_cast<PageNumber>(object.id));
  if (!object.IsTable() || table == tables_.end()) return;
  for (const PropertySet& set : blob.value().sets) {
    if (set.kind != kColumnProperties) continue;
    bool found = false;
    for (const ColumnDefinition& column : table->second.definition.columns) {
      found = found || SameName(column.name, set.owner);
    }
    if (!found) faults_.Add(subject, "there is no column " + set.owner);
  }
}

}  // namespace zent::jet
