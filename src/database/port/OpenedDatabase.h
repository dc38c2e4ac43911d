#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "database/port/Recordset.h"
#include "database/port/TableDefinition.h"

namespace zent {

enum class DatabaseKind { Access, Server };

enum class RecordsetUse {
  Read,    ///< once from the first row to the last; nothing is changed
  Change,  ///< rows are edited, added or deleted
  Add,     ///< rows are added to a table; those of a server that are there are not read
};

/// A database that has been opened; its owner closes it, at the latest by destroying it.
///
/// Names of tables, fields and indexes match without regard to case and may hold blanks, quotes and
/// the like: they are passed as they are, never in brackets. Statements are in the dialect of the
/// database; for a server they have been translated. An error has kEngineSource as its source and
/// has changed nothing. Recordsets of a database do not outlive it.
class OpenedDatabase {
 public:
  /// Closes it; an open transaction is rolled back.
  virtual ~OpenedDatabase() = default;

  virtual DatabaseKind Kind() const = 0;
  /// The full path of the file as it was given, or the server's data source.
  virtual const std::string& Name() const = 0;

  // --- Rows ---

  /// Runs a statement that gives no rows; the number of rows affected, 0 for one that changes the
  /// structure. Access: in `INSERT INTO t IN "path" SELECT ...` a path that this program has open
  /// is that opened database, so the rows belong to its transaction.
  virtual Result<std::int64_t> Execute(std::string_view statement) = 0;
  /// Opens a table by its name, or a SELECT statement.
  virtual Result<std::unique_ptr<Recordset>> OpenRecordset(std::string_view source,
                                                           RecordsetUse use) = 0;

  /// A key that two texts of up to 255 characters share exactly when the database holds them equal;
  /// nothing when the database alone can tell.
  virtual std::optional<std::string> EqualityKey(std::string_view text) const = 0;

  // --- Transactions: one at a time, rows and structure alike. What is read in one of a server is
  // what others have committed by then, not by its start ---

  virtual Status BeginTransaction() = 0;
  virtual Status Commit() = 0;
  virtual Status Rollback() = 0;
  /// Without one each change is a transaction of its own.
  virtual bool InTransaction() const = 0;

  // --- Structure. A server whose adapter does not offer a change gives kActionNotSupported ---

  /// All tables, system tables and attached ones included, in the database's own order.
  virtual Result<std::vector<TableEntry>> Tables() = 0;
  /// The whole definition; nothing when there is no such table.
  virtual Result<std::optional<TableDefinition>> Table(std::string_view name) = 0;
  virtual Result<std::vector<RelationDefinition>> Relations() = 0;

  /// Creates the table with its fields, their properties and its indexes, foreign ones left out; a
  /// property that this engine does not take is left out.
  virtual Status CreateTable(const TableDefinition& definition) = 0;
  virtual Status RenameTable(std::string_view name, std::string_view new_name) = 0;
  /// Error: the table takes part in a relation.
  virtual Status DeleteTable(std::string_view name) = 0;

  /// Makes the rules of the table and of its fields, which are found by their names, those of
  /// `definition`: what is required, empty texts, validation. No row is looked at: one that breaks
  /// them stays as it is. An adapter that changes no structure need not have it.
  virtual Status SetRules(std::string_view table, const TableDefinition& definition);

  /// Makes the numbers that the database gives to new rows of `table` go on where those of the
  /// table `from` do, when both number the field of the same name: a row that was deleted from one
  /// keeps its number in the other. An adapter that changes no structure need not have it.
  virtual Status TakeCounter(std::string_view table, std::string_view from);

  /// Appends the field; its ordinal position, when it is above 0, puts it before the field that had
  /// it. Properties as above.
  virtual Status AddField(std::string_view table, const FieldDefinition& field) = 0;
  /// Error: the field takes part in an index or relation.
  virtual Status DeleteField(std::string_view table, std::string_view field) = 0;

  virtual Status CreateIndex(std::string_view table, const IndexDefinition& index) = 0;
  virtual Status DeleteIndex(std::string_view table, std::string_view index) = 0;
  virtual Status CreateRelation(const RelationDefinition& relation) = 0;
  virtual Status DeleteRelation(std::string_view name) = 0;

  /// Closes it, rolling an open transaction back; afterwards only Name and Kind may be called.
  virtual Status Close() = 0;
};

}  // namespace zent
