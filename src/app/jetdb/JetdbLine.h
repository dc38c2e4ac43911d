#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace zent {

enum class JetdbVerb { Info, Tables, Dump, Verify, Sql, Create, Compact };

/// How rows are printed.
enum class RowFormat { Text, Csv, Json };

/// Where a password comes from: one of these at most.
struct PasswordSource {
  std::optional<std::string> text = {};
  std::string file = {};         ///< its first line
  std::string environment = {};  ///< a variable
  bool given() const { return text.has_value() || !file.empty() || !environment.empty(); }
};

/// What the command line of jetdb asks for. Paths are the host's own.
struct JetdbLine {
  JetdbVerb verb = JetdbVerb::Info;
  std::string file = {};
  PasswordSource password = {};
  bool read_only = false;
  bool exclusive = false;

  bool all = false;                          ///< tables: those of the system as well
  RowFormat format = RowFormat::Text;        ///< tables, sql
  std::string table = {};                    ///< dump: this one alone; empty: all
  bool no_rows = false;                      ///< dump
  bool whole_values = false;                 ///< dump
  bool quiet = false;                        ///< verify: the faults alone
  std::vector<std::string> statements = {};  ///< sql
  std::string script = {};                   ///< sql: a file, or "-"
  bool single_transaction = false;           ///< sql
  std::string target = {};                   ///< compact
  PasswordSource new_password = {};          ///< compact
  bool no_password = false;                  ///< compact: the new file gets none
};

/// What is to be told instead: help, the version, or what is wrong with the line.
struct JetdbLineEnd {
  std::string text;
  bool wrong = false;
};

/// Parses the arguments, which are UTF-8.
std::variant<JetdbLine, JetdbLineEnd> ParseJetdbLine(int argc, const char* const* argv);

}  // namespace zent
