#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/dao/Collection.h"
#include "jet/dao/Field.h"
#include "jet/dao/Recordset.h"
#include "jet/dao/TableDef.h"
#include "jet/format/Value.h"
#include "jet/storage/Storage.h"

namespace zent::jet {

class Catalog;
struct DatabaseCore;

/// An open database file.
///
/// A change outside of BeginTrans is a transaction of its own: each Update, Delete, Append, each
/// statement. Errors carry DAO's numbers and leave what they refuse as it was.
class Database {
 public:
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  const std::string& name() const;  ///< path of the file
  std::string version() const;      ///< "3.0" (Jet 3) or "4.0"
  bool updatable() const;           ///< false when opened to be read, and for Jet 3
  /// Rolls back what is open. From now on everything here, and recordsets and TableDefs, fail with
  /// kObjectInvalid.
  Status Close();

  /// Local and linked tables, system ones included.
  Result<Collection<TableDef>> TableDefs();
  /// kItemNotFound.
  Result<TableDef> FindTableDef(std::string_view name);
  TableDef CreateTableDef(std::string name) const { return TableDef(std::move(name)); }
  /// Puts a new table in: kTableExists, and what its fields and indexes give.
  Status Append(TableDef& table);
  /// Deletes a table, or the link to one: kItemNotFound, kTableInUse.
  Status DeleteTable(std::string_view name);

  Result<Collection<Relation>> Relations();
  Status Append(const Relation& relation);
  Status DeleteRelation(std::string_view name);

  /// Properties of the database itself.
  Result<Collection<Property>> Properties();

  /// Runs a statement that returns no rows.
  Status Execute(std::string_view statement);
  /// Rows that the last Execute changed.
  std::int64_t records_affected() const;

  /// `source`: the name of a table or a SELECT.
  Result<std::unique_ptr<Recordset>> OpenRecordset(std::string_view source,
                                                   RecordsetType type = RecordsetType::Default);

  /// Up to five deep. An inner CommitTrans leaves it to the outer one to decide. Rollback undoes
  /// everything since the BeginTrans that it belongs to.
  Status BeginTrans();
  Status CommitTrans();
  Status Rollback();

  /// Null once closed.
  Catalog* catalog();

 private:
  friend class Workspace;
  friend class TableDef;
  explicit Database(std::unique_ptr<DatabaseCore> core);
  std::unique_ptr<DatabaseCore> core_;
};

}  // namespace zent::jet
