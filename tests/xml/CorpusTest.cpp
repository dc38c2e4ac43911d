#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "xml/LibrarySelect.h"
#include "xml/TestDocument.h"

// What the fuzz targets begin with and what they have found, in every test run.

namespace zent::xml::testing {
namespace {

struct CorpusFile {
  std::string name;
  std::string bytes;
};

std::vector<CorpusFile> Corpus(const std::string& target) {
  std::vector<CorpusFile> files;
  const std::filesystem::path folder =
      std::filesystem::path(ZENT_TEST_DATA) / ".." / ".." / "fuzz" / "corpus" / target;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    files.push_back({entry.path().filename().string(), {std::istreambuf_iterator<char>(file), {}}});
  }
  EXPECT_GT(files.size(), 3U);
  return files;
}

TEST(Corpus, DocumentsThatAreSavedLoadAgain) {
  for (const CorpusFile& file : Corpus("xml_document")) {
    SCOPED_TRACE(file.name);
    const LoadResult loaded = Document::Load(file.bytes, "x.xml");
    if (!loaded.ok()) {
      EXPECT_NE(loaded.error().reason, "");
      continue;
    }
    const Result<std::string> saved = loaded.value().Serialize();
    ASSERT_TRUE(saved.ok());
    const LoadResult again = Document::Load(saved.value(), "x.xml");
    ASSERT_TRUE(again.ok()) << again.error().reason << "\n" << saved.value();
    EXPECT_TRUE(again.value().Serialize().ok());
  }
}

TEST(Corpus, ExpressionsFindWhatTheLibraryFinds) {
  const Document document = Loaded(
      "<!DOCTYPE r [<!ENTITY e 'x'>]><!--c--><r xmlns:p='u'><i id='1'>a&e;</i><i id='2'>b<j/></i>"
      "<p:i xml:lang='de'/><?p q?><![CDATA[d]]></r>");
  for (const CorpusFile& file : Corpus("xml_xpath")) {
    SCOPED_TRACE(file.name);
    const Node from = document.root().FirstChild();
    const Result<std::vector<Node>> all = from.SelectAll(file.bytes);
    const Result<Node> first = from.SelectFirst(file.bytes);
    ASSERT_EQ(first.ok(), all.ok());
    if (!all.ok()) continue;
    EXPECT_EQ(first.value(), all.value().empty() ? Node() : all.value().front());
    EXPECT_EQ(LibrarySelectAll(file.bytes, from).value(), all.value());
  }
}

}  // namespace
}  // namespace zent::xml::testing
