#include <utility>

#include "base/Utf.h"
#include "xml/Blanks.h"
#include "xml/DocumentState.h"
#include "xml/MarkupWriter.h"
#include "xml/Tree.h"

namespace zent::xml {
namespace {

/// What an element passes on to those in it.
struct Manner {
  std::size_t level = 0;
  bool preserve = false;  ///< white space counts
  bool mixed = false;     ///< within text: every line break would be part of it
};

bool HoldsOnlyStructure(const xmlNode* element) {
  for (const xmlNode* child = element->children; child != nullptr; child = child->next) {
    if (child->type != XML_ELEMENT_NODE && child->type != XML_COMMENT_NODE &&
        child->type != XML_PI_NODE) {
      return false;
    }
  }
  return element->children != nullptr;
}

class TreeWriter {
 public:
  explicit TreeWriter(const SourceLayout& layout) : layout_(layout), out_(layout) {}

  Result<std::string> Write(const xmlDoc* document) {
    bool first = layout_.declaration.empty();
    if (!first) out_.Literal(layout_.declaration);
    for (const xmlNode* node = document->children; node != nullptr; node = node->next) {
      if (!first) out_.LineBreak();
      first = false;
      WriteNode(node, {});
    }
    if (layout_.ends_with_break) out_.LineBreak();
    return out_.Take();
  }

 private:
  void WriteNode(const xmlNode* node, const Manner& manner) {
    switch (node->type) {
      case XML_ELEMENT_NODE:
        return WriteElement(node, manner);
      case XML_TEXT_NODE:
        return WriteText(node, manner);
      case XML_CDATA_SECTION_NODE:
        return out_.CData(View(node->content));
      case XML_ENTITY_REF_NODE:
        return out_.Reference(View(node->name));
      case XML_COMMENT_NODE:
        return out_.Comment(View(node->content));
      case XML_PI_NODE:
        return out_.Instruction(View(node->name), View(node->content));
      case XML_DTD_NODE:
        return out_.Literal(layout_.doctype);
      default:
        return;  // nothing else stands in a tree
    }
  }

  /// White space alone is written so that it is kept when the file is loaded.
  void WriteText(const xmlNode* node, const Manner& manner) {
    const std::string_view text = View(node->content);
    if (manner.preserve || !IsBlank(text) || IsBesideText(node)) return out_.Text(text);
    out_.References(text);
  }

  // Recursion is as deep as elements are nested, which loading and editing limit.
  void WriteElement(const xmlNode* element, const Manner& outer) {
    const std::string name = QualifiedName(element);
    out_.Literal("<" + name);
    WriteNamespaces(element);
    WriteAttributes(element);
    if (element->children == nullptr) return out_.Literal("/>");
    out_.Literal(">");

    Manner inner = outer;
    ++inner.level;
    const std::string_view space = SpaceAttribute(element);
    if (!space.empty()) inner.preserve = space == "preserve";
    const bool only_structure = HoldsOnlyStructure(element);
    inner.mixed = outer.mixed || !only_structure;
    const bool indented = !inner.preserve && !inner.mixed;
    for (const xmlNode* child = element->children; child != nullptr; child = child->next) {
      if (indented) out_.NewLine(inner.level);
      WriteNode(child, inner);
    }
    if (indented) out_.NewLine(outer.level);
    out_.Literal("</" + name + ">");
  }

  void WriteNamespaces(const xmlNode* element) {
    for (const xmlNs* ns = element->nsDef; ns != nullptr; ns = ns->next) {
      std::string name = " xmlns";
      if (ns->prefix != nullptr) name.append(":").append(View(ns->prefix));
      out_.Literal(name + "=\"");
      out_.AttributeText(View(ns->href));
      out_.Literal("\"");
    }
  }

  void WriteAttributes(const xmlNode* element) {
    for (xmlAttr* attribute = element->properties; attribute != nullptr;
         attribute = attribute->next) {
      out_.Literal(" " + QualifiedName(reinterpret_cast<xmlNode*>(attribute)) + "=\"");
      for (const xmlNode* part = attribute->children; part != nullptr; part = part->next) {
        if (part->type == XML_ENTITY_REF_NODE) {
          out_.Reference(View(part->name));
        } else {
          out_.AttributeText(View(part->content));
        }
      }
      out_.Literal("\"");
    }
  }

  const SourceLayout& layout_;
  MarkupWriter out_;
};

}  // namespace

Result<std::string> Document::Serialize() const {
  return TreeWriter(state_->layout).Write(state_->document.get());
}

}  // namespace zent::xml
