#include "jet/sql/values/Like.h"

#include <algorithm>
#include <utility>

#include "base/Utf.h"
#include "jet/format/JetErrors.h"
#include "jet/format/TextKey.h"

namespace zent::jet {
namespace {

std::u32string CodePoints(std::string_view text) {
  std::u32string code_points;
  for (std::size_t at = 0; at < text.size();) code_points.push_back(NextCodePoint(text, at));
  return code_points;
}

}  // namespace

LikePattern::Character LikePattern::MakeCharacter(char32_t code_point) {
  Character character{.code_point = code_point};
  std::string text;
  AppendUtf8(code_point, text);
  std::string nothing;
  AppendTextKey4("", true, nothing);
  AppendTextKey4(text, true, character.key);
  // All that the collation ignores has the key of no text: such characters equal only themselves.
  if (character.key == nothing) character.key.clear();
  return character;
}

bool LikePattern::Same(const Character& a, const Character& b) {
  return a.code_point == b.code_point || (!a.key.empty() && a.key == b.key);
}

bool LikePattern::Within(const Character& character, const Range& range) {
  if (Same(character, range.low) || Same(character, range.high)) return true;
  return !character.key.empty() && range.low.key <= character.key &&
         character.key <= range.high.key;
}

bool LikePattern::MatchesOne(const Element& element, const Character& character) {
  const auto within = [&](const Range& range) { return Within(character, range); };
  switch (element.kind) {
    case Kind::Exact:
      return Same(element.character, character);
    case Kind::AnyOne:
      return true;
    case Kind::Digit:
      return character.code_point >= U'0' && character.code_point <= U'9';
    case Kind::OneOf:
      return std::any_of(element.ranges.begin(), element.ranges.end(), within);
    case Kind::NoneOf:
      return std::none_of(element.ranges.begin(), element.ranges.end(), within);
    case Kind::AnyRun:
      break;
  }
  return false;
}

bool LikePattern::ReadRanges(const std::u32string& list, Element& element) {
  element.kind = Kind::OneOf;
  std::size_t at = 0;
  if (list.size() > 1 && list[0] == U'!') {
    element.kind = Kind::NoneOf;
    at = 1;
  }
  while (at < list.size()) {
    Range range{.low = MakeCharacter(list[at]), .high = {}};
    range.high = range.low;
    if (at + 2 < list.size() && list[at + 1] == U'-') {
      range.high = MakeCharacter(list[at + 2]);
      if (range.high.key < range.low.key) return false;
      at += 2;
    }
    ++at;
    element.ranges.push_back(std::move(range));
  }
  return true;
}

Result<LikePattern> LikePattern::Compile(std::string_view pattern) {
  const std::u32string characters = CodePoints(pattern);
  LikePattern compiled;
  for (std::size_t at = 0; at < characters.size(); ++at) {
    Element element;
    const char32_t c = characters[at];
    if (c == U'*') {
      element.kind = Kind::AnyRun;
    } else if (c == U'?') {
      element.kind = Kind::AnyOne;
    } else if (c == U'#') {
      element.kind = Kind::Digit;
    } else if (c == U'[') {
      const std::size_t close = characters.find(U']', at);
      if (close == std::u32string::npos) return JetError(kInvalidPattern);
      const std::u32string list = characters.substr(at + 1, close - at - 1);
      at = close;
      if (list.empty()) continue;
      if (!ReadRanges(list, element)) return JetError(kInvalidPattern);
    } else {
      element.character = MakeCharacter(c);
    }
    compiled.elements_.push_back(std::move(element));
  }
  compiled.FindPrefix();
  return compiled;
}

void LikePattern::FindPrefix() {
  for (const Element& element : elements_) {
    if (element.kind != Kind::Exact) return;
    AppendUtf8(element.character.code_point, prefix_);
  }
}

bool LikePattern::Matches(std::string_view text) const {
  std::vector<Character> characters;
  for (const char32_t c : CodePoints(text)) characters.push_back(MakeCharacter(c));

  // Where a match fails, only the last run grows: earlier ones cannot do better.
  std::size_t element = 0;
  std::size_t at = 0;
  std::size_t run = elements_.size();
  std::size_t run_end = 0;
  while (at < characters.size()) {
    if (element < elements_.size() && elements_[element].kind == Kind::AnyRun) {
      run = element++;
      run_end = at;
    } else if (element < elements_.size() && MatchesOne(elements_[element], characters[at])) {
      ++element;
      ++at;
    } else if (run < elements_.size()) {
      element = run + 1;
      at = ++run_end;
    } else {
      return false;
    }
  }
  while (element < elements_.size() && elements_[element].kind == Kind::AnyRun) ++element;
  return element == elements_.size();
}

}  // namespace zent::jet
