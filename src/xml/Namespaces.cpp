#include "xml/Namespaces.h"

#include <string>
#include <string_view>

#include "xml/Tree.h"

namespace zent::xml {
namespace {

bool SamePrefix(const xmlChar* a, const xmlChar* b) {
  return xmlStrEqual(a, b) == 1;  // null, the default namespace, is equal to null
}

xmlNs* DeclaredAt(const xmlNode* element, const xmlChar* prefix) {
  for (xmlNs* ns = element->nsDef; ns != nullptr; ns = ns->next) {
    if (SamePrefix(ns->prefix, prefix)) return ns;
  }
  return nullptr;
}

/// The declaration of `prefix` that counts at `element`.
xmlNs* InScope(const xmlNode* element, const xmlChar* prefix) {
  for (; element != nullptr && element->type == XML_ELEMENT_NODE; element = element->parent) {
    if (xmlNs* found = DeclaredAt(element, prefix)) return found;
  }
  return nullptr;
}

void Settle(xmlNode* element, xmlNode* top, xmlNs*& ns) {
  if (ns != nullptr && View(ns->prefix) != "xml") {
    ns = DeclaredNamespace(element, top, ns->prefix, ns->href);
  }
}

/// False for a name with another reference in it.
bool DecodeName(xmlNs& ns) {
  constexpr std::string_view kAmpersand = "&#38;";
  std::string name(View(ns.href));
  std::size_t at = name.find('&');
  if (at == std::string::npos) return true;
  for (; at != std::string::npos; at = name.find('&', at + 1)) {
    if (name.compare(at, kAmpersand.size(), kAmpersand) != 0) return false;
    name.erase(at + 1, kAmpersand.size() - 1);
  }
  xmlFree(const_cast<xmlChar*>(ns.href));  // the library's own, declared as not to be written to
  ns.href = nullptr;
  ns.href = OrNoMemory(xmlStrdup(XmlText(name)));
  return true;
}

}  // namespace

bool DecodeNamespaceNames(xmlDoc* document) {
  const xmlNode* const top = xmlDocGetRootElement(document);
  for (const xmlNode* node = top; node != nullptr; node = NextInTree(node, top)) {
    if (node->type != XML_ELEMENT_NODE) continue;
    for (xmlNs* ns = node->nsDef; ns != nullptr; ns = ns->next) {
      if (!DecodeName(*ns)) return false;
    }
  }
  return true;
}

xmlNs* NamespaceInScope(const xmlNode* element, const xmlChar* prefix, const xmlChar* href) {
  xmlNs* const found = InScope(element, prefix);
  return found != nullptr && xmlStrEqual(found->href, href) == 1 ? found : nullptr;
}

xmlNs* DeclaredNamespace(xmlNode* element, xmlNode* top, const xmlChar* prefix,
                         const xmlChar* href) {
  if (xmlNs* found = NamespaceInScope(element, prefix, href)) return found;
  // Higher up it would change what others mean that have settled: those that use the same prefix,
  // and, for the default namespace, those that have none.
  const bool free_prefix = prefix != nullptr && InScope(element, prefix) == nullptr;
  return OrNoMemory(xmlNewNs(free_prefix ? top : element, href, prefix));
}

void SettleNamespaces(xmlNode* top) {
  for (xmlNode* node = top; node != nullptr; node = NextInTree(node, top)) {
    if (node->type != XML_ELEMENT_NODE) continue;
    Settle(node, top, node->ns);
    for (xmlAttr* attribute = node->properties; attribute != nullptr; attribute = attribute->next) {
      Settle(node, top, attribute->ns);
    }
    if (node->ns != nullptr) continue;
    const xmlNs* const inherited = InScope(node, nullptr);
    if (inherited == nullptr || View(inherited->href).empty()) continue;
    DeclaredNamespace(node, top, nullptr, XmlText(std::string()));
  }
}

}  // namespace zent::xml
