#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"

namespace zent {

/// One line of an answers file.
struct ScriptedAnswer {
  enum class Kind { Retry, Cancel, Yes, No, Continue, Text };
  Kind kind = Kind::Cancel;
  std::string text = {};  ///< of Kind::Text
  std::size_t line = 0;   ///< in the file, 1-based
};

using ScriptedAnswers = std::vector<ScriptedAnswer>;

/// Reads an answers file: one answer a line, "retry", "cancel", "yes", "no", "continue" or "text:"
/// with the text behind the colon, in any case. Blanks and tabs around a line, empty lines and
/// lines that begin with "#" do not count; lines end at CR LF, LF or CR; the mark of UTF-8 is
/// dropped. Anything else, and a line that is no UTF-8, is kInvalidFileFormat with the number of
/// the line, whose text is not repeated, because it may be a mistyped password.
Result<ScriptedAnswers> ParseAnswers(std::string_view contents);

/// The answer as its line has it, a text as "text:...": it may be a password.
std::string_view NameOf(ScriptedAnswer::Kind kind);

}  // namespace zent
