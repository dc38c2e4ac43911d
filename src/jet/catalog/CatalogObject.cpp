#include "jet/catalog/CatalogObject.h"

namespace zent::jet {

std::int32_t ParentOf(ObjectType type) {
  switch (type) {
    case ObjectType::Table:
    case ObjectType::LinkedTable:
    case ObjectType::LinkedOdbcTable:
    case ObjectType::Query:
      return kTablesId;
    case ObjectType::Database:
    case ObjectType::DatabaseDocument:
      return kDatabasesId;
    case ObjectType::Relationship:
      return kRelationshipsId;
    case ObjectType::Container:
      return kRootId;
    default:
      return 0;
  }
}

}  // namespace zent::jet
