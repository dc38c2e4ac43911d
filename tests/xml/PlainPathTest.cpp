#include <gtest/gtest.h>

#include <string>

#include "xml/PlainPath.h"

namespace zent::xml {
namespace {

std::string Written(const PlainPredicate& predicate) {
  if (predicate.kind == PlainPredicate::Kind::Last) return "[last]";
  if (predicate.kind == PlainPredicate::Kind::Position) {
    return "[" + std::to_string(predicate.position) + "]";
  }
  std::string text;
  for (const PlainTest& test : predicate.tests) {
    text += (text.empty() ? "[" : "&") + std::string(test.attribute ? "@" : "") + test.name;
    if (test.value) text += "=<" + *test.value + ">";
  }
  return text + "]";
}

/// `xpath` as it was understood, or "not plain".
std::string Understood(std::string_view xpath) {
  const std::optional<PlainPath> path = ParsePlainPath(xpath);
  if (!path) return "not plain";
  std::string text = path->absolute ? "/" : "";
  for (const PlainStep& step : path->steps) {
    if (&step != &path->steps.front()) text += "/";
    text += (step.attribute ? "@" : "") + (step.name.empty() ? "*" : step.name);
    for (const PlainPredicate& predicate : step.predicates) text += Written(predicate);
  }
  return text;
}

struct PathCase {
  const char* what;
  std::string xpath;
  const char* understood;
};

TEST(PlainPath, UnderstandsWhatDescriptionsUse) {
  const PathCase cases[] = {
      {"absolute", "/a/b", "/a/b"},
      {"relative", "a/b_1/C-d.e", "a/b_1/C-d.e"},
      {"any element", "*/*", "*/*"},
      {"attribute test", "/a/b[@id='x']/c", "/a/b[@id=<x>]/c"},
      {"child test, other quotes", "b[Name=\"it's\"]", "b[Name=<it's>]"},
      {"empty text", "b[c='']", "b[c=<>]"},
      {"brackets and words in a text", "b[@i='] and [1]']", "b[@i=<] and [1]>]"},
      {"letters outside ASCII in a text", "b[@i='\xC3\xA4']", "b[@i=<\xC3\xA4>]"},
      {"presence", "b[@i][c]", "b[@i][c]"},
      {"and", "b[@i='1' and c='2' and @k]", "b[@i=<1>&c=<2>&@k]"},
      {"and without blanks", "b[@i='1'and@k]", "b[@i=<1>&@k]"},
      {"positions", "b[3]/c[last()]", "b[3]/c[last]"},
      {"a position after a test", "b[c='x'][2]", "b[c=<x>][2]"},
      {"attribute at the end", "/a/b[2]/@id", "/a/b[2]/@id"},
      {"any attribute", "@*", "@*"},
      {"operators as names", "and/or[and and mod]", "and/or[and&mod]"},
      {"white space", " / a [ @id\t=\r\n'x' ] / c ", "/a[@id=<x>]/c"},
  };
  for (const PathCase& row : cases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Understood(row.xpath), row.understood);
  }
}

TEST(PlainPath, LeavesAllElseToTheLibrary) {
  std::string many_steps = "a";
  for (int i = 0; i < 64; ++i) many_steps += "/a";
  std::string many_tests = "a";
  for (int i = 0; i < 9; ++i) many_tests += "[b='']";
  const PathCase cases[] = {
      {"nothing", "", ""},
      {"the document", "/", ""},
      {"any depth", "//a", ""},
      {"any depth within", "a//b", ""},
      {"no step at the end", "a/", ""},
      {"the node itself", ".", ""},
      {"its parent", "../a", ""},
      {"axis", "child::a", ""},
      {"prefix", "p:a", ""},
      {"kind of node", "a/text()", ""},
      {"function", "id('a')", ""},
      {"function as a test", "a[contains(b,'c')]", ""},
      {"text of the node itself", "a[.='b']", ""},
      {"or", "a[b='1' or c='2']", ""},
      {"not equal", "a[b!='1']", ""},
      {"number in a test", "a[b=1]", ""},
      {"fraction", "a[1.5]", ""},
      {"sum", "a[1+1]", ""},
      {"very big position", "a[1234567890]", ""},
      {"name after and without a blank", "a[@b='1' andc]", ""},
      {"two attributes", "@a/@b", ""},
      {"test of an attribute", "@a[1]", ""},
      {"union", "a|b", ""},
      {"comparison", "a='b'", ""},
      {"name outside ASCII", "\xC3\xA4", ""},
      {"name that goes on outside ASCII", "a\xC3\xA4", ""},
      {"open bracket", "a[b='1'", ""},
      {"empty brackets", "a[]", ""},
      {"open text", "a[b='1]", ""},
      {"control in a text", "a[b='\x01']", ""},
      {"rest", "a]", ""},
      {"many steps", many_steps, ""},
      {"many tests", many_tests, ""},
  };
  for (const PathCase& row : cases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Understood(row.xpath), "not plain");
  }
}

}  // namespace
}  // namespace zent::xml
