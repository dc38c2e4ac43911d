#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "jet/store/TableStore.h"
#include "jet/tools/CatalogRows.h"
#include "jet/tools/FaultLog.h"

namespace zent::jet {

/// What the check of a file knows of an object of the catalog.
struct CheckedObject {
  std::int32_t id = 0;
  std::int32_t parent = 0;
  std::int32_t type = 0;
  std::int32_t flags = 0;
  std::string name = {};

  bool IsTable() const { return type == 1; }
  /// "table Orders", "object Forms".
  std::string Subject() const;
};

/// The rows of the system tables: that ids and parents are there, names are not taken twice, and
/// what belongs to objects belongs to one that is there.
class CatalogCheck {
 public:
  CatalogCheck(UsageMaps& maps, FaultLog& faults) : maps_(maps), faults_(faults) {}

  /// Reads the catalog; false when nothing can be read of it.
  bool ReadObjects();
  /// The rights and the queries.
  void CheckBelongings();
  const std::vector<CheckedObject>& objects() const { return objects_; }

  /// A definition that has been read, by its page, for the blobs and relationships.
  void AddTable(const CheckedObject& object, const TableDefinition& table);
  /// Property blobs: those of tables name columns that these have.
  void CheckProperties();
  /// Rows of MSysRelationships against the tables, logical indexes against each other, and the keys
  /// of referring rows against those that they refer to.
  void CheckRelationships();

 private:
  struct KnownTable {
    std::string name;
    PageNumber page = 0;
    TableDefinition definition;
  };
  /// The rows of MSysRelationships of one name.
  struct RelationshipRows {
    std::string name = {};
    std::string table = {};
    std::string referenced = {};
    std::int32_t flags = 0;
    std::int64_t columns = 0;  ///< as each row says
    std::int64_t rows = 0;
    std::set<std::int64_t> places = {};
  };

  void AddObject(CheckedObject object);
  void CheckParents();
  void CheckBelonging(PageNumber page, const std::string& table);
  void CheckBlob(const CheckedObject& object, const std::string& bytes, PageNumber page);
  const KnownTable* Find(std::string_view name) const;
  void CheckRelationshipRow(const CatalogRow& row, RelationshipRows& known);
  void CheckRelationship(const RelationshipRows& known);
  void CheckPartner(const KnownTable& table, const LogicalIndex& index);
  void CheckReferences(const KnownTable& table, const LogicalIndex& index, const KnownTable& other,
                       const LogicalIndex& partner);

  UsageMaps& maps_;
  FaultLog& faults_;
  std::vector<CheckedObject> objects_;
  std::map<std::int32_t, std::size_t> by_id_;
  std::map<PageNumber, KnownTable> tables_;
};

}  // namespace zent::jet
