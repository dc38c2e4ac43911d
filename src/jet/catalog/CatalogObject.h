#pragma once

#include <cstdint>
#include <string>

#include "jet/format/Layout.h"
#include "jet/format/Value.h"

namespace zent::jet {

/// What a row of the catalog is, with the numbers of the file. A file may hold others.
enum class ObjectType : std::int16_t {
  Table = 1,
  Database = 2,   ///< the database itself: its properties
  Container = 3,  ///< what other objects have as their parent
  LinkedOdbcTable = 4,
  Query = 5,
  LinkedTable = 6,  ///< in another database file, or in a file of another kind
  Relationship = 8,
  Form = -32768,
  Macro = -32766,
  Report = -32764,
  Module = -32761,
  UserDocument = -32758,
  DatabaseDocument = -32757,  ///< SummaryInfo, UserDefined and the like: properties
  Page = -32756,
};

/// Numbers of the objects that every file has.
inline constexpr std::int32_t kRootId = 0x0F000000;  ///< parent of the containers; has no row
inline constexpr std::int32_t kTablesId = 0x0F000001;
inline constexpr std::int32_t kDatabasesId = 0x0F000002;
inline constexpr std::int32_t kRelationshipsId = 0x0F000003;
inline constexpr std::int32_t kDatabaseId = 0x10000000;

/// The object that holds the properties of the database.
inline constexpr std::string_view kDatabaseName = "MSysDb";

/// Flags of tables. Of the first the sign bit is all there is.
inline constexpr std::int32_t kSystemObject = INT32_MIN;  ///< of the engine itself
inline constexpr std::int32_t kSystemLikeObject = 0x02;   ///< kept by the application
inline constexpr std::int32_t kHiddenObject = 0x08;

/// A row of MSysObjects.
struct CatalogObject {
  std::int32_t id = 0;  ///< of a local table its definition page
  std::int32_t parent = 0;
  ObjectType type = ObjectType::Table;
  std::int32_t flags = 0;  ///< of a query its kind
  std::string name = {};
  Date created = {};
  Date updated = {};
  std::string connect = {};  ///< of a linked table; may hold a password
  std::string database = {};
  std::string foreign_name = {};
  RowPointer row = {};

  bool IsLocalTable() const { return type == ObjectType::Table; }
  bool IsLinked() const {
    return type == ObjectType::LinkedTable || type == ObjectType::LinkedOdbcTable;
  }
  bool IsTable() const { return IsLocalTable() || IsLinked(); }
  /// Of a table: kept by the engine or the application, not by people.
  bool IsSystem() const { return (flags & (kSystemObject | kSystemLikeObject)) != 0; }
  /// Of a table or a query.
  bool IsHidden() const { return (flags & kHiddenObject) != 0; }
  /// Of a local table.
  PageNumber definition() const { return static_cast<PageNumber>(id); }
};

/// The container that objects of that type are in; 0 for those of Access itself, whose containers
/// differ.
std::int32_t ParentOf(ObjectType type);

}  // namespace zent::jet
