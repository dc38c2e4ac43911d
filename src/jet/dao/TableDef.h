#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/dao/Collection.h"
#include "jet/dao/Constants.h"
#include "jet/dao/Field.h"
#include "jet/format/PropertyBlob.h"
#include "jet/format/Value.h"

namespace zent::jet {

class Database;
class Schema;
class Table;

/// What the catalog tells of a table.
struct TableFacts {
  std::string name = {};
  std::uint32_t attributes = 0;  ///< the flags of the file, and kAttachedTable, kAttachedOdbc ...
  std::string connect = {};      ///< of a linked table: ";DATABASE=..." or "ODBC;..."
  std::string source_table_name = {};  ///< of a linked table: its name there
  Date date_created = {};
  Date last_updated = {};
};

/// A table as it is made up: one of a database, or a new one until Database::Append has taken it.
/// Fields, indexes and properties are read when they are asked for. A change of a table that is in
/// a database is made at once, as a transaction of its own unless one is open. It must not outlive
/// the database.
class TableDef {
 public:
  /// Of a table of `database`.
  TableDef(Database& database, TableFacts facts) : database_(&database), facts_(std::move(facts)) {}
  /// A new one: Database::CreateTableDef.
  explicit TableDef(std::string name) { facts_.name = std::move(name); }

  const std::string& name() const { return facts_.name; }
  std::uint32_t attributes() const { return facts_.attributes; }
  const std::string& connect() const { return facts_.connect; }
  const std::string& source_table_name() const { return facts_.source_table_name; }
  Date date_created() const { return facts_.date_created; }
  Date last_updated() const { return facts_.last_updated; }
  /// Of a new one: whether lists of tables leave it out.
  void SetHidden(bool hidden) { facts_.attributes = hidden ? kHiddenTable : 0; }
  bool IsLinked() const { return (facts_.attributes & (kAttachedTable | kAttachedOdbc)) != 0; }

  /// -1 for a linked table, 0 for a new one.
  Result<std::int32_t> RecordCount() const;
  /// In the order of their ordinal positions. Those of a linked table are not known here: none.
  Result<Collection<Field>> Fields() const;
  Result<Collection<Index>> Indexes() const;
  Result<Collection<Property>> Properties() const;

  /// Renames the table: kTableExists, kInvalidName.
  Status SetName(std::string name);
  Status Append(const Field& field);
  Status Append(const Index& index);
  /// kItemNotFound, kFieldInIndex.
  Status DeleteField(const ItemKey& field);
  Status DeleteIndex(const ItemKey& index);
  Status RenameField(const ItemKey& field, std::string name);
  /// Of the table, or of the field; kItemNotFound when there is no such field.
  Status SetProperty(const Property& property);
  Status SetFieldProperty(const ItemKey& field, const Property& property);
  /// Of two tables of one database: the numbers of new rows go on where those of `from` do. Nothing
  /// when they do not number the field of the same name.
  Status TakeCounter(const TableDef& from);

 private:
  friend class Database;
  // Of a table of a database.
  Result<Table*> Open() const;
  Status CheckLocal() const;
  Status Change(const std::function<Status(Schema&)>& change);
  Result<std::string> NameOfField(const ItemKey& field) const;

  Database* database_ = nullptr;  ///< null for a new one
  TableFacts facts_;
  std::vector<Field> new_fields_;  ///< of a new one
  std::vector<Index> new_indexes_;
  std::vector<Property> new_properties_;
};

}  // namespace zent::jet
