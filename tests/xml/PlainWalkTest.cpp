#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>

#include "xml/LibrarySelect.h"
#include "xml/PlainPath.h"
#include "xml/TestDocument.h"

// Plain paths are walked, all others go to the library. Here the library is the judge of the walk.

namespace zent::xml::testing {
namespace {

class Dice {
 public:
  explicit Dice(unsigned seed) : random_(seed) {}

  bool OneIn(unsigned times) { return random_() % times == 0; }
  unsigned Below(unsigned end) { return static_cast<unsigned>(random_() % end); }

  template <std::size_t kCount>
  std::string Of(const std::array<const char*, kCount>& choices) {
    return choices[random_() % kCount];
  }

 private:
  std::mt19937 random_;
};

constexpr const char* kDoctype =
    "<!DOCTYPE r [<!ENTITY e \"ab\"><!ENTITY f \"x\"><!ENTITY g \"\"><!ENTITY h \"<b>x</b>\">]>";
constexpr std::array<const char*, 12> kTexts = {
    "x", "y", "ab", "a", "xab", " ", "x&e;", "&e;", "ab&f;", "a&g;", "&h;", "<![CDATA[ab]]>"};
constexpr std::array<const char*, 8> kValues = {"x", "y", "ab", "a", "xab", "", "abx", "abab"};
constexpr std::array<const char*, 4> kNames = {"a", "b", "b", "c"};
constexpr std::array<const char*, 3> kAttributes = {"id", "k", "none"};

std::string AttributeText(Dice& dice) {
  constexpr std::array<const char*, 7> kAttributeTexts = {"x",    "ab",    "",      "&e;",
                                                          "a&g;", "ab&f;", "&#120;"};
  return dice.Of(kAttributeTexts);
}

std::string RandomElement(Dice& dice, int levels) {
  const std::string name = (dice.OneIn(8) ? "p:" : "") + dice.Of(kNames);
  std::string text = "<" + name;
  if (dice.OneIn(6)) text += dice.OneIn(2) ? " xmlns='d'" : " xmlns=''";
  if (dice.OneIn(2)) text += " id='" + AttributeText(dice) + "'";
  if (dice.OneIn(4)) text += " k='" + AttributeText(dice) + "'";
  if (dice.OneIn(6)) text += " p:k='x'";
  text += ">";
  for (unsigned parts = dice.Below(5); parts > 0; --parts) {
    if (dice.OneIn(3)) text += dice.Of(kTexts);
    if (dice.OneIn(8)) text += "<!--x--><?b x?>";
    if (levels > 0) text += RandomElement(dice, levels - 1);
  }
  return text + "</" + name + ">";
}

std::string RandomTest(Dice& dice) {
  std::string of = dice.OneIn(2) ? "@" + dice.Of(kAttributes) : dice.Of(kNames);
  if (dice.OneIn(5)) return of;
  const std::string quote = dice.OneIn(2) ? "'" : "\"";
  return of + (dice.OneIn(4) ? " = " : "=") + quote + dice.Of(kValues) + quote;
}

std::string RandomPredicate(Dice& dice) {
  if (dice.OneIn(4)) return "[" + std::to_string(dice.Below(4)) + "]";
  if (dice.OneIn(5)) return "[last()]";
  std::string text = "[" + RandomTest(dice);
  if (dice.OneIn(4)) text += " and " + RandomTest(dice);
  return text + "]";
}

std::string RandomExpression(Dice& dice) {
  std::string text = dice.OneIn(2) ? "/r" : dice.Of(kNames);
  for (unsigned steps = dice.Below(4); steps > 0; --steps) {
    text += "/" + (dice.OneIn(4) ? "*" : dice.Of(kNames));
    for (unsigned brackets = dice.Below(8); brackets > 5; --brackets) text += RandomPredicate(dice);
  }
  if (dice.OneIn(5)) text += dice.OneIn(3) ? "/@*" : "/@" + dice.Of(kAttributes);
  return text;
}

/// Counts where something is found, so that the test cannot pass on emptiness.
std::size_t ExpectSameAsLibrary(Node from, const std::string& xpath) {
  SCOPED_TRACE(xpath);
  EXPECT_TRUE(ParsePlainPath(xpath));
  const Result<std::vector<Node>> expected = LibrarySelectAll(xpath, from);
  EXPECT_TRUE(expected.ok());
  EXPECT_EQ(from.SelectAll(xpath).value(), expected.value());
  EXPECT_EQ(from.SelectFirst(xpath).value(), LibrarySelectFirst(xpath, from).value());
  return expected.value().empty() ? 0 : 1;
}

TEST(PlainWalk, FindsWhatTheLibraryFinds) {
  constexpr unsigned kTrees = 150;
  constexpr unsigned kExpressions = 60;
  std::size_t found = 0;
  for (unsigned seed = 0; seed < kTrees; ++seed) {
    SCOPED_TRACE(seed);
    Dice dice(seed);
    std::string text = kDoctype + std::string("<r xmlns:p='u'>");
    for (int i = 0; i < 4; ++i) text += RandomElement(dice, 3);
    const Document document = Loaded(text + "</r>");
    std::vector<Node> contexts = document.SelectAll("//node() | //@*").value();
    contexts.push_back(document.node());
    contexts.resize(contexts.size() + contexts.size() / 2, document.root());
    for (unsigned i = 0; i < kExpressions && !HasFailure(); ++i) {
      const Node from = contexts[dice.Below(static_cast<unsigned>(contexts.size()))];
      found += ExpectSameAsLibrary(from, RandomExpression(dice));
    }
  }
  EXPECT_GT(found, kTrees * kExpressions / 10);
}

TEST(PlainWalk, GoesFromNodesThatStandNowhere) {
  Document document = Loaded("<r><a><b id='1'/></a><a/></r>");
  const Node loose = First(document, "/r/a");
  ASSERT_TRUE(document.Remove(loose).ok());
  EXPECT_EQ(ExpectSameAsLibrary(loose, "b[@id='1']"), 1U);
  EXPECT_EQ(ExpectSameAsLibrary(loose, "/r/a"), 1U);
  EXPECT_EQ(ExpectSameAsLibrary(loose, "/r/a/b"), 0U);
  ASSERT_TRUE(document.Remove(document.root()).ok());
  EXPECT_EQ(ExpectSameAsLibrary(loose, "/r"), 0U);
}

struct EntityCase {
  const char* what;
  const char* content;
  bool equal;  ///< to "abx"
};

// Kept as the library does it for all other expressions; e stands for "ab", f for "x".
TEST(PlainWalk, ComparesTextsWithEntitiesAsTheLibraryDoes) {
  const EntityCase cases[] = {
      {"two bytes before it", "ab&f;", true},   {"one byte before it", "a&g;", false},
      {"nothing before it", "&e;x", false},     {"two bytes around an empty one", "a&g;bx", true},
      {"other text after it", "ab&f;y", false},
  };
  for (const EntityCase& row : cases) {
    SCOPED_TRACE(row.what);
    const Document document = Loaded(kDoctype + std::string("<r><a>") + row.content + "</a></r>");
    EXPECT_EQ(ExpectSameAsLibrary(document.root(), "/r[a='abx']"), row.equal ? 1U : 0U);
  }
}

}  // namespace
}  // namespace zent::xml::testing
