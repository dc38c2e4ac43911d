#include "database/SQLFuncs.h"

#include "base/Text.h"

namespace zent {
namespace {

/// One substitution. Where a server has no text the statement stays as it is.
struct Substitution {
  std::string_view pattern;  ///< any case
  std::string_view for_sql_server;
  std::string_view for_oracle;
  bool repair = false;  ///< done only when the substitution before it found its pattern
};

constexpr Substitution kSubstitutions[] = {
    // in the order in which they are made
    {"Mid(", "SubString(", "Substr("},
    {"Len(", {}, "Length("},
    {"Now(", "GetDate(", "GetDate("},
    // Hits every name that ends in "Date(": what is known of those is undone.
    {"Date(", "GetDate(", "GetDate("},
    {"IsGetDate(", "IsDate(", "IsDate(", true},
    {"GetGetDate(", "GetDate(", "GetDate(", true},
    {"To_GetDate(", "To_Date(", "To_Date(", true},
    {"= False", "= 0", "= 0"},
    {"=False", "=0", "=0"},
    // Bit columns of SQL Server hold 1; Oracle's, migrated from Access, hold -1.
    {"= True", "= 1", "= -1"},
    {"=True", "=1", "=-1"},
    // With the blank behind: at the very end of a statement it stays.
    {"= Null ", " Is Null ", " Is Null "},
    {"=Null ", " Is Null ", " Is Null "},
    // Functions that the application's own database provides. LTrim becomes "Ldbo.TrimVBA".
    {"Trim(", "dbo.TrimVBA(", {}},
    {"dbo.dbo.TrimVBA(", "dbo.TrimVBA(", {}, true},
    {"IsNull(", "dbo.IsNullVBA(", {}},
    {"dbo.dbo.IsNullVBA(", "dbo.IsNullVBA(", {}, true},
};

std::string Substitute(std::string_view statement, bool is_oracle) {
  std::string text(statement);
  bool found = false;
  for (const Substitution& step : kSubstitutions) {
    const std::string_view replacement = is_oracle ? step.for_oracle : step.for_sql_server;
    if (replacement.empty() || (step.repair && !found)) continue;
    const bool present = FindIgnoringCase(text, step.pattern) != std::string::npos;
    if (present) text = ReplaceAllIgnoringCase(text, step.pattern, replacement);
    if (!step.repair) found = present;
  }
  return text;
}

}  // namespace

std::string TranslateStatement(std::string_view statement, std::string_view database_kind,
                               bool is_oracle) {
  if (database_kind == kMSAccess) return std::string(statement);
  std::string text = QuoteDateLiterals(Substitute(statement, is_oracle));
  for (char& character : text) {
    if (character == '"') character = '\'';
  }
  if (!is_oracle) text = QuoteFunctionArguments(text);
  text = TranslateWildcards(text);
  return is_oracle ? TranslateUnionForOracle(text) : text;
}

}  // namespace zent
