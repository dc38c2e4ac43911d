#include "ui/script/ScriptedAnswers.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "base/Text.h"
#include "base/Utf.h"

namespace zent {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kTextKeyword = "text:";

struct Keyword {
  std::string_view word;
  ScriptedAnswer::Kind kind;
};

constexpr std::array kKeywords = {
    Keyword{"retry", ScriptedAnswer::Kind::Retry},
    Keyword{"cancel", ScriptedAnswer::Kind::Cancel},
    Keyword{"yes", ScriptedAnswer::Kind::Yes},
    Keyword{"no", ScriptedAnswer::Kind::No},
    Keyword{"continue", ScriptedAnswer::Kind::Continue},
};

std::string_view TakeLine(std::string_view& contents) {
  const std::size_t end = contents.find_first_of("\r\n");
  const std::string_view line = contents.substr(0, end);
  if (end == std::string_view::npos) {
    contents = {};
  } else {
    contents.remove_prefix(end + (contents.substr(end, 2) == kLineBreak ? 2 : 1));
  }
  return line;
}

std::string_view WithoutBlanks(std::string_view line) {
  const std::size_t first = line.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return line.substr(first, line.find_last_not_of(" \t") - first + 1);
}

std::optional<ScriptedAnswer> ParseLine(std::string_view line, std::size_t number) {
  if (EqualsIgnoringCase(line.substr(0, kTextKeyword.size()), kTextKeyword)) {
    return ScriptedAnswer{.kind = ScriptedAnswer::Kind::Text,
                          .text = std::string(line.substr(kTextKeyword.size())),
                          .line = number};
  }
  const auto* const found =
      std::find_if(kKeywords.begin(), kKeywords.end(),
                   [&](const Keyword& keyword) { return EqualsIgnoringCase(line, keyword.word); });
  if (found == kKeywords.end()) return std::nullopt;
  return ScriptedAnswer{.kind = found->kind, .line = number};
}

}  // namespace

Result<ScriptedAnswers> ParseAnswers(std::string_view contents) {
  if (contents.starts_with(kUtf8Mark)) contents.remove_prefix(kUtf8Mark.size());
  ScriptedAnswers answers;
  for (std::size_t number = 1; !contents.empty(); ++number) {
    const std::string_view line = WithoutBlanks(TakeLine(contents));
    if (line.empty() || line.front() == '#') continue;
    auto answer = ParseLine(line, number);
    if (!answer || !IsUtf8(line)) {
      return StandardError(kInvalidFileFormat, fmt::format("line {} is no answer", number));
    }
    answers.push_back(*std::move(answer));
  }
  return answers;
}

std::string_view NameOf(ScriptedAnswer::Kind kind) {
  const auto* const found =
      std::find_if(kKeywords.begin(), kKeywords.end(),
                   [&](const Keyword& keyword) { return keyword.kind == kind; });
  return found == kKeywords.end() ? "text:..." : found->word;
}

}  // namespace zent
