#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/catalog/CatalogObject.h"
#include "jet/catalog/ObjectTable.h"
#include "jet/catalog/RandomSource.h"
#include "jet/catalog/Relationship.h"
#include "jet/catalog/Table.h"
#include "jet/format/PropertyBlob.h"
#include "jet/storage/Pager.h"
#include "jet/store/UsageMaps.h"

namespace zent::jet {

/// What an open database file holds: its objects, their properties, relationships and tables.
class Catalog {
 public:
  /// `pager` must outlive it. Damage when the catalog's own tables are not as they should be.
  static Result<std::unique_ptr<Catalog>> Open(Pager& pager);
  Catalog(const Catalog&) = delete;
  Catalog& operator=(const Catalog&) = delete;

  Pager& pager() { return pager_; }
  UsageMaps& maps() { return maps_; }

  /// All objects, in the order of the file.
  Result<std::vector<CatalogObject>> Objects();
  /// The local and linked tables among them, system ones included.
  Result<std::vector<CatalogObject>> Tables();
  /// The object of that type and name, in any case.
  Result<std::optional<CatalogObject>> Find(ObjectType type, std::string_view name);
  /// As Find, of any type: tables and queries share the container kTablesId.
  Result<std::optional<CatalogObject>> FindIn(std::int32_t parent, std::string_view name);
  Result<std::optional<CatalogObject>> FindById(std::int32_t id);

  Result<PropertyBlob> Properties(const CatalogObject& object);

  Result<std::vector<Relationship>> Relationships();
  /// Those that `table` has a side of.
  Result<std::vector<Relationship>> RelationshipsOf(std::string_view table);

  /// The local table of that name; kNoSuchTable, with the reason when it is linked or a query. The
  /// catalog owns it and gives it again at the next call.
  Result<Table*> OpenTable(std::string_view name);
  /// The table whose definition begins at that page, also when the catalog has no such table:
  /// then `name` is for errors.
  Result<Table*> OpenTableAt(PageNumber definition, std::string_view name);

  /// Drops all that was read, opened tables as well: after a rollback or a change of the schema.
  void Forget();
  /// Drops the tables whose definition another user of the file has changed. A transaction does so
  /// when it begins.
  Status Refresh();
  /// Grows whenever an opened table is dropped, for those who keep tables open.
  std::uint64_t generation() const { return generation_; }

  /// Whether others may have changed what was read of the catalog: not while the file is open
  /// exclusively, nor within a transaction.
  bool MayHaveChanged() const;

  /// Called with each table that is opened, before anyone gets it.
  using TableHook = std::function<Status(Table&)>;
  void SetTableHook(TableHook hook) { hook_ = std::move(hook); }

  /// Where AutoNumbers that are not counted come from.
  const RandomSource& random() const { return random_; }
  void SetRandom(RandomSource random) { random_ = std::move(random); }

 private:
  explicit Catalog(Pager& pager);

  Result<ObjectTable*> ObjectRows();
  bool IsCurrent(Table& table);
  void Drop(PageNumber definition);
  Result<Table*> OpenOnce(PageNumber definition, std::string_view name,
                          const std::optional<CatalogObject>& object);

  Pager& pager_;
  UsageMaps maps_;
  std::optional<ObjectTable> objects_;
  std::map<PageNumber, std::unique_ptr<Table>> tables_;
  std::uint64_t generation_ = 0;
  TableHook hook_;
  RandomSource random_;
};

}  // namespace zent::jet
