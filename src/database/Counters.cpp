#include "database/Counters.h"

#include <fmt/format.h>

#include <array>
#include <cstddef>
#include <memory>
#include <optional>

#include "base/Text.h"
#include "database/CounterRow.h"
#include "database/DBFuncs.h"
#include "database/TranslateSQL.h"
#include "driver/run/Messages.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

constexpr std::size_t kPrefixLength = 2;
constexpr std::string_view kMainSite = "0";

struct KeyedTable {
  std::string_view name;  ///< in small letters
  std::string_view prefix;
  bool counted_on_demand;  ///< gets a counter when it has none; the others get no key then
};

constexpr std::array kKeyedTables = {
    KeyedTable{"companies", "CM", true},    KeyedTable{"contacts", "CN", false},
    KeyedTable{"consultants", "CS", false}, KeyedTable{"requirements", "RQ", false},
    KeyedTable{"emailssent", "ES", false},  KeyedTable{"emailsreceived", "ER", false},
    KeyedTable{"emailslinked", "EL", true}, KeyedTable{"reminders", "RM", true},
    KeyedTable{"mlinkinfo", "ML", true},
};

const KeyedTable* FindKeyedTable(std::string_view lower_name) {
  for (const KeyedTable& table : kKeyedTables) {
    if (table.name == lower_name) return &table;
  }
  return nullptr;
}

/// Characters that the serial takes at `site`.
std::size_t SerialLength(std::string_view site) { return site == kMainSite ? 8 : 7; }

std::string Key(std::string_view prefix, std::string_view site, double serial) {
  const std::string digits = fmt::format("{:0{}.0f}", serial, SerialLength(site));
  std::string key(prefix);
  if (site != kMainSite) key += site;
  return key + digits;
}

std::string_view LastCharacters(std::string_view text, std::size_t count) {
  const std::size_t length = CountCharacters(text);
  return length <= count ? text : text.substr(SkipCharacters(text, length - count));
}

/// The digit of this site, "0" when none is kept.
Result<std::string> SiteOf(UpdateRun& run, OpenedDatabase& database) {
  const Result<std::optional<CounterRow>> row = ReadCounter(run, database, "SiteID");
  if (!row.ok()) return row.error();
  if (!row.value()) return std::string(kMainSite);
  const std::string_view count = TrimBlanks(row.value()->count);
  return std::string(count.empty() ? kMainSite : FirstCharacters(count, 1));
}

/// Draws a key; an empty one when the table has no counter and gets none.
Result<std::string> DrawKey(UpdateRun& run, OpenedDatabase& database, const std::string& table) {
  // Another program may draw the same key first: then its key is the last one, and so on. Each turn
  // that is lost is a key that somebody else got.
  constexpr int kTurns = 1000;
  const Result<std::string> site = SiteOf(run, database);
  if (!site.ok()) return site.error();
  for (int turn = 0; turn < kTurns; ++turn) {
    const Result<std::optional<CounterRow>> row = ReadCounter(run, database, table);
    if (!row.ok()) return row.error();
    std::string key;
    Result<bool> kept = false;
    if (row.value()) {
      key = NextKey(TrimBlanks(row.value()->count), site.value());
      kept = KeepCounter(run, database, *row.value(), key);
    } else {
      const KeyedTable* const keyed = FindKeyedTable(ToLower(table));
      if (keyed == nullptr || !keyed->counted_on_demand) return std::string();
      key = FirstKey(table, site.value());
      kept = AddCounter(run, database, table, key);
    }
    if (!kept.ok()) return kept.error();
    if (kept.value()) return key;
  }
  return RuntimeError{.number = kEngineWriteConflict,
                      .description = "Others draw from the counter all the time.",
                      .source = kEngineSource};
}

}  // namespace

std::string KeyFieldPrefix(std::string_view table) {
  const KeyedTable* const keyed = FindKeyedTable(ToLower(TrimBlanks(table)));
  return keyed == nullptr ? std::string() : std::string(keyed->prefix);
}

std::string NextKey(std::string_view last, std::string_view site) {
  const double serial = LeadingNumber(LastCharacters(last, SerialLength(site))) + 1;
  return Key(FirstCharacters(last, kPrefixLength), site, serial);
}

std::string FirstKey(std::string_view table, std::string_view site) {
  return Key(KeyFieldPrefix(table), site, 1);
}

bool GetNextNumber(UpdateRun& run, OpenedDatabase& database, std::string_view table,
                   std::string& key) {
  const std::string name(table);
  const Result<std::string> drawn = DrawKey(run, database, name);
  if (!drawn.ok()) {
    run.Ask({.text = "Fatal Error - Could not get the Next " + name + " Number. - " +
                     drawn.error().description});
    run.Fail(ReasonOf(drawn.error()));
    return false;
  }
  if (drawn.value().empty()) return false;
  key = drawn.value();
  return true;
}

}  // namespace zent
