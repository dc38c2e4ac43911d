#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <string>

#include "xml/TestDocument.h"

// What an implementation of the platform's XML DOM was seen to do. The files say which cases are
// left out and why; forms of saved files are judged elsewhere, trees and results here.

namespace zent::xml::testing {
namespace {

using nlohmann::json;

/// The platform joins texts of children with a blank where white space stood, and trims.
std::string WithoutBlanks(std::string text) {
  text.erase(std::remove_if(text.begin(), text.end(),
                            [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }),
             text.end());
  return text;
}

TEST(RecordedLoads, KeepTheSameTree) {
  const json recorded = TestJson("loads.json");
  EXPECT_EQ(recorded["kept"].size(), 33U);
  for (const json& row : recorded["kept"]) {
    SCOPED_TRACE(row["what"].get<std::string>());
    const Document document = Loaded(BytesOf(row["input"]));
    const std::string tree = TreeOf(document.node());
    EXPECT_EQ(tree, TreeOf(Loaded(row["same_tree"].get<std::string>()).node()));
    EXPECT_EQ(tree, TreeOf(Loaded(Saved(document)).node()));
    EXPECT_EQ(WithoutBlanks(document.root().Text()), WithoutBlanks(row["text"]));
  }
}

TEST(RecordedLoads, FailForTheSameDocuments) {
  const json recorded = TestJson("loads.json");
  EXPECT_EQ(recorded["loads"].size() + recorded["left_out"].size(), 36U + 20U);
  for (const json& row : recorded["loads"]) {
    SCOPED_TRACE(row["what"].get<std::string>());
    const LoadResult loaded = Document::Load(BytesOf(row["input"]), "x.xml");
    EXPECT_EQ(loaded.ok(), row["loads"].get<bool>());
    if (loaded.ok()) continue;
    EXPECT_EQ(loaded.error().url, "x.xml");
    EXPECT_NE(loaded.error().code, 0);
    EXPECT_NE(loaded.error().reason, "");
    EXPECT_GE(loaded.error().line, 1);
    EXPECT_GE(loaded.error().column, 1);
  }
}

/// The kinds by their numbers in the DOM.
NodeKind KindOf(int number) {
  const std::map<int, NodeKind> kinds = {{1, NodeKind::Element},
                                         {2, NodeKind::Attribute},
                                         {3, NodeKind::Text},
                                         {8, NodeKind::Comment},
                                         {9, NodeKind::Document}};
  return kinds.at(number);
}

TEST(RecordedSelections, FindTheSameNodes) {
  const json recorded = TestJson("selections.json");
  const std::string main_text = recorded["main"];
  EXPECT_EQ(recorded["rows"].size(), 91U);
  for (const json& row : recorded["rows"]) {
    SCOPED_TRACE(row["expression"].get<std::string>() + " from " + row["from"].get<std::string>());
    const std::string text = row["document"];
    const Document document = Loaded(text == "main" ? main_text : text);
    const std::string from = row["from"];
    const Node context = from == "document" ? document.node() : First(document, from);
    const Result<Node> first = context.SelectFirst(row["expression"].get<std::string>());
    const Result<std::vector<Node>> all = context.SelectAll(row["expression"].get<std::string>());
    ASSERT_EQ(first.ok(), !row.contains("fails"));
    ASSERT_EQ(all.ok(), first.ok());
    if (!first.ok()) continue;
    EXPECT_EQ(all.value().size(), row["count"].get<std::size_t>());
    ASSERT_EQ(static_cast<bool>(first.value()), row.contains("kind"));
    if (!first.value()) continue;
    EXPECT_EQ(first.value(), all.value().front());
    EXPECT_EQ(first.value().kind(), KindOf(row["kind"]));
    EXPECT_EQ(first.value().name(), row["name"].get<std::string>());
    EXPECT_EQ(WithoutBlanks(first.value().Text()), WithoutBlanks(row["text"]));
  }
}

/// A document, and the system copy that elements are taken from.
struct Edited {
  Document& document;
  const Document& system;

  Node CopyOf(std::string_view xpath) const { return document.Copy(First(system, xpath)).value(); }
  Node At(std::string_view xpath) const { return First(document, xpath); }
};

using Edit = std::function<Status(Edited&)>;
using EditsByName = std::map<std::string, Edit>;

Status AppendCopyOf(Edited& given, std::string_view source) {
  const Document other = Loaded(source);
  return given.document.Append(given.At("/root/Items"),
                               given.document.Copy(other.root().FirstChild()).value());
}

EditsByName EditsOfElements() {
  return {
      {"insertBefore a clone from the other document",
       [](Edited& given) {
         return given.document.InsertBefore(given.CopyOf("/root/Items/Item"),
                                            given.At("/root/Items/Item[@id='2']"));
       }},
      {"appendChild a clone",
       [](Edited& given) {
         return given.document.Append(given.At("/root/Items"), given.CopyOf("/root/Items/Item"));
       }},
      {"appendChild of the node itself without cloning (moves it)",
       [](Edited& given) {
         return given.document.Append(given.At("/root/Items"), given.CopyOf("/root/Items/Item"));
       }},
      {"replaceChild",
       [](Edited& given) {
         return given.document.Replace(given.At("/root/Items/Item"),
                                       given.CopyOf("/root/Items/Item"));
       }},
      {"removeChild",
       [](Edited& given) { return given.document.Remove(given.At("/root/Items/Item")); }},
      {"removeChild until empty",
       [](Edited& given) {
         EXPECT_TRUE(given.document.Remove(given.At("//Item")).ok());
         return given.document.Remove(given.At("//Item"));
       }},
      {"insertBefore the first child of the document element",
       [](Edited& given) {
         return given.document.InsertBefore(given.CopyOf("/root/Version"),
                                            given.document.root().FirstChild());
       }},
  };
}

EditsByName EditsOfContent() {
  return {
      {"createElement, set text, insert",
       [](Edited& given) {
         const Node element = given.document.CreateElement("ABCVersion").value();
         EXPECT_TRUE(given.document.SetText(element, "ABC-1.00 <&>\"'\r\n\xC3\xA4").ok());
         return given.document.InsertBefore(element, given.At("/root/Version"));
       }},
      {"set text of an element that has children",
       [](Edited& given) { return given.document.SetText(given.At("/root/Items"), "x"); }},
      {"set text empty",
       [](Edited& given) { return given.document.SetText(given.At("/root/Version"), ""); }},
      {"clone with CDATA, comment, entity text into an ISO-8859-1 document",
       [](Edited& given) {
         return AppendCopyOf(given,
                             "<s><k t='&lt;&#10;'>&#8364;&#228;&amp;<![CDATA[<z>]]><!-- q --></k>"
                             "</s>");
       }},
      {"clone with a namespace prefix declared on the source root",
       [](Edited& given) {
         return AppendCopyOf(given, "<s xmlns:p='urn:p' xmlns='urn:d'><p:k p:x='1'><z/></p:k></s>");
       }},
      {"remove the document element",
       [](Edited& given) { return given.document.Remove(given.document.root()); }},
      {"append an attribute node as child",
       [](Edited& given) {
         return given.document.Append(given.At("/root/Items"), given.At("/root/Items/Item/@id"));
       }},
      {"attribute missing: getAttribute",
       [](Edited& given) {
         EXPECT_EQ(given.document.root().Attribute("b"), std::nullopt);
         EXPECT_EQ(given.document.root().Attribute("a"), "");
         return Status();
       }},
  };
}

EditsByName Edits() {
  EditsByName all = EditsOfElements();
  all.merge(EditsOfContent());
  return all;
}

TEST(RecordedEdits, MakeTheSameTree) {
  const json recorded = TestJson("edits.json");
  const Document system = Loaded(recorded["system_copy"].get<std::string>());
  const std::string system_before = Saved(system);
  const EditsByName edits = Edits();
  EXPECT_EQ(recorded["rows"].size(), edits.size());
  for (const json& row : recorded["rows"]) {
    SCOPED_TRACE(row["what"].get<std::string>());
    Document document = Loaded(BytesOf(row["input"]));
    Edited given{document, system};
    const Status done = edits.at(row["what"])(given);
    EXPECT_EQ(done.ok(), !row["fails"].get<bool>());
    if (!document.root()) {
      EXPECT_EQ(row["same_tree"].get<std::string>(), "<?xml version=\"1.0\"?>\n");
      EXPECT_EQ(document.node().Children().size(), 0U);
      continue;
    }
    const std::string expected = row["same_tree"];
    EXPECT_EQ(TreeOf(document.node()), TreeOf(Loaded(expected).node()));
    EXPECT_EQ(TreeOf(Loaded(Saved(document)).node()), TreeOf(document.node()));
  }
  EXPECT_EQ(Saved(system), system_before);
}

}  // namespace
}  // namespace zent::xml::testing
