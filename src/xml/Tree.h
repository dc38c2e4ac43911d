#pragma once

#include <libxml/tree.h>

#include <new>
#include <string>
#include <string_view>

#include "xml/Node.h"

/// The library's trees as src/xml walks them. For its own sources alone: whoever uses src/xml sees
/// Document.h, Node.h and LoadError.h.
namespace zent::xml {

/// What stands behind a handle.
struct NodeAccess {
  static Node Handle(xmlNode* node) {
    Node handle;
    handle.node_ = node;
    return handle;
  }
  static xmlNode* Raw(Node node) { return static_cast<xmlNode*>(node.node_); }
};

/// Deepest nesting of elements: what the parser takes. Recursion over a tree is as deep at most.
inline constexpr int kMostLevels = 257;

/// What the library has made. It gives null where there is no memory; that ends the command, whose
/// one catch-all reports it.
template <typename T>
T* OrNoMemory(T* made) {
  if (made == nullptr) throw std::bad_alloc();
  return made;
}

std::string_view View(const xmlChar* text);
const xmlChar* XmlText(const std::string& text);

/// All text in `node`, as Node::Text gives it.
std::string ContentOf(const xmlNode* node);

/// True for a node with content nodes of its own (a reference shows those of its entity instead).
bool HasContent(const xmlNode* node);

/// The node after `node` in document order, down to the subtree of `top`; null behind its last one.
xmlNode* NextInTree(const xmlNode* node, const xmlNode* top);

/// True for white space alone, as XML defines it.
bool IsBlank(std::string_view text);

/// The value that attribute xml:space of `element` has: "preserve", "default", or empty.
std::string_view SpaceAttribute(const xmlNode* element);

/// The qualified name of an element or attribute.
std::string QualifiedName(const xmlNode* node);

/// Levels of elements from the top down to `node`, itself included: 1 for a document element.
int LevelOf(const xmlNode* node);

}  // namespace zent::xml
