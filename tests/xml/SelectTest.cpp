#include <gtest/gtest.h>

#include <string>

#include "xml/TestDocument.h"

namespace zent::xml::testing {
namespace {

constexpr const char* kDocument =
    "<r xmlns:p=\"u\"><i id=\"1\">a</i><i id=\"2\">b<j/></i><p:i id=\"3\" xml:lang=\"de\"/></r>";

struct FaultCase {
  const char* what;
  std::string expression;
  int number;
  const char* reason;  ///< part of the description
};

TEST(Select, SaysWhyAnExpressionCannotBeUsed) {
  const FaultCase cases[] = {
      {"empty", "", 5, "The XPath expression \"\" cannot be used: "},
      {"not closed", "/r[", 5, "Invalid expression"},
      {"rest behind the end", "/r)", 5, "Invalid expression"},
      {"an expression only between brackets", "/a)[2] | (/r", 5, "Invalid expression"},
      {"prefix", "/r/p:i", 5, "the namespace prefix \"p\" is not declared"},
      {"prefix where it would not be reached", "/none[q:i]", 5, "prefix \"q\""},
      {"prefix of an attribute", "/r/@p:x", 5, "prefix \"p\""},
      {"prefix of a function", "/r[f:g()]", 5, "prefix \"f\""},
      {"unknown function", "/r[nope()]", 5, "cannot be used: "},
      {"variable", "/r[$x]", 5, "Undefined variable"},
      {"number", "count(/r)", 13, "its result is no set of nodes"},
      {"text", "'r'", 13, "its result is no set of nodes"},
      {"truth", "/r = 1", 13, "its result is no set of nodes"},
      {"namespaces", "/r/namespace::*", 13, "it selects namespaces"},
      {"broken UTF-8", "/\xE4", 5, "it is no text"},
      {"NUL", {"/r\0x", 4}, 5, "it is no text"},
      {"too long", "/" + std::string(4096, 'r'), 5, "it has more than 4096 characters"},
  };
  const Document document = Loaded(kDocument);
  for (const FaultCase& row : cases) {
    SCOPED_TRACE(row.what);
    const Result<Node> first = document.SelectFirst(row.expression);
    const Result<std::vector<Node>> all = document.SelectAll(row.expression);
    ASSERT_FALSE(first.ok());
    ASSERT_FALSE(all.ok());
    EXPECT_EQ(first.number(), row.number);
    EXPECT_EQ(all.number(), row.number);
    EXPECT_NE(all.error().description.find(row.reason), std::string::npos)
        << all.error().description;
    EXPECT_LT(first.error().description.size(), 400U);
    EXPECT_TRUE(document.SelectFirst("/r").ok()) << "the next one works";
  }
}

struct FoundCase {
  const char* expression;
  const char* nodes;  ///< names, in document order
};

TEST(Select, FindsTheFirstOfAllNodesInDocumentOrder) {
  const FoundCase cases[] = {
      {"/r/i", "i i "},
      {"//*", "r i i j p:i "},
      {"//j/ancestor::*", "r i "},
      {"//j/ancestor::*[1]", "i "},
      {"//i[2]/preceding-sibling::*", "i "},
      {"//*[local-name()='i'][3]/preceding::*", "i i j "},
      {"//j | /r | //i[1]", "r i j "},
      {"(//*)[last()]", "p:i "},
      {"//*[@xml:lang='de']", "p:i "},
      {"//*[@xml:lang='x:y']", ""},
      {"//i[.=\"p:i\"]", ""},
      {"//i[2]/following-sibling::node()", "p:i "},
      {"/r/i[@id='2']/descendant-or-self::*", "i j "},
      {"/none", ""},
  };
  const Document document = Loaded(kDocument);
  for (const FoundCase& row : cases) {
    SCOPED_TRACE(row.expression);
    const Result<std::vector<Node>> all = document.SelectAll(row.expression);
    ASSERT_TRUE(all.ok()) << all.error().description;
    std::string names;
    for (const Node node : all.value()) names += node.name() + " ";
    EXPECT_EQ(names, row.nodes);
    EXPECT_EQ(First(document, row.expression), all.value().empty() ? Node() : all.value().front());
  }
}

TEST(Select, SeesEveryChange) {
  Document document = Loaded(kDocument);
  const Node second = First(document, "/r/i[@id='2']");
  ASSERT_TRUE(document.Remove(second).ok());
  EXPECT_FALSE(First(document, "/r/i[@id='2']"));
  EXPECT_EQ(second.SelectFirst("j").value().name(), "j") << "from what stands nowhere";
  EXPECT_EQ(second.SelectFirst("/r").value(), document.root());
  ASSERT_TRUE(document.InsertBefore(second, document.root().FirstChild()).ok());
  EXPECT_EQ(First(document, "/r/i"), second);
  ASSERT_TRUE(document.SetText(First(document, "/r/i/@id"), "9").ok());
  EXPECT_EQ(First(document, "/r/i[@id='9']"), second);
}

TEST(Select, SeesTheTextThatEntitiesStandFor) {
  const Document document =
      Loaded("<!DOCTYPE r [<!ENTITY e 'ef'><!ENTITY m '<i/>'>]><r a='&e;'>x&e;&m;</r>");
  EXPECT_TRUE(First(document, "/r[contains(., 'xef')]"));
  EXPECT_TRUE(First(document, "/r[string(@a)='ef']"));
  EXPECT_FALSE(First(document, "//i"));
  EXPECT_TRUE(document.SelectAll("//node()/node()/node()").value().empty());
}

TEST(Select, FindsByTheIdentifierOfTheDocumentType) {
  Document document =
      Loaded("<!DOCTYPE r [<!ATTLIST i k ID #IMPLIED>]><r><i k='a'/><i k='b'/></r>");
  const Node found = First(document, "id('b')");
  ASSERT_TRUE(found);
  EXPECT_EQ(found.Attribute("k"), "b");
  ASSERT_TRUE(document.Remove(found.SelectFirst("@k").value()).ok());
  EXPECT_EQ(found.Attribute("k"), std::nullopt);
}

TEST(Select, FindsByAnIdentifierWhatStandsInTheTreeAlone) {
  Document document =
      Loaded("<!DOCTYPE r [<!ATTLIST i k ID #IMPLIED>]><r><s><i k='a'/></s><i xml:id='x'/></r>");
  for (int i = 0; i < 2; ++i) {
    const Node found = First(document, "id('a')");
    const Node copy = document.Copy(found).value();
    EXPECT_EQ(First(document, "id('a')"), found);
    ASSERT_TRUE(document.Replace(found, copy).ok());
    EXPECT_EQ(First(document, "id('a')"), copy);
  }
  const Node section = First(document, "/r/s");
  ASSERT_TRUE(document.Remove(section).ok());
  EXPECT_FALSE(First(document, "id('a')"));
  ASSERT_TRUE(document.Append(document.root(), section).ok());
  EXPECT_EQ(First(document, "id('a')"), section.FirstChild());

  ASSERT_TRUE(document.SetText(First(document, "id('a')/@k"), "b").ok());
  EXPECT_FALSE(First(document, "id('a')"));
  EXPECT_EQ(First(document, "id('b')"), section.FirstChild());
  ASSERT_TRUE(document.Remove(First(document, "id('b')/@k")).ok());
  EXPECT_FALSE(First(document, "id('b')"));
  ASSERT_TRUE(document.Remove(First(document, "id('x')")).ok());
  EXPECT_FALSE(First(document, "id('x')"));
}

}  // namespace
}  // namespace zent::xml::testing
