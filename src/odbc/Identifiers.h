#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zent::odbc {

/// A table as its server names it. An empty catalog or schema is the connection's own.
struct TableName {
  std::string catalog;
  std::string schema;
  std::string name;
  bool operator==(const TableName&) const = default;
};

/// `name` between `quote` (one character; "[" closes with "]"), which is doubled where the name
/// holds it; as it stands where `quote` is empty.
std::string QuoteIdentifier(std::string_view name, std::string_view quote);

/// The quoted parts of a name that are not empty, with points between them.
std::string QuoteTable(const TableName& table, std::string_view quote);

/// Takes a table's name, of up to three parts that may stand in double quotes, backquotes or
/// brackets, from the start of `text`; nothing where there is none.
std::optional<TableName> TakeTableName(std::string_view& text);

}  // namespace zent::odbc
