#include "xml/TestDocument.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <utility>

#include "base/Utf.h"

namespace zent::xml::testing {

Document Loaded(std::string_view bytes) {
  LoadResult loaded = Document::Load(bytes, "test.xml");
  if (loaded.ok()) return std::move(loaded.value());
  ADD_FAILURE() << loaded.error().reason << "\nin " << bytes.substr(0, 400);
  return std::move(Document::Load("<none/>", "none.xml").value());
}

std::string Saved(const Document& document) {
  const Result<std::string> saved = document.Serialize();
  if (saved.ok()) return saved.value();
  ADD_FAILURE() << saved.error().description;
  return {};
}

std::string Resaved(std::string_view bytes) { return Saved(Loaded(bytes)); }

std::string TreeOf(Node node) {
  std::string tree = "(" + node.name();
  if (node.IsElement()) {
    for (const Node attribute : node.Attributes()) {
      tree += " " + attribute.name() + "=[" + attribute.Text() + "]";
    }
  } else if (node.kind() != NodeKind::Document) {
    tree += " [" + node.Text() + "]";
  }
  for (const Node child : node.Children()) tree += TreeOf(child);
  return tree + ")";
}

Node First(const Document& document, std::string_view xpath) {
  const Result<Node> found = document.SelectFirst(xpath);
  if (found.ok()) return found.value();
  ADD_FAILURE() << found.error().description;
  return {};
}

std::string BytesOf(const std::string& utf8) {
  std::string bytes;
  for (std::size_t at = 0; at < utf8.size();) {
    bytes.push_back(static_cast<char>(NextCodePoint(utf8, at)));
  }
  return bytes;
}

std::string TestFile(const std::string& name) {
  std::ifstream file(std::string(ZENT_TEST_DATA) + "/xml/" + name, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

nlohmann::json TestJson(const std::string& name) { return nlohmann::json::parse(TestFile(name)); }

}  // namespace zent::xml::testing
