#include "platform/Wildcard.h"

#include <utility>

#include "base/CaseFold.h"
#include "base/Utf.h"

namespace zent {

// The rule is the published one of the NT file systems (FsRtlIsNameInExpression) after the
// conversion that FindFirstFile makes: `?` becomes ">", a dot before `?` or `*` becomes '"', and a
// `*` before a dot, or before the final dot of the pattern, becomes "<".
Wildcard::Wildcard(std::string_view pattern) {
  matches_nothing_ = pattern.find_first_of("<>\"") != std::string_view::npos;
  const bool final_dot = pattern.ends_with('.');
  pattern = pattern.substr(0, pattern.find_last_not_of(". ") + 1);
  const std::u32string text = Folded(pattern);
  if (text.empty()) matches_nothing_ = true;
  if (text == U"*.*" && !final_dot) {
    elements_.push_back({.kind = Kind::AnyRun});
    return;
  }

  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool last = i + 1 == text.size();
    const char32_t next = last ? U'\0' : text[i + 1];
    // The star before the final dot is no plain one any more when the dot before it is looked at.
    const bool next_is_final = i + 2 == text.size() && final_dot && next == U'*';
    Element element{.kind = Kind::Letter, .letter = text[i]};
    if (text[i] == U'*') {
      element.kind = next == U'.' || (last && final_dot) ? Kind::RunToLastDot : Kind::AnyRun;
    } else if (text[i] == U'?') {
      element.kind = Kind::OneOrEnd;
    } else if (text[i] == U'.' && (next == U'?' || (next == U'*' && !next_is_final))) {
      element.kind = Kind::DotOrEnd;
    }
    elements_.push_back(element);
  }
}

bool Wildcard::Matches(std::string_view name) const {
  if (matches_nothing_) return false;
  const std::u32string text = Folded(name);
  const std::size_t last_dot = text.rfind(U'.');

  // All elements that may come next, step by step: no way is tried twice.
  std::vector<bool> reached(elements_.size() + 1);
  reached[0] = true;
  for (std::size_t at = 0; at < text.size(); ++at) {
    SkipEmpty(text, at, reached);
    std::vector<bool> next(reached.size());
    for (std::size_t i = 0; i < elements_.size(); ++i) {
      if (!reached[i] || !Takes(elements_[i], text[at], at == last_dot)) continue;
      const Kind kind = elements_[i].kind;
      next[kind == Kind::AnyRun || kind == Kind::RunToLastDot ? i : i + 1] = true;
    }
    reached = std::move(next);
  }
  SkipEmpty(text, text.size(), reached);
  return reached.back();
}

bool Wildcard::IsIn(std::string_view text) {
  return text.find_first_of("*?") != std::string_view::npos;
}

std::u32string Wildcard::Folded(std::string_view text) {
  const std::string folded = FoldName(text);
  std::u32string letters;
  for (std::size_t at = 0; at < folded.size();) letters.push_back(NextCodePoint(folded, at));
  return letters;
}

void Wildcard::SkipEmpty(std::u32string_view name, std::size_t at,
                         std::vector<bool>& reached) const {
  const bool at_end = at == name.size();
  const bool at_dot = !at_end && name[at] == U'.';
  for (std::size_t i = 0; i < elements_.size(); ++i) {
    if (!reached[i]) continue;
    const Kind kind = elements_[i].kind;
    if (kind == Kind::AnyRun || kind == Kind::RunToLastDot ||
        (kind == Kind::OneOrEnd && (at_end || at_dot)) || (kind == Kind::DotOrEnd && at_end)) {
      reached[i + 1] = true;
    }
  }
}

bool Wildcard::Takes(const Element& element, char32_t c, bool is_last_dot) const {
  switch (element.kind) {
    case Kind::Letter:
      return element.letter == c;
    case Kind::AnyRun:
      return true;
    case Kind::RunToLastDot:
      return !is_last_dot;
    case Kind::OneOrEnd:
      return c != U'.';
    case Kind::DotOrEnd:
      return c == U'.';
  }
  return false;
}

}  // namespace zent
