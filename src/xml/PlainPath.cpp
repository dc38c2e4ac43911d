#include "xml/PlainPath.h"

#include <algorithm>
#include <utility>

namespace zent::xml {
namespace {

constexpr std::size_t kMostSteps = 64;
constexpr std::size_t kMostPredicates = 16;  // and tests, in a whole path

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsBlankByte(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
bool IsControl(char c) { return static_cast<unsigned char>(c) < 0x20 && !IsBlankByte(c); }

class PlainParser {
 public:
  explicit PlainParser(std::string_view xpath) : rest_(xpath) {}

  std::optional<PlainPath> Parse() {
    PlainPath path;
    path.absolute = Take("/");
    do {
      PlainStep step;
      if (path.steps.size() == kMostSteps || !ParseStep(step)) return {};
      path.steps.push_back(std::move(step));
    } while (!path.steps.back().attribute && Take("/"));
    SkipBlanks();
    if (!rest_.empty()) return {};
    return path;
  }

 private:
  bool ParseStep(PlainStep& step) {
    step.attribute = Take("@");
    if (!Take("*") && !ParseName(step.name)) return false;
    if (step.attribute) return true;
    while (Take("[")) {
      PlainPredicate predicate;
      if (++predicates_ > kMostPredicates || !ParsePredicate(predicate) || !Take("]")) return false;
      step.predicates.push_back(std::move(predicate));
    }
    return true;
  }

  bool ParsePredicate(PlainPredicate& predicate) {
    if (Take("last()")) {
      predicate.kind = PlainPredicate::Kind::Last;
      return true;
    }
    SkipBlanks();
    if (!rest_.empty() && IsDigit(rest_.front())) return ParsePosition(predicate);
    do {
      PlainTest test;
      if (++predicates_ > kMostPredicates || !ParseTest(test)) return false;
      predicate.tests.push_back(std::move(test));
    } while (TakeAnd());
    return true;
  }

  bool ParsePosition(PlainPredicate& predicate) {
    constexpr std::size_t kMostDigits = 9;
    std::size_t digits = 0;
    predicate.kind = PlainPredicate::Kind::Position;
    for (; !rest_.empty() && IsDigit(rest_.front()); rest_.remove_prefix(1)) {
      predicate.position = 10 * predicate.position + static_cast<std::size_t>(rest_.front() - '0');
      if (++digits > kMostDigits) return false;
    }
    return true;
  }

  bool ParseTest(PlainTest& test) {
    test.attribute = Take("@");
    if (!ParseName(test.name)) return false;
    if (!Take("=")) return true;
    test.value.emplace();
    return ParseLiteral(*test.value);
  }

  /// A name that is neither a function, an axis nor a prefix. Other than ASCII letters are left to
  /// the library, which knows which of them a name may hold.
  bool ParseName(std::string& name) {
    SkipBlanks();
    if (rest_.empty() || !IsLetter(rest_.front())) return false;
    std::size_t size = 1;
    while (size < rest_.size() && IsNameByte(rest_[size])) ++size;
    name = rest_.substr(0, size);
    rest_.remove_prefix(size);
    SkipBlanks();
    return rest_.empty() ||
           (rest_.front() != '(' && rest_.front() != ':' && !IsForeign(rest_.front()));
  }

  bool ParseLiteral(std::string& text) {
    SkipBlanks();
    if (rest_.empty() || (rest_.front() != '"' && rest_.front() != '\'')) return false;
    const std::size_t end = rest_.find(rest_.front(), 1);
    if (end == std::string_view::npos) return false;
    text = rest_.substr(1, end - 1);
    rest_.remove_prefix(end + 1);
    return std::none_of(text.begin(), text.end(), IsControl);
  }

  bool TakeAnd() {
    if (!Take("and")) return false;
    return rest_.empty() || !(IsNameByte(rest_.front()) || IsForeign(rest_.front())) || Fail();
  }

  /// Makes the rest one that nothing takes.
  bool Fail() {
    rest_ = "!";
    return false;
  }

  bool Take(std::string_view part) {
    SkipBlanks();
    if (!rest_.starts_with(part)) return false;
    rest_.remove_prefix(part.size());
    return true;
  }

  void SkipBlanks() {
    while (!rest_.empty() && IsBlankByte(rest_.front())) rest_.remove_prefix(1);
  }

  static bool IsNameByte(char c) { return IsLetter(c) || IsDigit(c) || c == '-' || c == '.'; }
  static bool IsForeign(char c) { return static_cast<unsigned char>(c) >= 0x80; }

  std::string_view rest_;
  std::size_t predicates_ = 0;
};

}  // namespace

std::optional<PlainPath> ParsePlainPath(std::string_view xpath) {
  return PlainParser(xpath).Parse();
}

}  // namespace zent::xml
