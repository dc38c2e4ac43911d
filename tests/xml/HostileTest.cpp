#include <gtest/gtest.h>

#include <string>

#include "support/TempFolder.h"
#include "xml/TestDocument.h"

namespace zent::xml::testing {
namespace {

std::string Repeated(const std::string& part, std::size_t times) {
  std::string text;
  text.reserve(part.size() * times);
  for (std::size_t i = 0; i < times; ++i) text += part;
  return text;
}

/// Ten entities, each ten times the one before.
std::string Bomb(const std::string& use) {
  std::string text = "<!DOCTYPE a [<!ENTITY e0 \"lol\">";
  for (int i = 1; i < 10; ++i) {
    const std::string inner = "&e" + std::to_string(i - 1) + ";";
    text += "<!ENTITY e" + std::to_string(i) + " \"" + Repeated(inner, 10) + "\">";
  }
  return text + "]><a" + use;
}

/// As many different attributes or, with "xmlns:", namespaces.
std::string Attributes(std::size_t count, const std::string& prefix = "") {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    text += " " + prefix + "b" + std::to_string(i) + "='1'";
  }
  return text;
}

/// Elements within each other, each with as many namespaces.
std::string NestedNamespaces(std::size_t levels, std::size_t namespaces) {
  return Repeated("<a" + Attributes(namespaces, "xmlns:") + ">", levels) + Repeated("</a>", levels);
}

/// A document type that gives `element` as many attributes.
std::string Defaults(const std::string& element, std::size_t count, const std::string& prefix) {
  std::string text = "<!DOCTYPE a [";
  for (std::size_t i = 0; i < count; ++i) {
    text.append("<!ATTLIST ").append(element).append(" ").append(prefix);
    text.append(std::to_string(i)).append(" CDATA 'x'>");
  }
  return text + "]>";
}

struct HostileCase {
  const char* what;
  std::string bytes;
};

TEST(Hostile, DocumentsThatCostTooMuchAreRefused) {
  const std::string big(100'000, 'x');
  const HostileCase cases[] = {
      {"nested entities in text", Bomb(">&e9;</a>")},
      {"nested entities in an attribute", Bomb(" b=\"&e9;\"/>")},
      {"one big entity, often",
       "<!DOCTYPE a [<!ENTITY e \"" + big + "\">]><a>" + Repeated("&e;", 1000) + "</a>"},
      {"entities of the document type", "<!DOCTYPE a [<!ENTITY % e \"&#37;e;\">%e;]><a/>"},
      {"100,000 elements within each other", Repeated("<a>", 100'000) + Repeated("</a>", 100'000)},
      {"258 elements within each other", Repeated("<a>", 258) + Repeated("</a>", 258)},
      {"100,000 elements, never closed", Repeated("<a>", 100'000)},
      {"a name of a million letters", "<" + std::string(1'000'000, 'n') + "/>"},
      {"an attribute of 11 MB", "<a b='" + Repeated("x", 11'000'000) + "'/>"},
      {"4,097 attributes", "<a>\n<b" + Repeated(" a=\">\"", 4097) + "/></a>"},
      {"4,097 attributes in an entity",
       "<!DOCTYPE a [<!ENTITY e \"&#60;b" + Attributes(4097) + "/>\">]><a>&e;</a>"},
      {"4,500 namespaces within each other", NestedNamespaces(9, 500)},
      {"1,025 namespaces by default", Defaults("a", 1025, "xmlns:n") + "<a/>"},
      {"100,000 attributes where a fault ends a comment",
       "<a><!--\x01<b" + Repeated(" a=\"\"", 100'000) + "/>--></a>"},
      {"100,000 attributes where a fault ends an instruction",
       "<a><?1 <b" + Repeated(" a=\"\"", 100'000) + "/>?></a>"},
      {"100,000 attributes behind half a comment between quotes",
       "<!DOCTYPE a [<!ENTITY e '<!--'>]><a" + Repeated(" a=\"\"", 100'000) + "><!----></a>"},
      {"brackets in the document type",
       "<!DOCTYPE a [" + Repeated("<!ELEMENT a ", 1) + Repeated("(", 100'000) + "]><a/>"},
  };
  for (const HostileCase& row : cases) {
    SCOPED_TRACE(row.what);
    const LoadResult loaded = Document::Load(row.bytes, "hostile.xml");
    ASSERT_FALSE(loaded.ok());
    EXPECT_NE(loaded.error().code, 0);
    EXPECT_LT(loaded.error().reason.size(), 2000U);
  }
}

TEST(Hostile, DocumentsThatAreOnlyBigAreKept) {
  const HostileCase cases[] = {
      {"257 elements within each other", Repeated("<a>", 256) + "<a/>" + Repeated("</a>", 256)},
      {"4,096 attributes", "<a" + Attributes(4096) + "/>"},
      {"4,096 namespaces within each other", NestedNamespaces(8, 512)},
      {"20,000 elements with 4,000 attributes each by default",
       Defaults("b", 4000, "n") + "<a>" + Repeated("<b/>", 20'000) + "</a>"},
      {"an attribute of 5 MB", "<a b=\"" + std::string(5'000'000, 'x') + "\"/>"},
      {"a text of 11 MB", "<a>" + Repeated("x", 11'000'000) + "</a>"},
      {"200,000 elements side by side", "<a>" + Repeated("x<b/>", 200'000) + "</a>"},
      {"a comment of 5 MB", "<a><!--" + std::string(5'000'000, 'x') + "--></a>"},
  };
  for (const HostileCase& row : cases) {
    SCOPED_TRACE(row.what);
    Document document = Loaded(row.bytes);
    const std::string saved = Saved(document);
    EXPECT_GE(saved.size(), row.bytes.size());
    const Node copy = document.Copy(document.root()).value();
    EXPECT_EQ(copy.Text().size(), document.root().Text().size());
  }
}

TEST(Hostile, NothingOutsideTheDocumentIsRead) {
  const zent::testing::TempFolder folder;
  const std::string path = folder.Put("secret.txt", "secret").generic_string();
  const std::string uri = (path.starts_with("/") ? "file://" : "file:///") + path;
  const HostileCase cases[] = {
      {"entity", "<!DOCTYPE a [<!ENTITY e SYSTEM \"" + uri + "\">]><a>&e;</a>"},
      {"entity by path", "<!DOCTYPE a [<!ENTITY e SYSTEM \"" + path + "\">]><a>&e;</a>"},
      {"entity of the document type",
       "<!DOCTYPE a [<!ENTITY % e SYSTEM \"" + uri + "\"> %e;]><a></a>"},
      {"document type", "<!DOCTYPE a SYSTEM \"" + uri + "\"><a/>"},
      {"inclusion", "<a xmlns:xi=\"http://www.w3.org/2001/XInclude\"><xi:include href=\"" + uri +
                        "\" parse=\"text\"/></a>"},
      {"style sheet", "<?xml-stylesheet href=\"" + uri + "\"?><a/>"},
      {"catalogue", "<?oasis-xml-catalog catalog=\"" + uri + "\"?><a/>"},
      {"network", "<!DOCTYPE a SYSTEM \"http://127.0.0.1:9/x.dtd\"><a/>"},
  };
  for (const HostileCase& row : cases) {
    SCOPED_TRACE(row.what);
    const Document document = Loaded(row.bytes);
    EXPECT_EQ(document.root().Text(), "");
    EXPECT_EQ(TreeOf(Loaded(Saved(document)).node()), TreeOf(document.node()));
  }
}

TEST(Hostile, EntitiesCountAgainstTheLimitThatIsGiven) {
  const std::string bytes = "<!DOCTYPE a [<!ENTITY e '0123456789'>]><a b='&e;'>&e;</a>";
  LoadLimits limits;
  limits.expansion = 20;
  EXPECT_TRUE(Document::Load(bytes, "x", limits).ok());
  limits.expansion = 19;
  const LoadResult refused = Document::Load(bytes, "x", limits);
  ASSERT_FALSE(refused.ok());
  EXPECT_EQ(refused.error().reason, "The entities of the document stand for more than 19 bytes");
}

TEST(Hostile, ExpressionsEndWhateverTheyAre) {
  const Document document = Loaded("<a>" + Repeated("<b><c/></b>", 1'000) + "</a>");
  const HostileCase cases[] = {
      {"nested brackets", Repeated("(", 2'000) + "a" + Repeated(")", 2'000)},
      {"nested predicates", "/a" + Repeated("[a", 1'300) + Repeated("]", 1'300)},
      {"a long sum", "/a[" + Repeated("1+", 2'000) + "1]"},
      {"a long union", Repeated("a|", 2'000) + "a"},
      {"many steps", Repeated("*/", 2'000) + "*"},
      {"minus signs", "/a[" + Repeated("-", 4'000) + "1]"},
      {"nested functions", "/a[" + Repeated("not(", 800) + "1" + Repeated(")", 800) + "]"},
      {"every node for every node for every node", "//*[count(//*[count(//*) > 1]) > 1]"},
      {"siblings of siblings",
       "//*/following-sibling::*/preceding-sibling::*/following-sibling::*"},
  };
  for (const HostileCase& row : cases) {
    SCOPED_TRACE(row.what);
    const Result<Node> first = document.SelectFirst(row.bytes);
    const Result<std::vector<Node>> all = document.SelectAll(row.bytes);
    EXPECT_TRUE(all.ok() || all.error().description.size() > 40);
    if (first.ok() && all.ok()) {
      EXPECT_EQ(first.value(), all.value().empty() ? Node() : all.value().front());
    }
  }
}

TEST(Hostile, ManyQuotesOutsideATagAreNoAttributes) {
  const std::string quotes = Repeated("a=\"\" ", 5'000);
  const Document document = Loaded("<a>" + quotes + "<!--" + quotes + "--><?p " + quotes +
                                   "?><![CDATA[" + quotes + "]]></a>");
  EXPECT_EQ(document.root().Text().size(), 2 * quotes.size());

  const Document behind_a_mark = Loaded("<?xml version=\"1.0\"?><a><?p?><!-- <b " + quotes +
                                        "--><b/><![CDATA[<b " + quotes + "]]></a>");
  EXPECT_EQ(behind_a_mark.root().Text().size(), 3 + quotes.size());
}

TEST(Hostile, FilesCutOffAnywhereAreRefused) {
  const std::string whole =
      "<?xml version=\"1.0\"?><!DOCTYPE a [<!ENTITY e \"x\">]><a b=\"1\">&e;<![CDATA[c]]>"
      "<!--d--><?p q?>\xC3\xA4</a>";
  ASSERT_TRUE(Document::Load(whole, "x").ok());
  for (std::size_t size = 0; size < whole.size(); ++size) {
    SCOPED_TRACE(size);
    EXPECT_FALSE(Document::Load(whole.substr(0, size), "x").ok());
  }
}

}  // namespace
}  // namespace zent::xml::testing
