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

/// The texts within quotes, and the statement with them left out, their quotes kept.
struct QuotedParts {
  std::vector<std::string> texts;
  bool apostrophe_in_double_quotes = false;
  std::string rest;
};

QuotedParts SplitQuoted(std::string_view statement) {
  QuotedParts parts;
  for (std::size_t at = 0; at < statement.size(); ++at) {
    const char quote = statement[at];
    parts.rest += quote;
    if (quote != '\'' && quote != '"') continue;
    const std::size_t end = std::min(statement.find(quote, at + 1), statement.size());
    parts.texts.emplace_back(statement.substr(at + 1, end - at - 1));
    if (quote == '"' && parts.texts.back().find('\'') != kNone) {
      parts.apostrophe_in_double_quotes = true;
    }
    if (end < statement.size()) parts.rest += quote;
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

/// True when `word` stands alone in `text` and not behind "=" or "= ".
bool HasBareWord(std::string_view text, std::string_view word) {
  for (std::size_t at = FindIgnoringCase(text, word); at != kNone;
       at = FindIgnoringCase(text, word, at + 1)) {
    const std::size_t end = at + word.size();
    if ((at > 0 && IsNameByte(text[at - 1])) || (end < text.size() && IsNameByte(text[end]))) {
      continue;
    }
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
  std::size_t first = kNone;
  bool kept = false;
  for (const std::string_view test : {"=Null", "= Null"}) {
    for (std::size_t at = FindIgnoringCase(text, test); at != kNone;
         at = FindIgnoringCase(text, test, at + 1)) {
      first = std::min(first, at);
      const std::size_t end = at + test.size();
      kept |= end == text.size() || (text[end] != ' ' && !IsNameByte(text[end]));
    }
  }
  if (kept) traps.emplace_back("=Null becomes Is Null only with a blank behind it");
  const bool is_update = EqualsIgnoringCase(TrimBlanks(text).substr(0, 7), "update ");
  if (is_update && first < FindIgnoringCase(text, " WHERE ")) {
    traps.emplace_back("an assignment of Null becomes Is Null as a test does");
  }
}

void FindLeftOvers(const std::string& text, Traps& traps) {
  if (QuoteDateLiterals(text).find('#') != kNone) {
    traps.emplace_back("a # that no date stands beside stays");
  }
  if (text.find('&') != kNone) traps.emplace_back("& is not translated");
  for (const std::string_view function : kUntranslated) {
    const std::size_t at = FindIgnoringCase(text, function);
    if (at == kNone || (at > 0 && IsNameByte(text[at - 1]))) continue;
    traps.push_back(fmt::format("{}) is not translated", function));
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

bool HasUnclosedCall(std::string_view text) {
  for (const std::string_view function : {"DateAdd(", "DateDiff(", "Format(", "Contains("}) {
    const std::size_t at = FindIgnoringCase(text, function);
    if (at == kNone) continue;
    const std::string_view call = text.substr(at);
    if (std::count(call.begin(), call.end(), '(') > std::count(call.begin(), call.end(), ')')) {
      return true;
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
  FindLeftOvers(parts.rest, traps);
  FindChangedTexts(parts, is_oracle, traps);
  if (!is_oracle && HasUnclosedCall(parts.rest)) {
    traps.emplace_back("a call of a date function is never closed: its quotes stay");
  }
  FindStarTraps(statement, traps);
  if (is_oracle && TranslateStatement(statement, kSQLServer, true) == kUnparsableStatement) {
    traps.emplace_back("the SELECTs of the UNION cannot be taken apart");
  }
  return traps;
}

}  // namespace zent
