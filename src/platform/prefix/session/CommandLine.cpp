#include "platform/prefix/session/CommandLine.h"

#include <cstddef>
#include <utility>

namespace zent {
namespace {

constexpr std::string_view kSeparators = " \t";

/// Takes one argument off `line` from `at` on, and moves `at` behind it.
std::string TakeArgument(std::string_view line, std::size_t& at) {
  std::string argument;
  bool quoted = false;
  while (at < line.size()) {
    if (!quoted && kSeparators.find(line[at]) != std::string_view::npos) break;

    std::size_t backslashes = 0;
    while (at + backslashes < line.size() && line[at + backslashes] == '\\') ++backslashes;
    at += backslashes;
    if (at == line.size() || line[at] != '"') {
      argument.append(backslashes, '\\');
      if (backslashes == 0) argument.push_back(line[at++]);
      continue;
    }

    argument.append(backslashes / 2, '\\');
    ++at;
    if (backslashes % 2 == 1) {
      argument.push_back('"');
    } else if (quoted && at < line.size() && line[at] == '"') {
      argument.push_back('"');
      ++at;
    } else {
      quoted = !quoted;
    }
  }
  return argument;
}

}  // namespace

std::vector<std::string> SplitArguments(std::string_view line) {
  std::vector<std::string> arguments;
  for (std::size_t at = line.find_first_not_of(kSeparators); at < line.size();
       at = line.find_first_not_of(kSeparators, at)) {
    arguments.push_back(TakeArgument(line, at));
  }
  return arguments;
}

}  // namespace zent
