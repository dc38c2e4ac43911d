#include <gtest/gtest.h>

#include <string>

#include "xml/TestDocument.h"

namespace zent::xml::testing {
namespace {

using std::string_literals::operator""s;

struct SaveCase {
  const char* what;
  std::string input;
  std::string saved;
};

void ExpectSaved(const SaveCase& row) {
  SCOPED_TRACE(row.what);
  EXPECT_EQ(Resaved(row.input), row.saved);
  EXPECT_EQ(Resaved(row.saved), row.saved) << "saved again";
  EXPECT_EQ(TreeOf(Loaded(row.saved).node()), TreeOf(Loaded(row.input).node()));
}

TEST(Serialize, KeepsWhatStandsBeforeAndBehindTheElement) {
  const SaveCase cases[] = {
      {"no declaration", "<a/>", "<a/>"},
      {"declaration as written", "<?xml version='1.0'  encoding='utf-8' ?>\n<a/>\n",
       "<?xml version='1.0'  encoding='utf-8' ?>\n<a/>\n"},
      {"standalone", "<?xml version=\"1.0\" standalone=\"yes\"?>\n<a/>",
       "<?xml version=\"1.0\" standalone=\"yes\"?>\n<a/>"},
      {"all on one line is put on lines", "<?xml version=\"1.0\"?><!--h--><?p d?><a/><!--t-->",
       "<?xml version=\"1.0\"?>\r\n<!--h-->\r\n<?p d?>\r\n<a/>\r\n<!--t-->"},
      {"empty lines go", "\n\n<a/>\n\n\n", "<a/>\n"},
      {"doctype with a name", "<!DOCTYPE a>\n<a/>", "<!DOCTYPE a>\n<a/>"},
      {"doctype that names a file", "<!DOCTYPE a SYSTEM 'x>y.dtd'>\n<a/>",
       "<!DOCTYPE a SYSTEM 'x>y.dtd'>\n<a/>"},
      {"doctype with a subset, as written",
       "<!--<!DOCTYPE no>-->\n<!DOCTYPE a [\n <!ENTITY e \"]>'\">\n <!-- ]> ' -->\n <?p ]>?>\n"
       " <!ATTLIST a d CDATA 'x'>\n]>\n<a>&e;</a>\n",
       "<!--<!DOCTYPE no>-->\n<!DOCTYPE a [\n <!ENTITY e \"]>'\">\n <!-- ]> ' -->\n <?p ]>?>\n"
       " <!ATTLIST a d CDATA 'x'>\n]>\n<a>&e;</a>\n"},
  };
  for (const SaveCase& row : cases) ExpectSaved(row);
}

TEST(Serialize, KeepsTheLineEndsOfTheFile) {
  const SaveCase cases[] = {
      {"CR LF", "<a>\r\n  <b>1\r\n2</b>\r\n</a>\r\n", "<a>\r\n  <b>1\r\n2</b>\r\n</a>\r\n"},
      {"LF", "<a>\n  <b>1\n2</b>\n</a>\n", "<a>\n  <b>1\n2</b>\n</a>\n"},
      {"CR", "<a>\r  <b>1\r2</b>\r</a>\r", "<a>\r  <b>1\r2</b>\r</a>\r"},
      {"the first one counts", "<a>\n<b>1\r\n2</b>\r\n</a>", "<a>\n<b>1\n2</b>\n</a>"},
      {"none: as Windows has them", "<a><b/></a>", "<a>\r\n  <b/>\r\n</a>"},
      {"in comments, CDATA, instructions and the document type",
       "<!DOCTYPE a [\r\n]>\r\n<a><!--1\r\n2--><![CDATA[1\r\n2]]><?p 1\r\n2?>x</a>",
       "<!DOCTYPE a [\r\n]>\r\n<a><!--1\r\n2--><![CDATA[1\r\n2]]><?p 1\r\n2?>x</a>"},
      {"a written carriage return stays one", "<a>\r\n  <b t=\"&#13;&#10;\">x&#13;</b>\r\n</a>",
       "<a>\r\n  <b t=\"&#13;&#10;\">x&#13;</b>\r\n</a>"},
  };
  for (const SaveCase& row : cases) ExpectSaved(row);
}

TEST(Serialize, IndentsWhereAnElementHoldsNoText) {
  const SaveCase cases[] = {
      {"two blanks where nothing shows an indent", "<a><b><c/></b></a>\n",
       "<a>\n  <b>\n    <c/>\n  </b>\n</a>\n"},
      {"tabs", "<a>\n\t<b><c/></b></a>\n", "<a>\n\t<b>\n\t\t<c/>\n\t</b>\n</a>\n"},
      {"four blanks", "<a>\n    <b><c/></b></a>\n", "<a>\n    <b>\n        <c/>\n    </b>\n</a>\n"},
      {"shown at the second level only", "<a><b>\n      <c/></b></a>\n",
       "<a>\n   <b>\n      <c/>\n   </b>\n</a>\n"},
      {"lines without indent", "<a>\n<b>\n<c/></b></a>\n", "<a>\n<b>\n<c/>\n</b>\n</a>\n"},
      {"blanks and tabs mixed show nothing", "<a>\n \t<b/>\n</a>\n", "<a>\n  <b/>\n</a>\n"},
      {"comments and instructions are lines", "<a><!--c--><?p?><b/></a>\n",
       "<a>\n  <!--c-->\n  <?p?>\n  <b/>\n</a>\n"},
      {"text stays as it is", "<a>\n  <b> x </b>\n</a>\n", "<a>\n  <b> x </b>\n</a>\n"},
      {"beside text nothing is added", "<a>\n  <p>x<b><i/><u/></b></p>\n</a>\n",
       "<a>\n  <p>x<b><i/><u/></b></p>\n</a>\n"},
      {"beside an entity nothing is added",
       "<!DOCTYPE a [<!ENTITY e \"x\">]>\n<a>&e;<b><c/></b></a>\n",
       "<!DOCTYPE a [<!ENTITY e \"x\">]>\n<a>&e;<b><c/></b></a>\n"},
      {"white space that counts", "<a>\n  <b xml:space=\"preserve\"> <c/><d><e/></d> </b>\n</a>\n",
       "<a>\n  <b xml:space=\"preserve\"> <c/><d><e/></d> </b>\n</a>\n"},
      {"and counts no more", "<a xml:space=\"preserve\"><b xml:space=\"default\"> <c/> </b></a>\n",
       "<a xml:space=\"preserve\"><b xml:space=\"default\">\n    <c/>\n  </b></a>\n"},
      {"white space between two entities",
       "<!DOCTYPE a [<!ENTITY e \"x\">]>\n<a>\n  <b>&e; &e;</b>\n</a>\n",
       "<!DOCTYPE a [<!ENTITY e \"x\">]>\n<a>\n  <b>&e; &e;</b>\n</a>\n"},
      {"white space between two CDATA sections",
       "<a>\n  <b><![CDATA[x]]>\n <![CDATA[y]]> </b>\n</a>\n",
       "<a>\n  <b><![CDATA[x]]>\n <![CDATA[y]]> </b>\n</a>\n"},
      {"white space written as references", "<a>\n  <b>&#32;</b>\n  <c>&#10; </c>\n</a>\n",
       "<a>\n  <b>&#32;</b>\n  <c>&#10;&#32;</c>\n</a>\n"},
      {"and so below what preserves white space",
       "<a xml:space=\"preserve\"><b>&#32;</b> <c xml:space=\"default\">&#9;</c></a>\n",
       "<a xml:space=\"preserve\"><b> </b> <c xml:space=\"default\">&#9;</c></a>\n"},
  };
  for (const SaveCase& row : cases) ExpectSaved(row);
}

TEST(Serialize, WritesTextAndAttributesAsReferencesWhereNeeded) {
  const SaveCase cases[] = {
      {"marks", "<a t=\"&lt;&gt;&amp;&quot;'\">&lt;&gt;&amp;\"'</a>",
       "<a t=\"&lt;&gt;&amp;&quot;'\">&lt;&gt;&amp;\"'</a>"},
      {"tabs and line ends of an attribute", "<a t=\"&#9;&#10;&#13; \"/>",
       "<a t=\"&#9;&#10;&#13; \"/>"},
      {"CDATA stays CDATA", "<a><![CDATA[<&>]]]]><![CDATA[>]]></a>",
       "<a><![CDATA[<&>]]]]><![CDATA[>]]></a>"},
      {"namespaces", "<a xmlns=\"u\" xmlns:p=\"v&amp;\"><p:b p:c=\"1\">x</p:b>y</a>",
       "<a xmlns=\"u\" xmlns:p=\"v&amp;\"><p:b p:c=\"1\">x</p:b>y</a>"},
      {"namespaces whose names are no addresses",
       "<a xmlns=\"my forms\" xmlns:p=\"{0F2A}\" xmlns:q=\"C:\\Korvo\"><p:b>x</p:b>y</a>",
       "<a xmlns=\"my forms\" xmlns:p=\"{0F2A}\" xmlns:q=\"C:\\Korvo\"><p:b>x</p:b>y</a>"},
      {"entities in an attribute", "<!DOCTYPE a [<!ENTITY e \"x\">]>\r\n<a t=\"1&e;2\"/>",
       "<!DOCTYPE a [<!ENTITY e \"x\">]>\r\n<a t=\"1&e;2\"/>"},
      {"an undeclared entity that may be elsewhere", "<!DOCTYPE a SYSTEM \"n\">\r\n<a>&e;</a>",
       "<!DOCTYPE a SYSTEM \"n\">\r\n<a>&e;</a>"},
      {"defaults of the document type are not added",
       "<!DOCTYPE a [<!ATTLIST a d CDATA \"x\">]>\r\n<a/>",
       "<!DOCTYPE a [<!ATTLIST a d CDATA \"x\">]>\r\n<a/>"},
  };
  for (const SaveCase& row : cases) ExpectSaved(row);
}

std::string Utf16(const std::string& ascii, bool big_endian) {
  std::string bytes = big_endian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : ascii) bytes += big_endian ? "\0"s + c : c + "\0"s;
  return bytes;
}

TEST(Serialize, KeepsTheEncoding) {
  const std::string latin1 = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n";
  const std::string ansi = "<?xml version=\"1.0\" encoding=\"Windows-1252\"?>\n";
  const std::string ascii = "<?xml version=\"1.0\" encoding=\"us-ascii\"?>\n";
  const std::string utf16 = "<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n<a t=\"x\">y</a>\n";
  const SaveCase cases[] = {
      {"UTF-8", "<a>\xC3\xA4\xF0\x9F\x98\x80</a>\n", "<a>\xC3\xA4\xF0\x9F\x98\x80</a>\n"},
      {"UTF-8 with mark", "\xEF\xBB\xBF<a>\xC3\xA4</a>\n", "\xEF\xBB\xBF<a>\xC3\xA4</a>\n"},
      {"UTF-16 LE", Utf16(utf16, false), Utf16(utf16, false)},
      {"UTF-16 BE", Utf16(utf16, true), Utf16(utf16, true)},
      {"UTF-16 LE, not declared", Utf16("<a/>\n", false), Utf16("<a/>\n", false)},
      {"UTF-16 LE without mark", Utf16(utf16, false).substr(2), Utf16(utf16, false).substr(2)},
      {"ISO-8859-1", latin1 + "<a t=\"\xE4\">\xFC\x80</a>\n",
       latin1 + "<a t=\"\xE4\">\xFC\x80</a>\n"},
      {"outside ISO-8859-1", latin1 + "<a t=\"&#x20AC;\">&#x416;\xE4</a>\n",
       latin1 + "<a t=\"&#8364;\">&#1046;\xE4</a>\n"},
      {"outside ISO-8859-1, in CDATA", latin1 + "<a>&#8364;<![CDATA[1\xE4]]></a>\n",
       latin1 + "<a>&#8364;<![CDATA[1\xE4]]></a>\n"},
      {"windows-1252", ansi + "<a>\x80\x9F\xE4</a>\n", ansi + "<a>\x80\x9F\xE4</a>\n"},
      {"windows-1252, bytes without a character", ansi + "<a>\x81\x8D\x8F\x90\x9D</a>\n",
       ansi + "<a>\x81\x8D\x8F\x90\x9D</a>\n"},
      {"outside windows-1252", ansi + "<a t=\"&#128;\">&#1046;&#8364;?</a>\n",
       ansi + "<a t=\"&#128;\">&#1046;\x80?</a>\n"},
      {"US-ASCII", ascii + "<a>&#228;x</a>\n", ascii + "<a>&#228;x</a>\n"},
  };
  for (const SaveCase& row : cases) ExpectSaved(row);
}

struct UnsavableCase {
  const char* what;
  const char* source;  ///< UTF-8; its element goes into a document in US-ASCII
};

TEST(Serialize, FailsForACharacterThatCannotBeWritten) {
  const UnsavableCase cases[] = {
      {"element name", "<\xC3\xA4/>"},          {"attribute name", "<a \xC3\xA4=\"1\"/>"},
      {"comment", "<a><!--\xC3\xA4--></a>"},    {"target of an instruction", "<a><?\xC3\xA4?></a>"},
      {"instruction", "<a><?p \xC3\xA4?></a>"},
  };
  for (const UnsavableCase& row : cases) {
    SCOPED_TRACE(row.what);
    Document document = Loaded("<?xml version=\"1.0\" encoding=\"US-ASCII\"?><r/>");
    const Node copy = document.Copy(Loaded(row.source).root()).value();
    ASSERT_TRUE(document.Append(document.root(), copy).ok());
    const Result<std::string> saved = document.Serialize();
    ASSERT_FALSE(saved.ok());
    EXPECT_EQ(saved.number(), kInvalidProcedureCall);
    EXPECT_NE(saved.error().description.find("\xC3\xA4"), std::string::npos);
  }
}

TEST(Serialize, SplitsCDataAroundACharacterOutsideTheEncoding) {
  Document document = Loaded("<?xml version=\"1.0\" encoding=\"US-ASCII\"?>\n<r>x</r>");
  const Document source = Loaded("<a><![CDATA[1\xE2\x82\xAC]]></a>");
  ASSERT_TRUE(document.Append(document.root(), document.Copy(source.root()).value()).ok());
  EXPECT_EQ(Saved(document),
            "<?xml version=\"1.0\" encoding=\"US-ASCII\"?>\n"
            "<r>x<a><![CDATA[1]]>&#8364;<![CDATA[]]></a></r>");
}

}  // namespace
}  // namespace zent::xml::testing
