#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zent::testing {

/// Reasons for differences between two systems:
///
///   # Windows holds the drive in a link in its own way.
///   file: other contents: *.lnk
///
/// A line that begins with "#" goes on with a reason or begins one; each line below it is a
/// difference that it explains, with `*` for any text.
struct Explanation {
  std::string reason;
  std::string pattern;
};
std::vector<Explanation> ReadExplanations(std::string_view text);

/// `*` stands for any text, everything else for itself.
bool FitsPattern(std::string_view pattern, std::string_view text);

/// The report: every difference below its explanation, then the unexplained ones, then explanations
/// that explain nothing.
struct Judgement {
  std::string report;
  std::vector<std::string> unexplained;
  std::vector<std::string> unused;  ///< patterns
};
Judgement Judge(const std::vector<std::string>& differences,
                const std::vector<Explanation>& explanations);

}  // namespace zent::testing
