#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zent {

/// What became of a command, from best to worst.
enum class Outcome {
  Done,
  Skipped,  ///< nothing was to be done
  Warned,   ///< tolerated, but somebody should look
  Failed,   ///< something that was asked for is not there
};

/// The record of one line of the setup list, kept beside what the window shows.
struct CommandRecord {
  std::size_t line = 0;  ///< in ZentUpdate.ini, from 1
  std::string keyword;   ///< as the command table spells it, or as written when it knows none
  std::vector<std::string> tokens = {};
  Outcome outcome = Outcome::Done;
  std::string reason = {};  ///< mostly empty for Done; several are joined by "; "
};

}  // namespace zent
