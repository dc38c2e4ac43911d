#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/Status.h"
#include "database/port/OpenedDatabase.h"
#include "driver/run/UpdateRun.h"

/// Changes to the structure of a database, and questions about it. Each takes an open database or a
/// path; a path is opened, with the questions that this may need, and closed again. Nothing is
/// shown: a question whose answer cannot be had is answered false, a change that fails changes
/// nothing. Its error is for the record of a command.
namespace zent {

/// An open database, or the path of one.
class DatabaseArgument {
 public:
  DatabaseArgument(OpenedDatabase& database) : database_(&database) {}
  DatabaseArgument(std::string path) : path_(std::move(path)) {}
  DatabaseArgument(const char* path) : path_(path) {}

  OpenedDatabase* database() const { return database_; }  ///< null: there is the path
  const std::string& path() const { return path_; }

 private:
  OpenedDatabase* database_ = nullptr;
  std::string path_;
};

/// The name of a table, given as such or by the table.
class TableArgument {
 public:
  TableArgument(std::string_view name) : name_(name) {}
  TableArgument(const std::string& name) : name_(name) {}
  TableArgument(const char* name) : name_(name) {}
  TableArgument(const TableEntry& table) : name_(table.name) {}
  TableArgument(const TableDefinition& table) : name_(table.name) {}

  const std::string& name() const { return name_; }

 private:
  std::string name_;
};

/// `name` as a statement of the Access dialect takes it: as it is, or in brackets when it holds
/// anything but letters, digits and "_", begins with a digit or is a word of the language.
std::string StatementName(std::string_view name);

bool TableExists(UpdateRun& run, const DatabaseArgument& database, const TableArgument& table);
/// Asks a query of no rows for the field.
bool FieldExists(UpdateRun& run, const DatabaseArgument& database, const TableArgument& table,
                 std::string_view field);
/// Always false while the database kind is "SQLServer".
bool IsLinkedTable(UpdateRun& run, const DatabaseArgument& database, const TableArgument& table);
bool IsSystemTable(UpdateRun& run, const DatabaseArgument& database, const TableArgument& table);

/// The same of a table that a list has told of; a link counts whatever the database kind.
bool IsLink(const TableEntry& table);
bool IsSystemTable(const TableEntry& table);

enum class TableData { Leave, Copy };

/// Copies a table that `source` has and `target` has not, with its fields, their properties and its
/// indexes, and its rows if asked for. `target_path` is the target's file. A table of either kind
/// of link becomes one of the database's own; an error where the engine does not tell its fields.
Status CopyTable(UpdateRun& run, const DatabaseArgument& source, const DatabaseArgument& target,
                 const TableArgument& table, std::string_view target_path, TableData data);

/// Nothing when there is no such table.
Status RenameTable(UpdateRun& run, const DatabaseArgument& database, std::string_view old_name,
                   std::string_view new_name);

struct NewField {
  std::string name;
  FieldType type = FieldType::Unknown;
  std::int32_t size = 0;
  bool allow_zero_length = true;
  std::int32_t ordinal_position = 0;
};

/// Nothing when the table is missing or has the field.
Status AddField(UpdateRun& run, const DatabaseArgument& database, const TableArgument& table,
                const NewField& field);
/// Adds a field like `pattern`, with its properties.
Status CopyField(UpdateRun& run, const DatabaseArgument& database, const TableArgument& table,
                 const FieldDefinition& pattern);
/// Deletes the field, its values too, and adds one like `pattern`: both or none.
Status ReplaceField(UpdateRun& run, const DatabaseArgument& database, const TableArgument& table,
                    std::string_view field, const FieldDefinition& pattern);

}  // namespace zent
