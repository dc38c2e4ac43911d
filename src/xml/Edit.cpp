#include <libxml/tree.h>

#include <algorithm>

#include "base/Utf.h"
#include "xml/Content.h"
#include "xml/DocumentState.h"
#include "xml/Identifiers.h"
#include "xml/LibraryErrors.h"
#include "xml/Namespaces.h"
#include "xml/Tree.h"

namespace zent::xml {
namespace {

RuntimeError NotAllowed(const std::string& reason) {
  return {kInvalidProcedureCall, "The XML document cannot be changed in this way: " + reason};
}

/// An error for what cannot be touched at all.
Status CheckOwn(const DocumentAccess::State& state, Node node) {
  if (!node) return StandardError(kObjectNotSet);
  if (NodeAccess::Raw(node)->doc != state.document.get()) {
    return NotAllowed("the node belongs to another document");
  }
  if (node.kind() == NodeKind::Document || node.kind() == NodeKind::DocumentType) {
    return NotAllowed("the document and its type stay as they are");
  }
  return {};
}

/// Where a node is to stand: below `parent`, before `before` (null: at the end), in place of
/// `replaced` (null: of nothing).
struct Place {
  xmlNode* parent;
  xmlNode* before;
  xmlNode* replaced = nullptr;
};

/// Levels of elements in the subtree of `top`.
int HeightOf(const xmlNode* top) {
  const int outside = top->parent == nullptr ? 0 : LevelOf(top->parent);
  int height = 0;
  for (const xmlNode* node = top; node != nullptr; node = NextInTree(node, top)) {
    if (node->type == XML_ELEMENT_NODE) height = std::max(height, LevelOf(node) - outside);
  }
  return height;
}

Status CheckBelowDocument(const xmlNode* node, const Place& place) {
  if (node->type == XML_COMMENT_NODE || node->type == XML_PI_NODE) return {};
  if (node->type != XML_ELEMENT_NODE) {
    return NotAllowed("text cannot stand beside the document element");
  }
  bool behind = false;
  for (const xmlNode* other = place.parent->children; other != nullptr; other = other->next) {
    behind = behind || other == place.before;
    if (other->type == XML_ELEMENT_NODE && other != node && other != place.replaced) {
      return NotAllowed("a document has one document element");
    }
    if (other->type == XML_DTD_NODE && behind) {
      return NotAllowed("the document element stands behind the document type");
    }
  }
  return {};
}

Status CheckPlace(const xmlNode* node, const Place& place) {
  const bool content = node->type == XML_ELEMENT_NODE || node->type == XML_TEXT_NODE ||
                       node->type == XML_CDATA_SECTION_NODE || node->type == XML_COMMENT_NODE ||
                       node->type == XML_PI_NODE || node->type == XML_ENTITY_REF_NODE;
  if (!content) return NotAllowed("an attribute cannot stand among the nodes of an element");
  if (place.parent == nullptr) return NotAllowed("the place is outside of the document");
  if (place.parent->type == XML_DOCUMENT_NODE) return CheckBelowDocument(node, place);
  if (place.parent->type != XML_ELEMENT_NODE) return NotAllowed("only an element has nodes in it");

  for (const xmlNode* above = place.parent; above != nullptr; above = above->parent) {
    if (above == node) return NotAllowed("a node cannot stand below itself");
  }
  if (node->type == XML_ELEMENT_NODE && LevelOf(place.parent) + HeightOf(node) > kMostLevels) {
    return NotAllowed("elements would be nested too deeply");
  }
  return {};
}

void TakeOut(DocumentAccess::State& state, xmlNode* node) {
  xmlNode* const parent = node->parent;
  ForgetIdentifiers(node);
  xmlUnlinkNode(node);
  state.loose.insert(node);
  state.indexes.Changed(parent);
}

/// By hand: the library's own calls join neighbouring texts and free the one that was added.
void PutIn(DocumentAccess::State& state, xmlNode* node, const Place& place) {
  if (node->parent != nullptr) TakeOut(state, node);
  state.loose.erase(node);
  node->parent = place.parent;
  node->next = place.before;
  node->prev = place.before == nullptr ? place.parent->last : place.before->prev;
  (node->prev == nullptr ? place.parent->children : node->prev->next) = node;
  (place.before == nullptr ? place.parent->last : place.before->prev) = node;
  if (node->type == XML_ELEMENT_NODE) {
    SettleNamespaces(node);
    EnterIdentifiers(node);
  }
  state.indexes.Changed(node);
}

/// Puts `node` there if it may stand there.
Status Put(DocumentAccess::State& state, Node node, Place place) {
  if (Status own = CheckOwn(state, node); !own.ok()) return own;
  xmlNode* const raw = NodeAccess::Raw(node);
  if (Status allowed = CheckPlace(raw, place); !allowed.ok()) return allowed;
  const LibraryErrors silence;
  if (place.before == raw) place.before = raw->next;
  if (place.replaced != nullptr) TakeOut(state, place.replaced);
  PutIn(state, raw, place);
  return {};
}

bool IsPlainName(std::string_view name) {
  return IsUtf8(name) && name.find('\0') == std::string_view::npos &&
         xmlValidateNCName(XmlText(std::string(name)), 0) == 0;
}

}  // namespace

Result<Node> Document::CreateElement(std::string_view name) {
  const LibraryErrors silence;
  if (!IsPlainName(name)) {
    return NotAllowed("\"" + std::string(name) + "\" is no name of an element");
  }
  xmlNode* const element = OrNoMemory(
      xmlNewDocNode(state_->document.get(), nullptr, XmlText(std::string(name)), nullptr));
  state_->loose.insert(element);
  return NodeAccess::Handle(element);
}

Status Document::InsertBefore(Node node, Node reference) {
  if (!reference) return StandardError(kObjectNotSet);
  xmlNode* const before = NodeAccess::Raw(reference);
  if (before->doc != state_->document.get()) {
    return NotAllowed("the node belongs to another document");
  }
  if (before->type == XML_ATTRIBUTE_NODE || before->type == XML_DOCUMENT_NODE) {
    return NotAllowed("nothing can stand before an attribute or the document");
  }
  return Put(*state_, node, {before->parent, before});
}

Status Document::Append(Node parent, Node node) {
  if (!parent) return StandardError(kObjectNotSet);
  xmlNode* const below = NodeAccess::Raw(parent);
  if (below->doc != state_->document.get()) {
    return NotAllowed("the node belongs to another document");
  }
  return Put(*state_, node, {below, nullptr});
}

Status Document::Replace(Node old, Node node) {
  if (Status own = CheckOwn(*state_, old); !own.ok()) return own;
  if (old.kind() == NodeKind::Attribute) return NotAllowed("an attribute cannot be replaced");
  if (old == node) return {};
  xmlNode* const replaced = NodeAccess::Raw(old);
  xmlNode* next = replaced->next;
  if (next == NodeAccess::Raw(node) && next != nullptr) next = next->next;
  return Put(*state_, node, {replaced->parent, next, replaced});
}

Status Document::Remove(Node node) {
  if (Status own = CheckOwn(*state_, node); !own.ok()) return own;
  if (NodeAccess::Raw(node)->parent != nullptr) TakeOut(*state_, NodeAccess::Raw(node));
  return {};
}

Status Document::SetText(Node node, std::string_view text) {
  if (Status own = CheckOwn(*state_, node); !own.ok()) return own;
  if (node.kind() == NodeKind::EntityReference) {
    return NotAllowed("the text of an entity is that of its declaration");
  }
  if (Status fits = CheckContent(node.kind(), text); !fits.ok()) return fits;
  if (text.size() + sizeof(xmlNode) > state_->room) {
    return RuntimeError{kOutOfStringSpace, "The XML document has grown too big"};
  }
  state_->room -= text.size() + sizeof(xmlNode);
  const LibraryErrors silence;
  xmlNode* const raw = NodeAccess::Raw(node);
  if (raw->type != XML_ELEMENT_NODE && raw->type != XML_ATTRIBUTE_NODE) {
    xmlNodeSetContent(raw, XmlText(std::string(text)));
    if (!text.empty()) OrNoMemory(raw->content);
    state_->indexes.Changed(raw);
    return {};
  }
  const bool attribute = raw->type == XML_ATTRIBUTE_NODE;
  if (attribute) ForgetIdentifiers(raw);
  while (raw->children != nullptr) TakeOut(*state_, raw->children);
  if (text.empty()) return {};
  xmlNode* const content =
      OrNoMemory(xmlNewDocText(state_->document.get(), XmlText(std::string(text))));
  PutIn(*state_, content, {raw, nullptr});
  if (attribute) EnterIdentifiers(raw);
  return {};
}

}  // namespace zent::xml
