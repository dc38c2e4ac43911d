#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

namespace zent {

/// What a line of the setup list does: token 1 is the keyword, the arguments follow. A handler
/// reports its own errors; one that it hands back is reported by the interpreter.
using CommandHandler = Status (*)(UpdateRun& run, const TokenList& tokens);

/// Lines that open and close a block which only one system runs.
enum class BlockMarker { None, Begin, End };

struct Command {
  std::string_view keyword;  ///< matched without regard to case
  CommandHandler handler = nullptr;
  /// The tokens that are path arguments, as digits: "23" for tokens 2 and 3.
  std::string_view paths = {};
  BlockMarker marker = BlockMarker::None;
  /// The handler gets no token beyond this one; 0 for no such bound.
  std::size_t last_token = 0;
};

/// Every command, in the order of comparison.
std::span<const Command> CommandTable();

/// The tokens of a line that the command's handler gets.
TokenList TokensFor(const Command& command, const TokenList& tokens);

/// The first command of that keyword, blanks around it and its case put aside; nullptr for none.
const Command* FindCommand(std::string_view keyword);

}  // namespace zent
