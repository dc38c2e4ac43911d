#include <gtest/gtest.h>

#include <string>

#include "xml/TestDocument.h"

namespace zent::xml::testing {
namespace {

/// `source`'s document element, or the node that `xpath` selects in it, at the end of `target`'s.
std::string Appended(const char* target, const char* source, const char* xpath = "/*") {
  Document document = Loaded(target);
  Node copy;
  {
    const Document from = Loaded(source);  // gone before the copy is used
    const Result<Node> made = document.Copy(First(from, xpath));
    if (!made.ok()) return made.error().description;
    copy = made.value();
  }
  const Status done = document.Append(document.root(), copy);
  if (!done.ok()) return done.error().description;
  std::string saved = Saved(document);
  EXPECT_EQ(TreeOf(Loaded(saved).root()), TreeOf(document.root()));
  return saved;
}

struct CopyCase {
  const char* what;
  const char* target;
  const char* source;
  const char* saved;
};

TEST(Copy, TakesAllOfAnElement) {
  const CopyCase cases[] = {
      {"attributes, text, CDATA, comment, instruction", "<r>x</r>",
       "<a b=\"1\" c=\"&lt;\">t<d/><![CDATA[<]]><!--c--><?p q?></a>",
       "<r>x<a b=\"1\" c=\"&lt;\">t<d/><![CDATA[<]]><!--c--><?p q?></a></r>"},
      {"white space that counts", "<r>x</r>", "<a xml:space=\"preserve\"> <b/> </a>",
       "<r>x<a xml:space=\"preserve\"> <b/> </a></r>"},
      {"white space that was written as a reference", "<r>x</r>", "<a>&#32;<b/></a>",
       "<r>x<a>&#32;<b/></a></r>"},
      {"entities become what they stand for", "<r>x</r>",
       "<!DOCTYPE a [<!ENTITY e \"1&f;<i/>\"><!ENTITY f \"2\">]><a t=\"&f;\">&e;&amp;</a>",
       "<r>x<a t=\"2\">12<i/>&amp;</a></r>"},
  };
  for (const CopyCase& row : cases) {
    SCOPED_TRACE(row.what);
    Document document = Loaded(row.target);
    const Document from = Loaded(row.source);
    const Result<Node> copy = document.Copy(from.root());
    ASSERT_TRUE(copy.ok());
    ASSERT_TRUE(document.Append(document.root(), copy.value()).ok());
    EXPECT_EQ(Saved(document), row.saved);
  }
}

TEST(Copy, KeepsWhatNamespacesMean) {
  const CopyCase cases[] = {
      {"prefix of the source's element", "<r>x</r>", "<p:a xmlns:p=\"u\"/>",
       "<r>x<p:a xmlns:p=\"u\"/></r>"},
      {"prefix that the target has", "<r xmlns:p=\"u\">x</r>", "<s xmlns:p=\"u\"><p:a/></s>",
       "<r xmlns:p=\"u\">x<s xmlns:p=\"u\"><p:a/></s></r>"},
      {"prefix that means something else there", "<r xmlns:p=\"v\">x</r>",
       "<p:a xmlns:p=\"u\" p:b=\"1\"/>", "<r xmlns:p=\"v\">x<p:a xmlns:p=\"u\" p:b=\"1\"/></r>"},
      {"no namespace below a default one", "<r xmlns=\"d\">x</r>", "<a><b/>t</a>",
       "<r xmlns=\"d\">x<a xmlns=\"\"><b/>t</a></r>"},
      {"no namespace within a prefixed one, below a default one", "<r xmlns=\"d\">x</r>",
       "<p:a xmlns:p=\"u\"><b/>t</p:a>",
       "<r xmlns=\"d\">x<p:a xmlns:p=\"u\"><b xmlns=\"\"/>t</p:a></r>"},
      {"the same default one", "<r xmlns=\"d\">x</r>", "<a xmlns=\"d\"><b/>t</a>",
       "<r xmlns=\"d\">x<a xmlns=\"d\"><b/>t</a></r>"},
      {"xml:lang", "<r>x</r>", "<a xml:lang=\"de\"/>", "<r>x<a xml:lang=\"de\"/></r>"},
  };
  for (const CopyCase& row : cases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Appended(row.target, row.source), row.saved);
  }
}

TEST(Copy, DeclaresWhatWasDeclaredAboveTheSource) {
  EXPECT_EQ(Appended("<r>x</r>", "<s xmlns:p='u' xmlns='d'><p:a p:b='1'><c/>t</p:a></s>", "/*/*"),
            "<r>x<p:a xmlns:p=\"u\" p:b=\"1\"><c xmlns=\"d\"/>t</p:a></r>");
  EXPECT_EQ(Appended("<r>x</r>", "<s xmlns='d'><a><c/>t</a></s>", "/*/*"),
            "<r>x<a xmlns=\"d\"><c/>t</a></r>");
}

TEST(Copy, KeepsWhiteSpaceThatCountedAboveTheSource) {
  EXPECT_EQ(Appended("<r>x</r>", "<s xml:space='preserve'><a> <b/>\n</a></s>", "/*/*"),
            "<r>x<a>&#32;<b/>&#10;</a></r>");
}

TEST(Copy, MovedWithinADocumentNamespacesHoldAsWell) {
  Document document = Loaded("<r>x<s xmlns:p=\"u\"><p:a/>t</s></r>");
  ASSERT_TRUE(document.Append(document.root(), First(document, "//*[local-name()='a']")).ok());
  EXPECT_EQ(Saved(document), "<r>x<s xmlns:p=\"u\">t</s><p:a xmlns:p=\"u\"/></r>");
}

TEST(Copy, TakesOtherNodesOfContent) {
  const CopyCase cases[] = {
      {"text", "//text()", "", "<r>x1</r>"},
      {"comment", "//comment()", "", "<r>x<!--c--></r>"},
      {"instruction", "//processing-instruction()", "", "<r>x<?p q?></r>"},
  };
  for (const CopyCase& row : cases) {
    SCOPED_TRACE(row.what);
    Document document = Loaded("<r>x</r>");
    const Document from = Loaded("<a>1<!--c--><?p q?></a>");
    ASSERT_TRUE(
        document.Append(document.root(), document.Copy(First(from, row.target)).value()).ok());
    EXPECT_EQ(Saved(document), row.saved);
  }
}

struct RefusedCase {
  const char* what;
  const char* source;
  const char* xpath;
  int number;
};

TEST(Copy, RefusesWhatCannotBeTaken) {
  const RefusedCase cases[] = {
      {"attribute", "<a b='1'/>", "//@b", 5},
      {"document", "<a/>", "/", 5},
      {"entity that may be declared elsewhere", "<!DOCTYPE a SYSTEM 'n'><a>&e;</a>", "/a", 5},
      {"entity in another file", "<!DOCTYPE a [<!ENTITY e SYSTEM 'f'>]><a><b>&e;</b></a>", "/a", 5},
      {"nothing", "<a/>", "/b", 91},
  };
  for (const RefusedCase& row : cases) {
    SCOPED_TRACE(row.what);
    Document document = Loaded("<r/>");
    const Document from = Loaded(row.source);
    EXPECT_EQ(document.Copy(First(from, row.xpath)).number(), row.number);
    EXPECT_EQ(Saved(document), "<r/>");
  }
}

TEST(Copy, RefusesAReferenceByItself) {
  Document document = Loaded("<!DOCTYPE a [<!ENTITY e 'f'>]><a>&e;</a>");
  EXPECT_EQ(document.Copy(document.root().FirstChild()).number(), kInvalidProcedureCall);
}

TEST(Copy, EndsWhenTheDocumentHasGrownTooBig) {
  const std::string bytes = "<r><i>some text</i></r>";
  LoadLimits limits;
  limits.memory = 100'000;
  LoadResult loaded = Document::Load(bytes, "x", limits);
  Document& document = loaded.value();
  // Each copy of the whole into itself doubles it.
  Status grown;
  int times = 0;
  for (; grown.ok() && times < 64; ++times) {
    const Result<Node> copy = document.Copy(document.root().FirstChild());
    grown = copy.ok() ? document.Append(document.root().FirstChild(), copy.value()) : copy.status();
  }
  EXPECT_EQ(grown.number(), kOutOfStringSpace);
  EXPECT_LT(times, 20);
  EXPECT_LT(Saved(document).size(), 100'000U);
  EXPECT_EQ(document.SetText(document.root(), std::string(200'000, 'x')).number(),
            kOutOfStringSpace);
}

TEST(Copy, MayBeBiggerInMemoryThanAFileMayBe) {
  std::string elements;
  for (int i = 0; i < 20'000; ++i) elements += "<c/>";
  const std::string bytes = "<r>" + elements + "</r>";
  const Document source = Loaded(bytes);
  LoadLimits limits;
  limits.bytes = bytes.size();
  LoadResult target = Document::Load("<r/>", "x", limits);
  const Result<Node> copy = target.value().Copy(source.root());
  ASSERT_TRUE(copy.ok()) << copy.error().description;
  EXPECT_TRUE(target.value().Replace(target.value().root(), copy.value()).ok());
}

TEST(Copy, CountsTheNamespacesThatItDeclares) {
  std::string elements;
  for (int i = 0; i < 100; ++i) elements += "<c/>";
  const Document source = Loaded("<s xmlns='" + std::string(10'000, 'n') + "' xmlns:p='u'><p:a>" +
                                 elements + "</p:a></s>");
  LoadLimits limits;
  limits.memory = 100'000;  // the elements alone would fit in
  LoadResult target = Document::Load("<r/>", "x", limits);
  EXPECT_EQ(target.value().Copy(First(source, "/*/*")).number(), kOutOfStringSpace);
  EXPECT_EQ(Saved(target.value()), "<r/>");
}

}  // namespace
}  // namespace zent::xml::testing
