#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "xml/Document.h"

// Any bytes as a document: what loads is written, loads again as the same tree, and is then written
// the same.

namespace {

using zent::xml::Document;
using zent::xml::LoadResult;
using zent::xml::Node;
using zent::xml::NodeKind;

void Require(bool kept) {
  if (!kept) std::abort();
}

bool SameTree(Node a, Node b) {
  // The text of an element is that of its children, which are compared.
  const bool leaf = !a.IsElement() && a.kind() != NodeKind::Document;
  if (a.kind() != b.kind() || a.name() != b.name() || (leaf && a.Text() != b.Text())) return false;
  const std::vector<Node> of_a = a.Attributes();
  const std::vector<Node> of_b = b.Attributes();
  if (of_a.size() != of_b.size()) return false;
  for (std::size_t i = 0; i < of_a.size(); ++i) {
    if (!SameTree(of_a[i], of_b[i])) return false;
  }
  Node child_a = a.FirstChild();
  Node child_b = b.FirstChild();
  while (child_a && child_b) {
    if (!SameTree(child_a, child_b)) return false;
    child_a = child_a.NextSibling();
    child_b = child_b.NextSibling();
  }
  return !child_a && !child_b;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  LoadResult loaded = Document::Load(input, "fuzz.xml");
  if (!loaded.ok()) {
    Require(loaded.error().code != 0 && !loaded.error().reason.empty());
    return 0;
  }
  Document& document = loaded.value();
  const zent::Result<std::string> saved = document.Serialize();
  if (!saved.ok()) return 0;
  const LoadResult again = Document::Load(saved.value(), "fuzz.xml");
  Require(again.ok());
  Require(SameTree(document.node(), again.value().node()));
  const zent::Result<std::string> saved_again = again.value().Serialize();
  Require(saved_again.ok());
  if (const zent::Result<Node> copy = document.Copy(document.root()); copy.ok()) {
    Require(document.Replace(document.root(), copy.value()).ok());
    Require(document.Serialize().ok());
  }
  return 0;
}
