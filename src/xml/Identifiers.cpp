#include "xml/Identifiers.h"

#include <libxml/valid.h>

#include "xml/Tree.h"

namespace zent::xml {
namespace {

bool StandsInTree(const xmlNode* node) {
  while (node->parent != nullptr) node = node->parent;
  return node->type == XML_DOCUMENT_NODE;
}

template <typename Visit>
void ForEachAttribute(xmlNode* top, Visit visit) {
  if (top->type == XML_ATTRIBUTE_NODE) return visit(reinterpret_cast<xmlAttr*>(top));
  for (xmlNode* node = top; node != nullptr; node = NextInTree(node, top)) {
    if (node->type != XML_ELEMENT_NODE) continue;
    for (xmlAttr* at = node->properties; at != nullptr; at = at->next) visit(at);
  }
}

void Enter(xmlAttr* attribute) {
  if (xmlIsID(attribute->doc, attribute->parent, attribute) != 1) return;
  const std::string value = ContentOf(reinterpret_cast<xmlNode*>(attribute));
  xmlAddID(nullptr, attribute->doc, XmlText(value), attribute);
}

void Forget(xmlAttr* attribute) {
  if (attribute->atype == XML_ATTRIBUTE_ID) xmlRemoveID(attribute->doc, attribute);
}

}  // namespace

void EnterIdentifiers(xmlNode* top) {
  if (StandsInTree(top)) ForEachAttribute(top, Enter);
}

void ForgetIdentifiers(xmlNode* top) {
  if (top->doc->ids != nullptr) ForEachAttribute(top, Forget);
}

}  // namespace zent::xml
