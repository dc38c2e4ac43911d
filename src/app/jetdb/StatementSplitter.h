#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zent {

/// A statement of a script, and the line that it begins on, counted from 1.
struct ScriptStatement {
  std::string text;
  std::size_t line = 1;
};

/// The statements of a script, UTF-8 with or without a mark at its start: what stands between ";"
/// that are not within quotes or brackets. A line that begins with "--" is a remark. Statements
/// without anything but blanks are left out.
std::vector<ScriptStatement> SplitScript(std::string_view script);

}  // namespace zent
