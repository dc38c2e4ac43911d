#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "xml/TestDocument.h"
#include "xml/XPathCost.h"

namespace zent::xml::testing {
namespace {

TEST(XPathCost, TakesWhatLooksAtEachNodeAFewTimesAsItIs) {
  for (const char* xpath : {"//a",
                            ".//a",
                            " //a[@b='c']/d",
                            "(//a)[5]",
                            "//a[position()=last()]",
                            "//a[count(b) > 2]",
                            "//a[contains(., 'x')]",
                            "//a[b or not(c)]",
                            "//a[.//b]",
                            "//a[.//b = 'c']",
                            "//a[2*b=4]",
                            "//a[-1 < b]",
                            "//a['|..' = b]",
                            "a/child::b/self::c/attribute::d",
                            "id('a')/b",
                            "//a[string(b)=string(c)]",
                            "//a[b = @c]",
                            "//a[b=.]",
                            "//a[*/b and c / d]",
                            "//a[id='b']",
                            "//*[*]/@*",
                            "//a[b-c='x.y']",
                            "//a[text()='b']",
                            "../a",
                            "//a[../b='c']",
                            ""}) {
    SCOPED_TRACE(xpath);
    EXPECT_FALSE(IsSteep(xpath));
  }
}

TEST(XPathCost, KnowsWhatIsSteep) {
  for (const char* xpath : {"//a/..",
                            "../..",
                            "//a/following-sibling::*",
                            "//a/preceding :: b",
                            "//a/ancestor::b",
                            "//a/parent::b",
                            "a/descendant::b",
                            "//a | //b",
                            "//a//b",
                            "a//b",
                            ".//a//b",
                            "a/.//b",
                            "//a[b//c]",
                            "(//a)//b",
                            "/r[//a = //b]",
                            "//a[contains(/r, 'x')]",
                            "//a[/]",
                            "//a[b and /r]",
                            "//a[b * /r]",
                            "//a[b=c]",
                            "//a[b != @*]",
                            "//a[b < ./c]",
                            "//a[b=text()]",
                            "//a[id('b')]",
                            "id(//a)",
                            "//a[b = (c)]"}) {
    SCOPED_TRACE(xpath);
    EXPECT_TRUE(IsSteep(xpath));
  }
}

struct StepCase {
  const char* xpath;
  const char* before;
  const char* rest;
  bool to_parent;
};

TEST(XPathCost, FindsWhereAPathGoesOnFromWhatItHasFound) {
  constexpr StepCase kCases[] = {
      {"/r//a", "/r", "//a", false}, {"/r/b[c//d] // a//e", "/r/b[c//d] ", "// a//e", false},
      {".//a", ".", "//a", false},   {"//a[b/..]/ .. /c", "//a[b/..]", " /c", true},
      {"../..", "..", "", true},
  };
  for (const StepCase& row : kCases) {
    SCOPED_TRACE(row.xpath);
    const std::optional<SteepStep> step = FindSteepStep(row.xpath);
    ASSERT_TRUE(step);
    EXPECT_EQ(step->before, row.before);
    EXPECT_EQ(step->rest, row.rest);
    EXPECT_EQ(step->to_parent, row.to_parent);
  }
  for (const char* xpath : {"//a[.//b]", "/r[@b='//']", "../a", "a[b/..]"}) {
    SCOPED_TRACE(xpath);
    EXPECT_FALSE(FindSteepStep(xpath));
  }
}

/// 200,000 elements.
const Document& BigDocument() {
  static const Document document = [] {
    std::string text = "<r>";
    for (int i = 0; i < 100'000; ++i) text += "<i k='1'><b/>t</i>";
    return Loaded(text + "</r>");
  }();
  return document;
}

TEST(XPathCost, RefusesSteepExpressionsInBigDocuments) {
  for (const char* xpath :
       {"//*/following-sibling::*", "//b/..", "/r[//b = //i]", "//i[contains(/r, 'q')]",
        "//i | //b", "//i//b", "//b/ancestor::*", "//i[. = /r/i]"}) {
    SCOPED_TRACE(xpath);
    const Result<Node> found = BigDocument().SelectFirst(xpath);
    ASSERT_FALSE(found.ok());
    EXPECT_EQ(found.number(), kInvalidProcedureCall);
    EXPECT_NE(found.error().description.find("costs too much in a document of this size"),
              std::string::npos);
  }
}

struct TakenCase {
  const char* xpath;
  std::size_t count;
};

TEST(XPathCost, TakesAllOthersInBigDocuments) {
  constexpr TakenCase kCases[] = {
      {"//i[@k='1'][2]", 1},
      {"(//i)[last()]", 1},
      {"//i[position()=last()]/b", 1},
      {"//i[b]/@k", 100'000},
      {"/r//b", 100'000},
      {"/r/i[7]//b", 1},
      {"//i[contains(., 'q')]", 0},
      {"//i[.='t'][9]", 1},
      {"/r/i[7]/..", 1},
      {"//i[@k='1'][3]/../i/b", 100'000},
  };
  for (const TakenCase& row : kCases) {
    SCOPED_TRACE(row.xpath);
    const Result<std::vector<Node>> found = BigDocument().SelectAll(row.xpath);
    ASSERT_TRUE(found.ok()) << found.error().description;
    EXPECT_EQ(found.value().size(), row.count);
  }
}

}  // namespace
}  // namespace zent::xml::testing
