#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zent {

/// A piece of the log as the system's text box takes it.
struct BoxText {
  std::string ansi;
  std::size_t positions = 0;  ///< by which the box counts it
};

/// `text` (UTF-8) for a text box. Each line end (CR LF, CR or LF) becomes CR LF, the only one the
/// box knows; each other character becomes one of the machine's code page, "?" for lack of a better
/// one. `after_cr` says that a CR stands before `text`, so that a LF at its start ends no other
/// line. `counts_bytes` says what the box's positions count: bytes, or else units of UTF-16.
BoxText ToBoxText(std::string_view text, bool after_cr, bool counts_bytes);

}  // namespace zent
