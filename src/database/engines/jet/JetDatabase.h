#pragma once

#include <functional>
#include <memory>
#include <string>

#include "database/port/OpenedDatabase.h"
#include "jet/dao/Database.h"

namespace zent {

/// An opened Access file.
class JetDatabase final : public OpenedDatabase {
 public:
  using Failed = std::function<void(const RuntimeError&)>;  ///< is told each error

  JetDatabase(std::unique_ptr<jet::Database> database, std::string name, Failed failed);

  DatabaseKind Kind() const override { return DatabaseKind::Access; }
  const std::string& Name() const override { return name_; }

  Result<std::int64_t> Execute(std::string_view statement) override;
  Result<std::unique_ptr<Recordset>> OpenRecordset(std::string_view source,
                                                   RecordsetUse use) override;

  std::optional<std::string> EqualityKey(std::string_view text) const override;

  Status BeginTransaction() override;
  Status Commit() override;
  Status Rollback() override;
  bool InTransaction() const override { return in_transaction_; }

  Result<std::vector<TableEntry>> Tables() override;
  Result<std::optional<TableDefinition>> Table(std::string_view name) override;
  Result<std::vector<RelationDefinition>> Relations() override;
  Status CreateTable(const TableDefinition& definition) override;
  Status RenameTable(std::string_view name, std::string_view new_name) override;
  Status DeleteTable(std::string_view name) override;
  Status SetRules(std::string_view table, const TableDefinition& definition) override;
  Status TakeCounter(std::string_view table, std::string_view from) override;
  Status AddField(std::string_view table, const FieldDefinition& field) override;
  Status DeleteField(std::string_view table, std::string_view field) override;
  Status CreateIndex(std::string_view table, const IndexDefinition& index) override;
  Status DeleteIndex(std::string_view table, std::string_view index) override;
  Status CreateRelation(const RelationDefinition& relation) override;
  Status DeleteRelation(std::string_view name) override;

  Status Close() override;

 private:
  /// The same status, its error told.
  Status Told(Status status) const;
  template <typename T>
  Result<T> Told(Result<T> result) const {
    if (!result.ok()) failed_(result.error());
    return result;
  }
  /// Runs `change` on a table of the file.
  Status ChangeTable(std::string_view table, const std::function<Status(jet::TableDef&)>& change);

  std::unique_ptr<jet::Database> database_;
  std::string name_;
  Failed failed_;
  bool in_transaction_ = false;
};

}  // namespace zent
