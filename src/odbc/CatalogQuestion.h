#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "odbc/OdbcCalls.h"
#include "odbc/OdbcStatement.h"

namespace zent::odbc {

/// An argument of a catalogue call; an empty one is passed as none.
class CatalogArgument {
 public:
  explicit CatalogArgument(std::string_view text);
  SQLWCHAR* text() { return text_.empty() ? nullptr : text_.data(); }
  SQLSMALLINT length() const {
    return text_.empty() ? SQLSMALLINT{0} : static_cast<SQLSMALLINT>(text_.size() - 1);
  }

 private:
  std::vector<SQLWCHAR> text_;
};

/// `name` with `escape` before the characters that stand for others in a pattern.
std::string EscapePattern(std::string_view name, std::string_view escape);

/// Row after row of a catalogue's answer, to the end or to the first error.
Status ForEachRow(OdbcStatement& answer, const std::function<Status(OdbcStatement&)>& row);

/// Column `number`, counted from 1 as the standard does, as a text or a number; empty or 0 for
/// null.
Result<std::string> TextAt(OdbcStatement& answer, std::size_t number);
Result<std::int64_t> NumberAt(OdbcStatement& answer, std::size_t number);

}  // namespace zent::odbc
