#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "xml/TestDocument.h"

namespace zent::xml::testing {
namespace {

using std::string_literals::operator""s;

struct FailCase {
  const char* what;
  std::string bytes;
  int code;
  int line;
  int column;
  const char* reason;  ///< part of it
};

TEST(LoadError, NamesTheFirstFaultAndItsPlace) {
  const FailCase cases[] = {
      {"nothing", "", 4, 1, 1, "Document is empty"},
      {"a tag that is never closed", "<a>\n<b>\n</a>", 76, 3, 5, "mismatch: b line 2 and a"},
      {"cut off in a tag", "<a><b x=\"1", 40, 1, 11, "AttValue"},
      {"undeclared entity", "<a>\r\n &nope;</a>", 26, 2, 8, "'nope' not defined"},
      {"undeclared prefix", "<a>\n<p:b/></a>", 201, 2, 5, "prefix p"},
      {"undeclared prefix of an attribute", "<a p:x='1'/>", 201, 1, 11, "Namespace prefix p"},
      {"unknown encoding", "<?xml version='1.0' encoding='klingon'?><a/>", 32, 1, 1,
       "Unsupported encoding klingon"},
      {"UTF-16 declared over 8-bit bytes", "<?xml version='1.0' encoding='UTF-16'?><a/>", 81, 1, 1,
       "declared as UTF-16"},
      {"ISO-8859-1 declared behind a mark of UTF-8",
       "\xEF\xBB\xBF<?xml version='1.0' encoding='ISO-8859-1'?><a/>", 81, 1, 1,
       "declared as ISO-8859-1"},
      {"broken UTF-8", "<a>\n\xC3\xA4x\xE4</a>", 81, 2, 3, "not proper UTF-8"},
      {"a surrogate in UTF-8", "<a>\xED\xA0\x80</a>", 81, 1, 4, "not proper UTF-8"},
      {"8-bit bytes in US-ASCII", "<?xml version='1.0' encoding='us-ascii'?>\n<a>\xE4</a>", 81, 2,
       4, "not proper US-ASCII"},
      {"half a character of UTF-16", "\xFF\xFE<\0a"s, 81, 1, 1, "not proper UTF-16"},
      {"half a pair in UTF-16", "\xFF\xFE<\0a\0>\0\0\xD8<\0/\0a\0>\0"s, 81, 1, 4,
       "not proper UTF-16"},
      {"NUL in text", "<a>\nx\0y</a>"s, 9, 2, 2, "Char 0x0"},
      {"NUL behind the end", "<a/>\0<b/>"s, 9, 1, 5, "Char 0x0"},
      {"entity in an attribute that may be declared elsewhere",
       "<!DOCTYPE a SYSTEM 'n'>\n<a b='&e;'/>", 27, 2, 10, "'e' not defined"},
      {"entity in the name of a namespace", "<!DOCTYPE a [<!ENTITY e 'x'>]><a xmlns='u&e;'/>", 1, 0,
       0, "The name of a namespace holds an entity"},
      {"entity within itself", "<!DOCTYPE a [<!ENTITY e \"&f;\"><!ENTITY f \"&e;\">]><a>&e;</a>",
       89, 1, 4, "entity reference loop"},
  };
  for (const FailCase& row : cases) {
    SCOPED_TRACE(row.what);
    const LoadResult loaded = Document::Load(row.bytes, "C:\\x\\y.xml");
    ASSERT_FALSE(loaded.ok());
    const LoadError& error = loaded.error();
    EXPECT_EQ(error.url, "C:\\x\\y.xml");
    EXPECT_EQ(error.code, row.code);
    EXPECT_EQ(error.line, row.line);
    EXPECT_EQ(error.column, row.column);
    EXPECT_NE(error.reason.find(row.reason), std::string::npos) << error.reason;
    EXPECT_EQ(error.reason.find('\n'), std::string::npos);
  }
}

TEST(LoadError, ReadsAsARunTimeError) {
  const RuntimeError error = ToRuntimeError({"a.xml", 76, "tag mismatch", 3, 5});
  EXPECT_EQ(error.number, kInvalidFileFormat);
  EXPECT_EQ(error.description,
            "The XML document a.xml cannot be read: tag mismatch (line 3, column 5)");
  EXPECT_EQ(ToRuntimeError({"a.xml", 2, "too big", 0, 0}).description,
            "The XML document a.xml cannot be read: too big");
}

TEST(Load, RefusesADocumentAboveItsLimit) {
  const std::string bytes = "<a>12345</a>";
  LoadLimits limits;
  limits.bytes = bytes.size();
  EXPECT_TRUE(Document::Load(bytes, "x", limits).ok());
  limits.bytes = bytes.size() - 1;
  const LoadResult refused = Document::Load(bytes, "x", limits);
  ASSERT_FALSE(refused.ok());
  EXPECT_EQ(refused.error().code, 2);
  EXPECT_EQ(refused.error().reason, "The document has more than 11 bytes");
  EXPECT_EQ(refused.error().line, 0);
}

TEST(Load, DropsWhiteSpaceAloneBetweenNodes) {
  const Document document = Loaded("<a>\n <b> </b> <!--c--> x <![CDATA[ ]]><e/> <d>&#9;</d></a>");
  EXPECT_EQ(TreeOf(document.root()),
            "(a(b)(#comment [c])(#text [ x ])(#cdata-section [ ])(e)(d(#text [\t])))");
}

TEST(Load, KeepsWhiteSpaceAloneWithinAText) {
  const Document document = Loaded(
      "<!DOCTYPE a [<!ENTITY e 'x'>]><a><b>&e; &e;</b> <c><![CDATA[x]]>\n<![CDATA[y]]> <d/> "
      "</c></a>");
  EXPECT_EQ(TreeOf(document.root()),
            "(a(b(e [x])(#text [ ])(e [x]))"
            "(c(#cdata-section [x])(#text [\n])(#cdata-section [y])(#text [ ])(d)))");
  EXPECT_EQ(document.root().Text(), "x xx\ny ");
}

TEST(Load, TakesAnyTextAsTheNameOfANamespace) {
  for (const char* name : {"my forms", "urn:M\xC3\xBCller", "{0F2A}", "C:\\Korvo", "../x", "%"}) {
    SCOPED_TRACE(name);
    std::string text = "<a xmlns='";
    text.append(name).append("' xmlns:p='").append(name);
    text.append("'><p:b p:c='1'>x</p:b></a>");
    const Document document = Loaded(text);
    EXPECT_EQ(TreeOf(document.root()), "(a(p:b p:c=[1](#text [x])))");
  }
}

TEST(Load, ReadsEveryKindOfNode) {
  const Document document = Loaded(
      "<!DOCTYPE a [<!ENTITY e '<i>5</i>6'><!ENTITY f '7'>]><!--h-->"
      "<a t='1&f;'>2<![CDATA[3]]><?p 4?>&e;</a>");
  EXPECT_EQ(
      TreeOf(document.node()),
      "(#document(a [])(#comment [h])(a t=[17](#text [2])(#cdata-section [3])(p [4])(e [56])))");
  EXPECT_EQ(document.root().Text(), "2356");
  const std::vector<Node> top = document.node().Children();
  ASSERT_EQ(top.size(), 3U);
  EXPECT_EQ(top[0].kind(), NodeKind::DocumentType);
  EXPECT_EQ(top[1].kind(), NodeKind::Comment);
  EXPECT_EQ(top[2], document.root());
  EXPECT_EQ(document.root().LastChild().kind(), NodeKind::EntityReference);
  EXPECT_FALSE(document.root().LastChild().FirstChild());
}

TEST(Load, DocumentsShareNothing) {
  Document first = Loaded("<a><b/></a>");
  Document second = Loaded("<c/>");
  const Node kept = first.root();
  first = std::move(second);
  EXPECT_EQ(first.root().name(), "c");
  EXPECT_EQ(First(first, "/c"), first.root());
  EXPECT_NE(kept, first.root());
}

TEST(Node, OfNothingReadsAsEmpty) {
  const Node none;
  EXPECT_FALSE(none);
  EXPECT_EQ(none.kind(), NodeKind::None);
  EXPECT_EQ(none.name() + none.Text(), "");
  EXPECT_FALSE(none.Attribute("a"));
  EXPECT_FALSE(none.Parent() || none.FirstChild() || none.LastChild() || none.NextSibling() ||
               none.PreviousSibling());
  EXPECT_TRUE(none.Children().empty() && none.Attributes().empty());
  EXPECT_EQ(none.SelectFirst("a").number(), kObjectNotSet);
  EXPECT_EQ(none.SelectAll("a").number(), kObjectNotSet);
}

}  // namespace
}  // namespace zent::xml::testing
