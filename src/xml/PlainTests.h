#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <string_view>

#include "xml/PlainPath.h"

namespace zent::xml {

/// True for an element that a step to `name` (empty: any) leads to. A plain name means elements
/// without a namespace.
bool IsElementCalled(const xmlNode* node, std::string_view name);

/// True for an attribute that a step to `name` (empty: any) leads to.
bool IsAttributeCalled(const xmlAttr* attribute, std::string_view name);

/// True when `element` passes.
bool Passes(const xmlNode* element, const PlainTest& test);

/// Calls `visit` with every node that `test` compares to its value: attributes or child elements.
template <typename Visit>
void ForEachCompared(const xmlNode* element, const PlainTest& test, Visit visit) {
  if (test.attribute) {
    for (const xmlAttr* at = element->properties; at != nullptr; at = at->next) {
      if (IsAttributeCalled(at, test.name)) visit(reinterpret_cast<const xmlNode*>(at));
    }
    return;
  }
  for (const xmlNode* child = element->children; child != nullptr; child = child->next) {
    if (IsElementCalled(child, test.name)) visit(child);
  }
}

/// The same number for the same text of an attribute or element, as Node::Text gives it.
std::uint64_t HashOfText(const xmlNode* node);
std::uint64_t HashOfText(std::string_view text);

}  // namespace zent::xml
