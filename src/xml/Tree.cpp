#include "xml/Tree.h"

#include <memory>

namespace zent::xml {
namespace {

struct FreeText {
  void operator()(xmlChar* text) const { xmlFree(text); }
};

}  // namespace

std::string_view View(const xmlChar* text) {
  return text == nullptr ? std::string_view() : reinterpret_cast<const char*>(text);
}

const xmlChar* XmlText(const std::string& text) {
  return reinterpret_cast<const xmlChar*>(text.c_str());
}

std::string ContentOf(const xmlNode* node) {
  const std::unique_ptr<xmlChar, FreeText> text(xmlNodeGetContent(node));
  // Other nodes than these may have none at all.
  if (node->type == XML_ELEMENT_NODE || node->type == XML_ATTRIBUTE_NODE) OrNoMemory(text.get());
  return std::string(View(text.get()));
}

bool HasContent(const xmlNode* node) {
  return (node->type == XML_ELEMENT_NODE || node->type == XML_DOCUMENT_NODE ||
          node->type == XML_ENTITY_DECL) &&
         node->children != nullptr;
}

xmlNode* NextInTree(const xmlNode* node, const xmlNode* top) {
  if (HasContent(node)) return node->children;
  for (; node != nullptr && node != top; node = node->parent) {
    if (node->next != nullptr) return node->next;
  }
  return nullptr;
}

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

std::string_view SpaceAttribute(const xmlNode* element) {
  for (const xmlAttr* attribute = element->properties; attribute != nullptr;
       attribute = attribute->next) {
    if (attribute->ns != nullptr && View(attribute->ns->prefix) == "xml" &&
        View(attribute->name) == "space" && attribute->children != nullptr) {
      return View(attribute->children->content);
    }
  }
  return {};
}

std::string QualifiedName(const xmlNode* node) {
  const std::string_view prefix = node->ns == nullptr ? std::string_view() : View(node->ns->prefix);
  std::string name(prefix);
  if (!prefix.empty()) name += ':';
  return name.append(View(node->name));
}

int LevelOf(const xmlNode* node) {
  int level = 0;
  for (; node != nullptr; node = node->parent) level += node->type == XML_ELEMENT_NODE ? 1 : 0;
  return level;
}

}  // namespace zent::xml
