#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zent {

/// A search pattern, with the meaning that the system's file search gives it: without regard to
/// case, on long names only, so that "*.htm" does not find "a.html".
///
/// `*` stands for any run of characters, `?` for one. Before a dot or the end of the name a `?` may
/// stand for none, a dot before `*` or `?` may stand for the end of the name, a `*` before a dot
/// stops at the name's last dot, "*." finds the names without a dot, "*.*" finds all.
///
/// Matching takes steps in proportion to the pattern times the name at most, whatever the pattern.
class Wildcard {
 public:
  /// `pattern` is one name, not a path; dots and blanks at its end do not count, but for "*.". One
  /// that holds any of <>" matches nothing.
  explicit Wildcard(std::string_view pattern);

  bool Matches(std::string_view name) const;

  /// True when `text` holds `*` or `?`.
  static bool IsIn(std::string_view text);

 private:
  /// The elements of a pattern once it is read.
  enum class Kind { Letter, AnyRun, RunToLastDot, OneOrEnd, DotOrEnd };
  struct Element {
    Kind kind = Kind::Letter;
    char32_t letter = 0;  // folded
  };

  static std::u32string Folded(std::string_view text);
  /// Extends the set over the elements that match nothing at position `at` of `name`.
  void SkipEmpty(std::u32string_view name, std::size_t at, std::vector<bool>& reached) const;
  bool Takes(const Element& element, char32_t c, bool is_last_dot) const;

  std::vector<Element> elements_;
  bool matches_nothing_ = false;
};

}  // namespace zent
