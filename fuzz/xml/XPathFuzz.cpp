#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "xml/Document.h"
#include "xml/LibrarySelect.h"

// Any bytes as an expression: the first node is the first of all, and the library finds the same.

namespace {

constexpr std::string_view kDocument =
    "<!DOCTYPE r [<!ENTITY e 'x'>]><!--c--><r xmlns:p='u'><i id='1'>a&e;</i><i id='2'>b<j/></i>"
    "<p:i xml:lang='de'/><?p q?><![CDATA[d]]></r>";

void Require(bool kept) {
  if (!kept) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using zent::xml::Node;
  const std::string_view expression(reinterpret_cast<const char*>(data), size);
  const zent::xml::LoadResult loaded = zent::xml::Document::Load(kDocument, "fuzz.xml");
  const Node from = loaded.value().root().FirstChild();
  const zent::Result<std::vector<Node>> all = from.SelectAll(expression);
  const zent::Result<Node> first = from.SelectFirst(expression);
  if (!all.ok() || !first.ok()) return 0;
  Require(first.value() == (all.value().empty() ? Node() : all.value().front()));
  const zent::Result<std::vector<Node>> judged = zent::xml::LibrarySelectAll(expression, from);
  Require(judged.ok() && judged.value() == all.value());
  return 0;
}
