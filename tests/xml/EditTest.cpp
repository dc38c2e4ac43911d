#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>

#include "xml/TestDocument.h"
#include "xml/Tree.h"

namespace zent::xml::testing {
namespace {

constexpr const char* kList = "<r><i id=\"1\"/><i id=\"2\"/><i id=\"3\"/></r>";

struct MoveCase {
  const char* what;
  std::function<Status(Document&, Node, Node, Node)> edit;  ///< of the three elements
  const char* order;                                        ///< of their numbers afterwards
};

TEST(Edit, PutsNodesWhereTheyAreToStand) {
  using D = Document;
  const MoveCase cases[] = {
      {"before the first", [](D& d, Node a, Node, Node c) { return d.InsertBefore(c, a); }, "312"},
      {"before the last", [](D& d, Node a, Node, Node c) { return d.InsertBefore(a, c); }, "213"},
      {"before itself", [](D& d, Node, Node b, Node) { return d.InsertBefore(b, b); }, "123"},
      {"before its next", [](D& d, Node, Node b, Node c) { return d.InsertBefore(b, c); }, "123"},
      {"behind the last", [](D& d, Node a, Node, Node) { return d.Append(d.root(), a); }, "231"},
      {"the last, appended", [](D& d, Node, Node, Node c) { return d.Append(d.root(), c); }, "123"},
      {"in place of its previous", [](D& d, Node a, Node b, Node) { return d.Replace(a, b); },
       "23"},
      {"in place of its next", [](D& d, Node, Node b, Node c) { return d.Replace(c, b); }, "12"},
      {"in place of one farther off", [](D& d, Node a, Node, Node c) { return d.Replace(a, c); },
       "32"},
      {"in place of itself", [](D& d, Node, Node b, Node) { return d.Replace(b, b); }, "123"},
      {"taken out", [](D& d, Node, Node b, Node) { return d.Remove(b); }, "13"},
      {"taken out twice",
       [](D& d, Node, Node b, Node) { return d.Remove(b).ok() ? d.Remove(b) : Status(); }, "13"},
      {"taken out and put back",
       [](D& d, Node a, Node b, Node) {
         return d.Remove(b).ok() ? d.InsertBefore(b, a) : StandardError(5);
       },
       "213"},
  };
  for (const MoveCase& row : cases) {
    SCOPED_TRACE(row.what);
    Document document = Loaded(kList);
    const std::vector<Node> items = document.root().Children();
    ASSERT_TRUE(row.edit(document, items[0], items[1], items[2]).ok());
    std::string order;
    std::string backwards;
    for (const Node item : document.root().Children()) order += *item.Attribute("id");
    for (Node item = document.root().LastChild(); item; item = item.PreviousSibling()) {
      backwards.insert(0, *item.Attribute("id"));
    }
    EXPECT_EQ(order, row.order);
    EXPECT_EQ(backwards, row.order);
  }
}

constexpr const char* kBook =
    "<?xml version=\"1.0\"?>\n<!DOCTYPE r>\n<!--c-->\n<r a=\"1\"><i>t</i></r>";

struct ForbiddenCase {
  const char* what;
  int number;
  std::function<Status(Document&)> edit;
};

Node NewElement(Document& document) { return document.CreateElement("n").value(); }

TEST(Edit, RefusesWhatTheRulesForbidAndChangesNothing) {
  using D = Document;
  Document other = Loaded("<o><p/></o>");
  const Node foreign = other.root().FirstChild();
  const ForbiddenCase cases[] = {
      {"a second document element", 5, [](D& d) { return d.Append(d.node(), NewElement(d)); }},
      {"one before the first", 5, [](D& d) { return d.InsertBefore(NewElement(d), d.root()); }},
      {"a comment replaced by one", 5,
       [](D& d) { return d.Replace(First(d, "/comment()"), NewElement(d)); }},
      {"text beside the document element", 5,
       [](D& d) { return d.Append(d.node(), First(d, "//text()")); }},
      {"a node below itself", 5, [](D& d) { return d.Append(First(d, "//i"), First(d, "//i")); }},
      {"a node below what is in it", 5, [](D& d) { return d.Append(First(d, "//i"), d.root()); }},
      {"a node before what is in it", 5,
       [](D& d) { return d.InsertBefore(d.root(), First(d, "//i")); }},
      {"a node in place of what is in it", 5,
       [](D& d) { return d.Replace(First(d, "//i"), d.root()); }},
      {"an attribute among nodes", 5, [](D& d) { return d.Append(d.root(), First(d, "/r/@a")); }},
      {"before an attribute", 5,
       [](D& d) { return d.InsertBefore(NewElement(d), First(d, "/r/@a")); }},
      {"in place of an attribute", 5,
       [](D& d) { return d.Replace(First(d, "/r/@a"), NewElement(d)); }},
      {"below text", 5, [](D& d) { return d.Append(First(d, "//text()"), NewElement(d)); }},
      {"below a comment", 5, [](D& d) { return d.Append(First(d, "/comment()"), NewElement(d)); }},
      {"the document itself", 5, [](D& d) { return d.Append(d.root(), d.node()); }},
      {"the document taken out", 5, [](D& d) { return d.Remove(d.node()); }},
      {"the document type taken out", 5, [](D& d) { return d.Remove(d.node().FirstChild()); }},
      {"the document as a text", 5, [](D& d) { return d.SetText(d.node(), "x"); }},
      {"before the document", 5, [](D& d) { return d.InsertBefore(NewElement(d), d.node()); }},
      {"the document element before the document type", 5,
       [](D& d) { return d.InsertBefore(d.root(), d.node().FirstChild()); }},
      {"a node of another document", 5, [&](D& d) { return d.Append(d.root(), foreign); }},
      {"before a node of another document", 5,
       [&](D& d) { return d.InsertBefore(NewElement(d), foreign); }},
      {"below a node of another document", 5,
       [&](D& d) { return d.Append(foreign, NewElement(d)); }},
      {"a node of another document replaced", 5,
       [&](D& d) { return d.Replace(foreign, NewElement(d)); }},
      {"a node of another document taken out", 5, [&](D& d) { return d.Remove(foreign); }},
      {"before a node that stands nowhere", 5,
       [](D& d) { return d.InsertBefore(NewElement(d), NewElement(d)); }},
      {"in place of a node that stands nowhere", 5,
       [](D& d) { return d.Replace(NewElement(d), NewElement(d)); }},
      {"no node", 91, [](D& d) { return d.Append(d.root(), Node()); }},
      {"below no node", 91, [](D& d) { return d.Append(Node(), NewElement(d)); }},
      {"before no node", 91, [](D& d) { return d.InsertBefore(NewElement(d), Node()); }},
      {"no node replaced", 91, [](D& d) { return d.Replace(Node(), NewElement(d)); }},
      {"replaced by no node", 91, [](D& d) { return d.Replace(First(d, "//i"), Node()); }},
      {"no node taken out", 91, [](D& d) { return d.Remove(Node()); }},
      {"text of no node", 91, [](D& d) { return d.SetText(Node(), "x"); }},
      {"a control in text", 5, [](D& d) { return d.SetText(d.root(), "a\x01"); }},
      {"broken UTF-8 in text", 5, [](D& d) { return d.SetText(d.root(), "\xE4"); }},
      {"a NUL in text", 5,
       [](D& d) {
         return d.SetText(d.root(), {"a\0b", 3});
       }},
      {"a non-character in text", 5, [](D& d) { return d.SetText(d.root(), "\xEF\xBF\xBF"); }},
      {"two hyphens in a comment", 5,
       [](D& d) { return d.SetText(First(d, "/comment()"), "a--b"); }},
      {"a hyphen at the end of a comment", 5,
       [](D& d) { return d.SetText(First(d, "/comment()"), "a-"); }},
      {"a carriage return in a comment", 5,
       [](D& d) { return d.SetText(First(d, "/comment()"), "a\r\n"); }},
  };
  for (const ForbiddenCase& row : cases) {
    SCOPED_TRACE(row.what);
    Document document = Loaded(kBook);
    const std::string before = Saved(document);
    const Status done = row.edit(document);
    ASSERT_FALSE(done.ok());
    EXPECT_EQ(done.number(), row.number);
    EXPECT_GT(done.error().description.size(), 10U);
    EXPECT_EQ(Saved(document), before);
  }
}

TEST(Edit, ReplacesTheDocumentElement) {
  Document document = Loaded(kBook);
  const Node old = document.root();
  ASSERT_TRUE(document.Replace(old, NewElement(document)).ok());
  EXPECT_EQ(Saved(document), "<?xml version=\"1.0\"?>\n<!DOCTYPE r>\n<!--c-->\n<n/>");
  EXPECT_EQ(old.Text(), "t") << "what was taken out can still be read";
  ASSERT_TRUE(document.Remove(document.root()).ok());
  ASSERT_TRUE(document.Append(document.node(), old).ok());
  EXPECT_EQ(document.root(), old);
}

TEST(Edit, PutsCommentsBesideTheDocumentElement) {
  Document document = Loaded("<r><!--x--></r>");
  ASSERT_TRUE(document.InsertBefore(document.root().FirstChild(), document.root()).ok());
  EXPECT_EQ(Saved(document), "<!--x-->\r\n<r/>");
}

TEST(Edit, RefusesNestingAboveWhatCanBeLoaded) {
  Document document = Loaded("<r/>");
  Node deepest = document.root();
  for (int level = 2; level <= 257; ++level) {
    const Node below = NewElement(document);
    ASSERT_TRUE(document.Append(deepest, below).ok()) << level;
    deepest = below;
  }
  EXPECT_FALSE(document.Append(deepest, NewElement(document)).ok());
  EXPECT_TRUE(document.SetText(deepest, "t").ok());
  EXPECT_EQ(TreeOf(Loaded(Saved(document)).node()), TreeOf(document.node()));

  // Two halves that are too deep together.
  Document halves = Loaded("<r/>");
  Node half = NewElement(halves);
  for (int level = 2; level <= 200; ++level) {
    const Node above = NewElement(halves);
    ASSERT_TRUE(halves.Append(above, half).ok());
    half = above;
  }
  const Node copy = halves.Copy(half).value();
  ASSERT_TRUE(halves.Append(halves.root(), half).ok());
  Node bottom = half;
  while (bottom.FirstChild()) bottom = bottom.FirstChild();
  EXPECT_FALSE(halves.Append(bottom, copy).ok());
}

struct TextCase {
  const char* what;
  const char* xpath;
  const char* text;
  const char* saved;
};

TEST(SetText, ReplacesAllThatANodeHolds) {
  const TextCase cases[] = {
      {"element with elements", "/r", "1<2", "<r a=\"1\">1&lt;2</r><!--c--><?p d?>"},
      {"element made empty", "/r", "", "<r a=\"1\"/><!--c--><?p d?>"},
      {"line ends", "/r", "1\n2", "<r a=\"1\">1\n2</r><!--c--><?p d?>"},
      {"attribute", "/r/@a", "<\"\n>", "<r a=\"&lt;&quot;&#10;&gt;\">t<i/></r><!--c--><?p d?>"},
      {"attribute made empty", "/r/@a", "", "<r a=\"\">t<i/></r><!--c--><?p d?>"},
      {"text", "/r/text()", "u", "<r a=\"1\">u<i/></r><!--c--><?p d?>"},
      {"comment", "/comment()", "e", "<r a=\"1\">t<i/></r><!--e--><?p d?>"},
      {"instruction", "/processing-instruction()", "e", "<r a=\"1\">t<i/></r><!--c--><?p e?>"},
  };
  for (const TextCase& row : cases) {
    SCOPED_TRACE(row.what);
    Document document = Loaded("<r a=\"1\">t<i/></r>\n<!--c-->\n<?p d?>");
    ASSERT_TRUE(document.SetText(First(document, row.xpath), row.text).ok());
    EXPECT_EQ(First(document, row.xpath) ? First(document, row.xpath).Text() : row.text, row.text);
    std::string saved = Saved(document);
    for (const std::string mark : {"\n<!--", "\n<?"}) saved.erase(saved.find(mark), 1);
    EXPECT_EQ(saved, row.saved);
  }
}

TEST(SetText, WritesCDataThatHoldsItsOwnEnd) {
  Document document = Loaded("<r>x<![CDATA[y]]></r>");
  ASSERT_TRUE(document.SetText(First(document, "/r").LastChild(), "a]]>b").ok());
  EXPECT_EQ(Saved(document), "<r>x<![CDATA[a]]]]><![CDATA[>b]]></r>");
  EXPECT_EQ(Loaded(Saved(document)).root().Text(), "xa]]>b");
}

struct NameCase {
  const char* what;
  std::string name;
  bool taken;
};

TEST(CreateElement, TakesNamesOfXmlWithoutPrefix) {
  const NameCase cases[] = {
      {"plain", "ABCVersion", true}, {"letters of other scripts", "\xC3\xA4", true},
      {"empty", "", false},          {"digit first", "1a", false},
      {"blank", "a b", false},       {"prefix", "p:a", false},
      {"mark", "a>", false},         {"broken UTF-8", "a\xE4", false},
      {"NUL", {"a\0b", 3}, false},
  };
  for (const NameCase& row : cases) {
    SCOPED_TRACE(row.what);
    Document document = Loaded("<r/>");
    const Result<Node> made = document.CreateElement(row.name);
    EXPECT_EQ(made.ok(), row.taken);
    if (made.ok()) {
      EXPECT_EQ(made.value().name(), row.name);
      EXPECT_FALSE(made.value().Parent());
    }
  }
}

TEST(OrNoMemory, EndsWhereTheLibraryHasNone) {
  int made = 0;
  EXPECT_EQ(OrNoMemory(&made), &made);
  EXPECT_THROW(OrNoMemory<int>(nullptr), std::bad_alloc);
}

}  // namespace
}  // namespace zent::xml::testing
