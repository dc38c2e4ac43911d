#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "odbc/Identifiers.h"

namespace zent::odbc {

/// The table whose rows a statement of the form "SELECT * FROM table [WHERE ...] [ORDER BY ...]"
/// gives, and the table's name as the statement writes it.
struct SelectedTable {
  TableName table;
  std::string written;
};

/// Nothing for any other statement: of its rows it cannot be told which row of a table they are.
std::optional<SelectedTable> TableOfSelect(std::string_view sql);

}  // namespace zent::odbc
