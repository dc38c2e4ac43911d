#include <gtest/gtest.h>

#include <string>

#include "xml/TestDocument.h"

// Whole files, byte for byte the same on every system: NAME.before.xml, changed, is NAME.after.xml.

namespace zent::xml::testing {
namespace {

struct GoldenCase {
  const char* what;
  const char* name;
};

constexpr GoldenCase kFiles[] = {
    {"UTF-8", "utf-8"},
    {"UTF-8 with mark, tabs, LF", "utf-8-mark"},
    {"UTF-16 LE, four blanks", "utf-16le"},
    {"UTF-16 BE, LF", "utf-16be"},
    {"ISO-8859-1: the euro sign is a reference", "iso-8859-1"},
    {"windows-1252: the euro sign is a byte", "windows-1252"},
    {"US-ASCII: references alone", "us-ascii"},
};

/// Inserts, replaces and removes what the files differ by.
void Change(Document& document) {
  const Node version = document.CreateElement("ABCVersion").value();
  ASSERT_TRUE(document.SetText(version, "Caf\xC3\xA9 <&> \xE2\x82\xAC").ok());
  ASSERT_TRUE(document.InsertBefore(version, First(document, "/root/Version")).ok());
  const Document system = Loaded(
      "<s><Item id='2' t='\xE2\x82\xAC'><ID>\xD0\x96\xF0\x9F\x98\x80\xE2\x82\xAC\xC3\xA4</ID>"
      "<Empty/></Item></s>");
  const Node copy = document.Copy(First(system, "/s/Item")).value();
  ASSERT_TRUE(document.Replace(First(document, "/root/Items/Item[@id='2']"), copy).ok());
  ASSERT_TRUE(document.Remove(First(document, "/root/Items/Item[last()]")).ok());
}

TEST(Golden, ChangedFilesAreWrittenByteForByte) {
  for (const GoldenCase& row : kFiles) {
    SCOPED_TRACE(row.what);
    Document document = Loaded(TestFile("golden/" + std::string(row.name) + ".before.xml"));
    Change(document);
    EXPECT_EQ(Saved(document), TestFile("golden/" + std::string(row.name) + ".after.xml"));
  }
}

TEST(Golden, FilesThatWereWrittenStayAsTheyAre) {
  for (const GoldenCase& row : kFiles) {
    for (const char* state : {".before.xml", ".after.xml"}) {
      SCOPED_TRACE(row.what);
      const std::string bytes = TestFile("golden/" + std::string(row.name) + state);
      EXPECT_GT(bytes.size(), 200U);
      EXPECT_EQ(Resaved(bytes), bytes);
    }
  }
}

}  // namespace
}  // namespace zent::xml::testing
