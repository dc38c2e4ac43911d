#include "differential/Explanations.h"

#include <sstream>

namespace zent::testing {
namespace {

using Lines = std::vector<std::string>;

std::string Section(const std::string& title, const Lines& lines) {
  if (lines.empty()) return "";
  std::string text = title + "\n";
  for (const std::string& line : lines) text += "    " + line + "\n";
  return text + "\n";
}

}  // namespace

std::vector<Explanation> ReadExplanations(std::string_view text) {
  std::vector<Explanation> explanations;
  std::string reason;
  bool in_reason = false;
  std::istringstream lines{std::string(text)};
  for (std::string line; std::getline(lines, line);) {
    if (line.empty()) continue;
    const bool is_reason = line.front() == '#';
    if (is_reason && !in_reason) reason.clear();
    if (is_reason && line.size() > 2) reason += (reason.empty() ? "" : " ") + line.substr(2);
    if (!is_reason) explanations.push_back({reason, line});
    in_reason = is_reason;
  }
  return explanations;
}

bool FitsPattern(std::string_view pattern, std::string_view text) {
  const std::size_t star = pattern.find('*');
  if (star == std::string_view::npos) return pattern == text;
  if (text.substr(0, star) != pattern.substr(0, star)) return false;
  for (std::size_t at = star; at <= text.size(); ++at) {
    if (FitsPattern(pattern.substr(star + 1), text.substr(at))) return true;
  }
  return false;
}

Judgement Judge(const Lines& differences, const std::vector<Explanation>& explanations) {
  Judgement judgement;
  std::vector<Lines> explained(explanations.size());
  for (const std::string& difference : differences) {
    std::size_t at = 0;
    while (at < explanations.size() && !FitsPattern(explanations[at].pattern, difference)) ++at;
    const bool has_reason = at < explanations.size() && !explanations[at].reason.empty();
    (has_reason ? explained[at] : judgement.unexplained).push_back(difference);
  }
  for (std::size_t at = 0; at < explanations.size(); ++at) {
    judgement.report += Section(explanations[at].reason, explained[at]);
    if (explained[at].empty()) judgement.unused.push_back(explanations[at].pattern);
  }
  judgement.report += Section("Unexplained:", judgement.unexplained);
  judgement.report += Section("Explanations that explain nothing:", judgement.unused);
  if (judgement.report.empty()) judgement.report = "No difference.\n";
  return judgement;
}

}  // namespace zent::testing
