#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"

namespace zent::jet {

/// A pattern of LIKE: "*" any characters, "?" one, "#" one digit, "[a-f_]" one of these, "[!a-f]"
/// one of no others, "[*]" the character itself, "[]" nothing. A hyphen first or last in a list
/// stands for itself. Letters match in any case; ranges follow the collation.
class LikePattern {
 public:
  /// kInvalidPattern for a list without end or a range that runs backwards.
  static Result<LikePattern> Compile(std::string_view pattern);

  /// Takes time in proportion to the product of both lengths at most.
  bool Matches(std::string_view text) const;

  /// What every match starts with, in some case.
  const std::string& Prefix() const { return prefix_; }

 private:
  enum class Kind { Exact, AnyOne, AnyRun, Digit, OneOf, NoneOf };
  struct Character {
    char32_t code_point = 0;
    std::string key = {};  ///< empty for a character that the collation ignores
  };
  struct Range {
    Character low;
    Character high;
  };
  struct Element {
    Kind kind = Kind::Exact;
    Character character = {};
    std::vector<Range> ranges = {};
  };

  static Character MakeCharacter(char32_t code_point);
  static bool Same(const Character& a, const Character& b);
  static bool Within(const Character& character, const Range& range);
  static bool MatchesOne(const Element& element, const Character& character);
  static bool ReadRanges(const std::u32string& list, Element& element);
  void FindPrefix();

  std::vector<Element> elements_;
  std::string prefix_;
};

}  // namespace zent::jet
