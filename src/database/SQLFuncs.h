#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Statements of the Access dialect, rewritten for the servers by plain substitution of text, in a
/// fixed order. No grammar is known: what looks like a function's name is one, inside quotes too,
/// and the repairs that follow some substitutions are part of them. Nothing here fails, and nothing
/// asks a machine.
namespace zent {

/// Database kinds, as the connection keeps them.
inline constexpr std::string_view kMSAccess = "MSAccess";
inline constexpr std::string_view kSQLServer = "SQLServer";  ///< any server, Oracle too

/// What a statement becomes whose SELECTs cannot be taken apart; it fails when it is run.
inline constexpr std::string_view kUnparsableStatement = "Error parsing SQL Statment.\r\n";

/// `statement` as a database of that kind gets it. For "MSAccess" nothing changes.
std::string TranslateStatement(std::string_view statement, std::string_view database_kind,
                               bool is_oracle);

/// `statement` with each "#" beside a piece that is a date made a "'".
std::string QuoteDateLiterals(std::string_view statement);

/// `statement` with the "'" inside the calls of DateAdd, DateDiff, Format and Contains made double
/// quotes; the outermost ones of a Contains are "'" again. A call that is never closed stays.
std::string QuoteFunctionArguments(std::string_view statement);

/// True when `statement` holds a "*" in a quoted text that LIKE compares with.
bool FindWildcards(std::string_view statement);

/// `statement` with its wildcards as the servers have them: when FindWildcards says so, each "*"
/// becomes "%", save those of column lists ("SELECT *", "T.*", "Count(*)").
std::string TranslateWildcards(std::string_view statement);

/// `statement` on one line: line breaks become blanks, runs of blanks one, and the blanks around
/// commas go, except inside quotes.
std::string NormaliseSpaces(std::string_view statement);

struct SelectParts {
  std::string head;     ///< "select" or "select top 10", with what stands before
  std::string columns;  ///< between the head and " FROM "
  std::string from;     ///< from "FROM " to the end
  bool operator==(const SelectParts&) const = default;
};

/// The parts of a SELECT, its blanks normalised; nothing when it has no such shape.
std::optional<SelectParts> SplitSelect(std::string_view statement);

/// A UNION as Oracle takes it: in the column lists "date as" becomes "Date_ AS", for "date" is a
/// reserved word there. A statement without " UNION " only loses its line breaks.
std::string TranslateUnionForOracle(std::string_view statement);

}  // namespace zent
