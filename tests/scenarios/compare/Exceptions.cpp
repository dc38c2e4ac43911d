#include "scenarios/compare/Exceptions.h"

#include <algorithm>
#include <sstream>
#include <vector>

namespace zent::testing {
namespace {

using Lines = std::vector<std::string>;

struct Block {
  std::string reason = {};
  std::string name = {};  ///< of the text that it is about
  Lines removed = {};
  Lines added = {};
};

Lines LinesOf(std::string_view text) {
  Lines lines;
  std::istringstream stream{std::string(text)};
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::vector<Block> ReadBlocks(std::string_view text) {
  std::vector<Block> blocks;
  bool in_reason = false;
  for (const std::string& line : LinesOf(text)) {
    if (line.empty()) continue;
    if (line.front() == '#') {
      if (!in_reason) blocks.emplace_back();
      in_reason = true;
      blocks.back().reason += line.substr(1);
      continue;
    }
    if (blocks.empty()) blocks.emplace_back();
    in_reason = false;
    const std::string rest = line.size() < 2 ? "" : line.substr(2);
    if (line.front() == '-') {
      blocks.back().removed.push_back(rest);
    } else if (line.front() == '+') {
      blocks.back().added.push_back(rest);
    } else {
      // One reason may stand for several texts.
      if (!blocks.back().name.empty()) {
        std::string reason = blocks.back().reason;
        blocks.emplace_back().reason = std::move(reason);
      }
      blocks.back().name = line;
    }
  }
  return blocks;
}

bool Matches(const std::string& line, const std::string& pattern) {
  if (pattern.empty() || pattern.back() != '*') return line == pattern;
  return line.rfind(pattern.substr(0, pattern.size() - 1), 0) == 0;
}

/// Where the removed lines stand; the end when they do not.
Lines::iterator Find(Lines& lines, const Block& block) {
  if (block.removed.empty()) return lines.end();
  return std::search(lines.begin(), lines.end(), block.removed.begin(), block.removed.end(),
                     Matches);
}

}  // namespace

std::pair<std::string, std::string> ApplyExceptions(std::string_view exceptions,
                                                    std::string_view name, std::string text) {
  std::string wrong;
  Lines lines = LinesOf(text);
  for (const Block& block : ReadBlocks(exceptions)) {
    if (block.reason.find_first_not_of(" #") == std::string::npos)
      wrong += "an exception without a reason, for " + block.name + "\n";
    if (block.name != name) continue;
    const auto at = Find(lines, block);
    if (at == lines.end() && !block.removed.empty()) {
      wrong += "an exception that nothing needs, for " + block.name + ": " + block.removed.front();
      wrong += "\n";
      continue;
    }
    const auto behind = lines.erase(at, at + static_cast<std::ptrdiff_t>(block.removed.size()));
    lines.insert(behind, block.added.begin(), block.added.end());
  }
  text.clear();
  for (const std::string& line : lines) text += line + "\n";
  return {text, wrong};
}

}  // namespace zent::testing
