#pragma once

#include <string>
#include <string_view>

#include "database/port/OpenedDatabase.h"
#include "driver/run/UpdateRun.h"

/// Keys of records: a prefix of two letters, the digit of the site unless it is "0", and a serial
/// padded to ten characters in all. The serials come from the table `Counters`.
namespace zent {

/// "CM" for companies, and so on; the name is trimmed and taken in any case. Empty for tables
/// without keys.
std::string KeyFieldPrefix(std::string_view table);

/// The key behind `last`, the one handed out before, at `site`, which is one character. It keeps
/// the first two characters of `last`. The serial is padded, never cut: CM99999999 is followed by
/// CM100000000, eleven characters.
std::string NextKey(std::string_view last, std::string_view site);

/// The first key of a table at `site`.
std::string FirstKey(std::string_view table, std::string_view site);

/// Draws the next key of `table` and keeps it as handed out. Without a counter companies,
/// reminders, emailslinked and mlinkinfo get one; for every other table there is no key then.
/// False, with `key` as it was, when none was drawn; an error is told in a box.
///
/// Two programs that draw from one server at once never get the same key, unless the table is empty
/// and has no unique index: then there is no row to hold while the first one is added.
bool GetNextNumber(UpdateRun& run, OpenedDatabase& database, std::string_view table,
                   std::string& key);

}  // namespace zent
