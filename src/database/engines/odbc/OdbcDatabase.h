#pragma once

#include <memory>
#include <string>

#include "database/engines/odbc/OdbcFaults.h"
#include "database/port/OpenedDatabase.h"
#include "odbc/OdbcConnection.h"

namespace zent {

/// An opened server database. Its structure can be read, relations aside, and not be changed:
/// changes of a server's structure are its administrator's.
class OdbcDatabase final : public OpenedDatabase {
 public:
  /// `faults` outlives this.
  OdbcDatabase(std::unique_ptr<odbc::OdbcConnection> connection, OdbcFaults& faults);

  DatabaseKind Kind() const override { return DatabaseKind::Server; }
  const std::string& Name() const override { return name_; }

  Result<std::int64_t> Execute(std::string_view statement) override;
  Result<std::unique_ptr<Recordset>> OpenRecordset(std::string_view source,
                                                   RecordsetUse use) override;
  /// Each column of a server has rules of its own.
  std::optional<std::string> EqualityKey(std::string_view) const override { return std::nullopt; }

  Status BeginTransaction() override;
  Status Commit() override;
  Status Rollback() override;
  bool InTransaction() const override;

  Result<std::vector<TableEntry>> Tables() override;
  Result<std::optional<TableDefinition>> Table(std::string_view name) override;
  Result<std::vector<RelationDefinition>> Relations() override;
  Status CreateTable(const TableDefinition& definition) override;
  Status RenameTable(std::string_view name, std::string_view new_name) override;
  Status DeleteTable(std::string_view name) override;
  Status AddField(std::string_view table, const FieldDefinition& field) override;
  Status DeleteField(std::string_view table, std::string_view field) override;
  Status CreateIndex(std::string_view table, const IndexDefinition& index) override;
  Status DeleteIndex(std::string_view table, std::string_view index) override;
  Status CreateRelation(const RelationDefinition& relation) override;
  Status DeleteRelation(std::string_view name) override;

  Status Close() override;

 private:
  Result<std::string> SelectOf(std::string_view source);

  std::unique_ptr<odbc::OdbcConnection> connection_;  ///< null once closed
  OdbcFaults& faults_;
  std::string name_;
};

}  // namespace zent
