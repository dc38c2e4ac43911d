#include <libxml/tree.h>

#include <optional>
#include <string>
#include <utility>

#include "xml/DocumentState.h"
#include "xml/Entities.h"
#include "xml/Identifiers.h"
#include "xml/LibraryErrors.h"
#include "xml/Namespaces.h"
#include "xml/Tree.h"

namespace zent::xml {
namespace {

RuntimeError NotCopied(const std::string& reason) {
  return {kInvalidProcedureCall, "The XML node cannot be copied: " + reason};
}

/// One deep copy. The first fault ends it.
class Copier {
 public:
  explicit Copier(DocumentAccess::State& state)
      : document_(state.document.get()), room_(state.room) {}

  /// A copy of `source` with nothing around it; a part of it or null after a fault.
  LibraryPtr<xmlNode> CopyOf(const xmlNode* source) {
    if (source->type == XML_ELEMENT_NODE) {
      CopyElement(source, nullptr);
    } else {
      top_.reset(LeafOf(source));
    }
    return std::move(top_);
  }

  const std::optional<RuntimeError>& fault() const { return fault_; }
  std::size_t room() const { return room_; }

 private:
  // Recursion is as deep as elements are nested, and entities in their entities, both limited by
  // the parser.
  void CopyElement(const xmlNode* source, xmlNode* parent) {
    if (!Take(sizeof(xmlNode) + View(source->name).size())) return;
    if (++level_ > kMostLevels) {
      fault_ = NotCopied("it is nested too deeply");
      return;
    }
    xmlNode* const copy = OrNoMemory(xmlNewDocNode(document_, nullptr, source->name, nullptr));
    if (parent == nullptr) {
      top_.reset(copy);
    } else {
      LinkLast(parent, copy);
    }
    CopyNamespaces(source, copy);
    CopyAttributes(source, copy);
    CopyChildren(source->children, copy);
    --level_;
  }

  void CopyNamespaces(const xmlNode* source, xmlNode* copy) {
    for (const xmlNs* ns = source->nsDef; ns != nullptr; ns = ns->next) {
      if (!TakeNamespace(ns)) return;
      OrNoMemory(xmlNewNs(copy, ns->href, ns->prefix));
    }
    copy->ns = NamespaceOf(source->ns, copy);
  }

  // One that is declared above the source may have to be declared with each element of the copy,
  // however long its name is.
  xmlNs* NamespaceOf(const xmlNs* ns, xmlNode* copy) {
    if (ns == nullptr) return nullptr;
    if (View(ns->prefix) == "xml") return OrNoMemory(xmlSearchNs(copy->doc, copy, ns->prefix));
    if (xmlNs* found = NamespaceInScope(copy, ns->prefix, ns->href)) return found;
    return TakeNamespace(ns) ? DeclaredNamespace(copy, top_.get(), ns->prefix, ns->href) : nullptr;
  }

  void CopyAttributes(const xmlNode* source, xmlNode* copy) {
    for (xmlAttr* attribute = source->properties; attribute != nullptr;
         attribute = attribute->next) {
      for (const xmlNode* part = attribute->children; part != nullptr; part = part->next) {
        if (part->type == XML_ENTITY_REF_NODE && InternalEntity(part) == nullptr) {
          return Refuse(part);
        }
      }
      const std::string value = ContentOf(reinterpret_cast<xmlNode*>(attribute));
      if (!Take(sizeof(xmlAttr) + sizeof(xmlNode) + value.size())) return;
      OrNoMemory(
          xmlNewNsProp(copy, NamespaceOf(attribute->ns, copy), attribute->name, XmlText(value)));
      if (fault_) return;
    }
  }

  void CopyChildren(const xmlNode* first, xmlNode* parent) {
    for (const xmlNode* child = first; child != nullptr && !fault_; child = child->next) {
      if (child->type == XML_ELEMENT_NODE) {
        CopyElement(child, parent);
      } else if (child->type == XML_ENTITY_REF_NODE) {
        CopyEntity(child, parent);
      } else if (xmlNode* const leaf = LeafOf(child)) {
        LinkLast(parent, leaf);
      }
    }
  }

  void CopyEntity(const xmlNode* reference, xmlNode* parent) {
    const xmlEntity* const entity = InternalEntity(reference);
    if (entity == nullptr) return Refuse(reference);
    CopyChildren(entity->children, parent);
  }

  void Refuse(const xmlNode* reference) {
    fault_ = NotCopied("the entity \"" + std::string(View(reference->name)) +
                       "\" in it is not declared within its document");
  }

  xmlNode* LeafOf(const xmlNode* source) {
    const std::string_view content = View(source->content);
    if (!Take(sizeof(xmlNode) + content.size())) return nullptr;
    switch (source->type) {
      case XML_TEXT_NODE:
        return OrNoMemory(xmlNewDocText(document_, source->content));
      case XML_CDATA_SECTION_NODE:
        return OrNoMemory(
            xmlNewCDataBlock(document_, source->content, static_cast<int>(content.size())));
      case XML_COMMENT_NODE:
        return OrNoMemory(xmlNewDocComment(document_, source->content));
      case XML_PI_NODE:
        return OrNoMemory(xmlNewDocPI(document_, source->name, source->content));
      default:
        fault_ = NotCopied("it is no part of an element's content");
        return nullptr;
    }
  }

  bool TakeNamespace(const xmlNs* ns) {
    return Take(sizeof(xmlNs) + View(ns->href).size() + View(ns->prefix).size());
  }

  bool Take(std::size_t bytes) {
    if (fault_) return false;
    if (bytes <= room_) {
      room_ -= bytes;
      return true;
    }
    fault_ = RuntimeError{kOutOfStringSpace, "The XML document has grown too big"};
    return false;
  }

  static void LinkLast(xmlNode* parent, xmlNode* node) {
    node->parent = parent;
    node->prev = parent->last;
    (parent->last == nullptr ? parent->children : parent->last->next) = node;
    parent->last = node;
  }

  xmlDoc* document_;
  std::size_t room_;
  LibraryPtr<xmlNode> top_;
  int level_ = 0;
  std::optional<RuntimeError> fault_;
};

}  // namespace

Result<Node> Document::Copy(Node source) {
  if (!source) return StandardError(kObjectNotSet);
  const LibraryErrors silence;
  const xmlNode* const original = NodeAccess::Raw(source);
  if (original->type == XML_ENTITY_REF_NODE) {
    return NotCopied("it is a reference to an entity; copy the element that holds it");
  }
  Copier copier(*state_);
  LibraryPtr<xmlNode> copy = copier.CopyOf(original);
  if (copier.fault()) return *copier.fault();
  ForgetIdentifiers(copy.get());  // until it stands somewhere
  state_->room = copier.room();
  state_->loose.insert(copy.get());
  return NodeAccess::Handle(copy.release());
}

}  // namespace zent::xml
