#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "database/fakes/MemoryTables.h"
#include "database/port/OpenedDatabase.h"

namespace zent::testing {

/// What the databases of one fake engine share: their tables by path or connect text, what was
/// asked of them, and what shall fail.
struct MemoryWorld {
  std::map<std::string, MemoryTables> databases;
  std::vector<std::string> calls;  ///< "Execute UPDATE ...", "Commit" ...
  /// By a call or its first word; of one database alone by "NAME: " and either of them.
  std::map<std::string, RuntimeError> failures;
  std::function<void(const std::string&)> on_call;  ///< before the call: what others do meanwhile
  int open = 0;                                     ///< databases that are not closed yet

  /// Records a call, of a database where that is known; the error that it shall fail with.
  Status Note(const std::string& call, const std::string& database = {});
};

/// An opened database whose tables are kept in memory. Transactions keep a copy of them.
class MemoryDatabase final : public OpenedDatabase {
 public:
  MemoryDatabase(MemoryWorld& world, std::string name, DatabaseKind kind);
  ~MemoryDatabase() override;

  DatabaseKind Kind() const override { return kind_; }
  const std::string& Name() const override { return name_; }
  Result<std::int64_t> Execute(std::string_view statement) override;
  Result<std::unique_ptr<Recordset>> OpenRecordset(std::string_view source,
                                                   RecordsetUse use) override;
  std::optional<std::string> EqualityKey(std::string_view) const override { return std::nullopt; }
  Status BeginTransaction() override;
  Status Commit() override;
  Status Rollback() override;
  bool InTransaction() const override { return before_ != nullptr; }
  Result<std::vector<TableEntry>> Tables() override;
  Result<std::optional<TableDefinition>> Table(std::string_view name) override;
  Result<std::vector<RelationDefinition>> Relations() override { return tables().relations; }
  Status CreateTable(const TableDefinition& definition) override;
  Status RenameTable(std::string_view name, std::string_view new_name) override;
  Status DeleteTable(std::string_view name) override;
  Status SetRules(std::string_view table, const TableDefinition& definition) override;
  /// Its tables number nothing: the call is noted.
  Status TakeCounter(std::string_view table, std::string_view from) override;
  Status AddField(std::string_view table, const FieldDefinition& field) override;
  Status DeleteField(std::string_view table, std::string_view field) override;
  Status CreateIndex(std::string_view table, const IndexDefinition& index) override;
  Status DeleteIndex(std::string_view table, std::string_view index) override;
  Status CreateRelation(const RelationDefinition& relation) override;
  Status DeleteRelation(std::string_view name) override;
  Status Close() override;

 private:
  MemoryTables& tables() { return world_.databases[name_]; }
  Status Note(const std::string& call) { return world_.Note(call, name_); }
  /// Records the call and finds the table that it is about.
  Result<MemoryTable*> Begin(const std::string& call, std::string_view table);

  MemoryWorld& world_;
  std::string name_;
  DatabaseKind kind_;
  std::unique_ptr<MemoryTables> before_;  ///< during a transaction
  bool closed_ = false;
};

}  // namespace zent::testing
