#include "app/jetdb/JetdbLine.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <map>

#include "driver/run/Product.h"

namespace zent {
namespace {

constexpr const char* kDescription =
    "jetdb reads, checks and changes Access databases (.mdb) of Access 97 to 2003.";
constexpr const char* kFooter =
    "'jetdb VERB --help' tells the options of a verb.\n"
    "Exit codes: 0 done; 1 faults found, or the database refused it (the error's number and text\n"
    "are on standard error); 2 wrong command line.\n";

void AddPassword(CLI::App& verb, const std::string& prefix, const std::string& whose,
                 PasswordSource& source) {
  auto* const group = verb.add_option_group(prefix + "password");
  group->add_option("--" + prefix + "password", source.text, "Password of " + whose)
      ->type_name("TEXT");
  group
      ->add_option("--" + prefix + "password-file", source.file,
                   "Take it from the first line of a file")
      ->type_name("FILE");
  group
      ->add_option("--" + prefix + "password-env", source.environment,
                   "Take it from a variable of the environment")
      ->type_name("NAME");
  group->require_option(0, 1);
}

void AddFormat(CLI::App& verb, JetdbLine& line) {
  const std::map<std::string, RowFormat> formats = {
      {"text", RowFormat::Text}, {"csv", RowFormat::Csv}, {"json", RowFormat::Json}};
  verb.add_option("--format", line.format, "How rows are printed: text, csv or json (text)")
      ->transform(CLI::CheckedTransformer(formats, CLI::ignore_case).description(""))
      ->type_name("FORMAT");
}

CLI::App& AddVerb(CLI::App& app, JetdbLine& line, JetdbVerb verb, const char* name,
                  const char* description) {
  CLI::App* const added = app.add_subcommand(name, description);
  added->add_option("FILE", line.file, "The database")->required();
  added->callback([&line, verb] { line.verb = verb; });
  AddPassword(*added, "", "the database", line.password);
  return *added;
}

void AddSharing(CLI::App& verb, JetdbLine& line, bool writes) {
  auto* const exclusive =
      verb.add_flag("--exclusive", line.exclusive, "Open it alone: nobody else may have it open");
  if (!writes) return;
  verb.add_flag("--read-only", line.read_only, "Open it to be read: statements cannot change it")
      ->excludes(exclusive);
}

void AddReadingVerbs(CLI::App& app, JetdbLine& line) {
  CLI::App& info = AddVerb(app, line, JetdbVerb::Info, "info",
                           "Tell its version, sizes, protection, and who has it open");
  AddSharing(info, line, false);
  CLI::App& tables = AddVerb(app, line, JetdbVerb::Tables, "tables",
                             "List its tables with columns, indexes and rows");
  tables.add_flag("--all", line.all, "Tables of the system as well");
  AddFormat(tables, line);
  AddSharing(tables, line, false);
  CLI::App& dump = AddVerb(app, line, JetdbVerb::Dump, "dump",
                           "Print everything that it holds as one JSON object");
  dump.add_option("--table", line.table, "Of the tables this one alone")->type_name("NAME");
  dump.add_flag("--no-rows", line.no_rows, "Leave the rows out");
  dump.add_flag("--whole-values", line.whole_values,
                "Print values of more than 4096 characters or bytes, not their SHA-256");
  AddSharing(dump, line, false);
  CLI::App& verify =
      AddVerb(app, line, JetdbVerb::Verify, "verify",
              "Check pages, rows, long values, indexes and catalog; one line a fault");
  verify.add_flag("--quiet", line.quiet, "Print faults alone, and nothing when there are none");
  AddSharing(verify, line, false);
}

void AddChangingVerbs(CLI::App& app, JetdbLine& line) {
  CLI::App& sql = AddVerb(app, line, JetdbVerb::Sql, "sql", "Run SQL statements");
  sql.add_option("STATEMENT", line.statements,
                 "Statements, separated by ';'\n(default: from standard input)");
  sql.add_option("--file", line.script, "Run the statements of a file; - is standard input")
      ->type_name("SCRIPT");
  sql.add_flag("--single-transaction", line.single_transaction,
               "All statements or none: each is a transaction of its own otherwise");
  AddFormat(sql, line);
  AddSharing(sql, line, true);
  AddVerb(app, line, JetdbVerb::Create, "create",
          "Make a new, empty database (Access 2000); never over another file");
  CLI::App& compact = AddVerb(app, line, JetdbVerb::Compact, "compact",
                              "Write what it holds densely into a new file");
  compact.add_option("NEWFILE", line.target, "The file to write; there must be none yet")
      ->required();
  AddPassword(compact, "new-", "the new file (default: the same)", line.new_password);
  compact.add_flag("--no-password", line.no_password, "The new file gets no password");
}

JetdbLineEnd WrongLine(const std::string& what) {
  return {.text = fmt::format("{}\nTry 'jetdb --help'.", what), .wrong = true};
}

}  // namespace

std::variant<JetdbLine, JetdbLineEnd> ParseJetdbLine(int argc, const char* const* argv) {
  JetdbLine line;
  CLI::App app(kDescription, "jetdb");
  app.set_version_flag(
      "--version", fmt::format("jetdb {}.{}.{}", kVersionMajor, kVersionMinor, kVersionRevision));
  app.footer(kFooter);
  app.allow_windows_style_options(false);  // a path may begin with a slash
  app.require_subcommand(1);
  AddReadingVerbs(app, line);
  AddChangingVerbs(app, line);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    return JetdbLineEnd{.text = app.help()};
  } catch (const CLI::CallForVersion& call) {
    return JetdbLineEnd{.text = std::string(call.what()) + "\n"};
  } catch (const CLI::ParseError& error) {
    return WrongLine(error.what());
  }
  if (!line.statements.empty() && !line.script.empty()) {
    return WrongLine("statements are given both on the command line and by --file");
  }
  if (line.no_password && line.new_password.given()) {
    return WrongLine("--no-password and a new password exclude each other");
  }
  return line;
}

}  // namespace zent
