#include "app/Translate.h"

#include <string>

#include "database/SQLFuncs.h"
#include "database/SqlTraps.h"

namespace zent {
namespace {

/// `text` without the line break at its end, if it has one: whoever pipes a line means what is on
/// it.
std::string WithoutLineBreak(std::string text) {
  if (text.ends_with('\n')) text.pop_back();
  if (text.ends_with('\r')) text.pop_back();
  return text;
}

}  // namespace

ExitCode Translate(ProgramHost& host, const TranslateLine& line) {
  std::string statement = line.statement;
  if (line.from_input) {
    const Result<std::string> input = host.ReadInput();
    if (!input.ok()) {
      host.Complain("standard input: " + input.error().description);
      return ExitCode::WrongCommandLine;
    }
    statement = WithoutLineBreak(input.value());
  }

  const bool is_access = line.to == SqlDialect::Access;
  const bool is_oracle = line.to == SqlDialect::Oracle;
  host.Show(TranslateStatement(statement, is_access ? kMSAccess : kSQLServer, is_oracle) + "\n");
  if (is_access) return ExitCode::Success;
  for (const std::string& trap : FindSqlTraps(statement, is_oracle)) {
    host.Complain("warning: " + trap);
  }
  return ExitCode::Success;
}

}  // namespace zent
