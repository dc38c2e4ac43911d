#include "database/SqlTraps.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>

#include "base/Text.h"
#include "database/SQLFuncs.h"
#include "database/SqlScanner.h"

namespace zent {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

/// The texts within quotes, and the statement with them left out and with blanks in their place;
/// both keep the quotes.
struct QuotedParts {
  std::vector<std::string> texts;
  bool apostrophe_in_double_quotes = false;
  std::string rest;
  std::string in_place;
};

QuotedParts SplitQuoted(std::string_view statement) {
  QuotedParts parts;
  for (std::size_t at = 0; at < statement.size(); ++at) {
    const char quote = statement[at];
    parts.rest += quote;
    parts.in_place += quote;
    if (quote != '\'' && quote != '"') continue;
    const std::size_t end = std::min(statement.find(quote, at + 1), statement.size());
    parts.texts.emplace_back(statement.substr(at + 1, end - at - 1));
    parts.in_place.append(end - at - 1, ' ');
    if (quote == '"' && parts.texts.back().find('\'') != kNone) {
      parts.apostrophe_in_double_quotes = true;
    }
    if (end < statement.size()) {
      parts.rest += quote;
      parts.in_place += quote;
    }
    at = end;
  }
  return parts;
}

/// A function that is substituted wherever its name stands, also at the end of a longer one.
struct Function {
  std::string_view name;
  bool for_sql_server;
  bool for_oracle;
};

constexpr std::array kSubstituted = {
    Function{"Mid(", true, true},   Function{"Len(", false, true},
    Function{"Now(", true, true},   Function{"Date(", true, true},
    Function{"Trim(", true, false}, Function{"IsNull(", true, false}};
constexpr std::array<std::string_view, 3> kRepaired = {"isdate(", "getdate(", "to_date("};

/// Functions of the Access dialect that no step translates.
constexpr std::array<std::string_view, 9> kUntranslated = {
    "IIf(", "Nz(", "InStr(", "UCase(", "LCase(", "CStr(", "CInt(", "CLng(", "CDbl("};

/// Functions whose arguments are quoted anew.
constexpr std::array<std::string_view, 4> kQuoted = {"DateAdd(", "DateDiff(", "Format(",
                                                     "Contains("};

using Traps = std::vector<std::string>;

void FindLongerNames(const std::string& text, bool is_oracle, Traps& traps) {
  for (const Function& function : kSubstituted) {
    if (!(is_oracle ? function.for_oracle : function.for_sql_server)) continue;
    for (std::size_t at = FindIgnoringCase(text, function.name); at != kNone;
         at = FindIgnoringCase(text, function.name, at + 1)) {
      std::size_t start = at;
      while (start > 0 && IsNameByte(text[start - 1])) --start;
      const std::string name = text.substr(start, at + function.name.size() - start);
      if (start == at ||
          std::find(kRepaired.begin(), kRepaired.end(), ToLower(name)) != kRepaired.end()) {
        continue;
      }
      traps.push_back(fmt::format("the name {}) ends like {}) and is changed to {})", name,
                                  function.name, TranslateStatement(name, kSQLServer, is_oracle)));
    }
  }
}

/// The position of `word` in `text` where it is no part of a longer name.
std::size_t FindWord(std::string_view text, std::string_view word, std::size_t from = 0) {
  std::size_t at = FindIgnoringCase(text, word, from);
  for (; at != kNone; at = FindIgnoringCase(text, word, at + 1)) {
    const std::size_t end = at + word.size();
    const bool is_longer =
        (at > 0 && IsNameByte(text[at - 1])) || (end < text.size() && IsNameByte(text[end]));
    if (!is_longer) break;
  }
  return at;
}

/// True when `word` stands alone in `text` and not behind "=" or "= ".
bool HasBareWord(std::string_view text, std::string_view word) {
  for (std::size_t at = FindWord(text, word); at != kNone; at = FindWord(text, word, at + 1)) {
    const std::string_view before = text.substr(0, at);
    if (!before.ends_with('=') && !before.ends_with("= ")) return true;
  }
  return false;
}

void FindConstants(const std::string& text, Traps& traps) {
  for (const std::string_view word : {"True", "False"}) {
    if (HasBareWord(text, word)) {
      traps.push_back(fmt::format("{} is translated only behind \"=\" or \"= \"", word));
    }
  }
}

/// The position behind the assignments of an UPDATE; 0 for any other statement.
std::size_t EndOfAssignments(std::string_view text) {
  if (!EqualsIgnoringCase(TrimBlanks(text).substr(0, 7), "update ")) return 0;
  return std::min(FindWord(text, "where"), text.size());
}

/// A test for Null is meant to be changed, an assignment is not.
void FindNulls(const std::string& text, Traps& traps) {
  const std::size_t assignments = EndOfAssignments(text);
  bool kept = false;
  bool assigned = false;
  for (const std::string_view null : {"=Null", "= Null"}) {
    for (std::size_t at = FindIgnoringCase(text, null); at != kNone;
         at = FindIgnoringCase(text, null, at + 1)) {
      const std::size_t end = at + null.size();
      if (end < text.size() && IsNameByte(text[end])) continue;
      const bool changed = end < text.size() && text[end] == ' ';
      if (at < assignments) {
        assigned |= changed;
      } else {
        kept |= !changed;
      }
    }
  }
  if (kept) traps.emplace_back("=Null becomes Is Null only with a blank behind it");
  if (assigned) traps.emplace_back("an assignment of Null becomes Is Null as a test does");
}

/// Whether `name`, which ends with its parenthesis, stands in `text` and is no end of a longer one.
bool HasCall(std::string_view text, std::string_view name) {
  for (std::size_t at = FindIgnoringCase(text, name); at != kNone;
       at = FindIgnoringCase(text, name, at + 1)) {
    if (at == 0 || !IsNameByte(text[at - 1])) return true;
  }
  return false;
}

void FindLeftOvers(const std::string& text, Traps& traps) {
  if (QuoteDateLiterals(text).find('#') != kNone) {
    traps.emplace_back("a # that no date stands beside stays");
  }
  if (text.find('&') != kNone) traps.emplace_back("& is not translated");
  for (const std::string_view function : kUntranslated) {
    if (HasCall(text, function)) {
      traps.push_back(fmt::format("{}) is not translated", function));
    }
  }
}

void FindChangedTexts(const QuotedParts& parts, bool is_oracle, Traps& traps) {
  for (const std::string& text : parts.texts) {
    const std::string changed = TranslateStatement(text, kSQLServer, is_oracle);
    std::string plain = text;
    std::replace(plain.begin(), plain.end(), '"', '\'');
    // Quotes within quotes are turned with the rest; what lies in them is looked at as it is.
    if (text.find_first_of("'\"\r\n") == kNone && changed != plain) {
      traps.push_back(fmt::format("the quoted text '{}' is changed to '{}'", text, changed));
    }
  }
  if (parts.apostrophe_in_double_quotes) {
    traps.emplace_back("a ' within double quotes ends the text, for they become '");
  }
}

/// Parentheses count within quotes, too, as where the arguments are quoted.
bool HasUnclosedCall(std::string_view statement, const QuotedParts& parts) {
  const std::vector<std::size_t> closing = ClosingParentheses(statement);
  for (const std::string_view name : kQuoted) {
    for (std::size_t at = FindIgnoringCase(parts.in_place, name); at != kNone;
         at = FindIgnoringCase(parts.in_place, name, at + 1)) {
      if (closing[at + name.size() - 1] == kNone) return true;
    }
  }
  return false;
}

void FindStarTraps(std::string_view statement, Traps& traps) {
  if (!FindWildcards(statement)) return;
  const std::vector<SqlStar> stars = FindStars(statement);
  if (std::any_of(stars.begin(), stars.end(),
                  [](const SqlStar& star) { return !star.pattern && !star.column_list; })) {
    traps.emplace_back("beside a pattern every * becomes %, also one that is none of it");
  }
}

}  // namespace

std::vector<std::string> FindSqlTraps(std::string_view statement, bool is_oracle) {
  Traps traps;
  const QuotedParts parts = SplitQuoted(statement);
  FindLongerNames(parts.rest, is_oracle, traps);
  FindConstants(parts.rest, traps);
  FindNulls(parts.rest, traps);
  FindLeftOvers(parts.rest, traps);
  FindChangedTexts(parts, is_oracle, traps);
  if (!is_oracle && HasUnclosedCall(statement, parts)) {
    traps.emplace_back(
        "a call of DateAdd, DateDiff, Format or Contains is never closed: its quotes stay");
  }
  FindStarTraps(statement, traps);
  if (is_oracle && TranslateStatement(statement, kSQLServer, true) == kUnparsableStatement) {
    traps.emplace_back("the SELECTs of the UNION cannot be taken apart");
  }
  return traps;
}

}  // namespace zent
