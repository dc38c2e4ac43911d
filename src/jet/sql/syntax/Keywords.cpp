#include "jet/sql/syntax/Keywords.h"

#include <algorithm>
#include <array>

#include "base/Text.h"

namespace zent::jet {
namespace {

// Sorted. Words that only data definitions use, and names of types, are no reserved words: columns
// are called "Date", "Text" or "Index".
constexpr std::array<std::string_view, 49> kReserved = {
    "add",   "all",        "alter",      "and",     "as",     "asc",      "between",
    "by",    "constraint", "create",     "delete",  "desc",   "distinct", "distinctrow",
    "drop",  "eqv",        "exists",     "false",   "from",   "group",    "having",
    "imp",   "in",         "inner",      "insert",  "into",   "is",       "join",
    "left",  "like",       "mod",        "not",     "null",   "on",       "or",
    "order", "outer",      "parameters", "primary", "right",  "select",   "set",
    "top",   "true",       "union",      "update",  "values", "where",    "xor",
};

}  // namespace

bool IsReservedWord(std::string_view word) {
  return std::binary_search(kReserved.begin(), kReserved.end(), ToLower(word));
}

}  // namespace zent::jet
