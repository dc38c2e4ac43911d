#include "xml/Node.h"

#include "xml/Tree.h"

namespace zent::xml {
namespace {

NodeKind KindOf(const xmlNode* node) {
  switch (node->type) {
    case XML_DOCUMENT_NODE:
      return NodeKind::Document;
    case XML_DTD_NODE:
      return NodeKind::DocumentType;
    case XML_ELEMENT_NODE:
      return NodeKind::Element;
    case XML_ATTRIBUTE_NODE:
      return NodeKind::Attribute;
    case XML_TEXT_NODE:
      return NodeKind::Text;
    case XML_CDATA_SECTION_NODE:
      return NodeKind::CData;
    case XML_ENTITY_REF_NODE:
      return NodeKind::EntityReference;
    case XML_COMMENT_NODE:
      return NodeKind::Comment;
    case XML_PI_NODE:
      return NodeKind::ProcessingInstruction;
    default:
      return NodeKind::None;  // declarations of a document type: no handle leads there
  }
}

}  // namespace

NodeKind Node::kind() const {
  return node_ == nullptr ? NodeKind::None : KindOf(NodeAccess::Raw(*this));
}

std::string Node::name() const {
  switch (kind()) {
    case NodeKind::None:
      return {};
    case NodeKind::Document:
      return "#document";
    case NodeKind::Text:
      return "#text";
    case NodeKind::CData:
      return "#cdata-section";
    case NodeKind::Comment:
      return "#comment";
    case NodeKind::Element:
    case NodeKind::Attribute:
      return QualifiedName(NodeAccess::Raw(*this));
    case NodeKind::DocumentType:
    case NodeKind::EntityReference:
    case NodeKind::ProcessingInstruction:
      break;
  }
  return std::string(View(NodeAccess::Raw(*this)->name));
}

std::string Node::Text() const {
  return node_ == nullptr ? std::string() : ContentOf(NodeAccess::Raw(*this));
}

std::vector<Node> Node::Attributes() const {
  std::vector<Node> attributes;
  if (!IsElement()) return attributes;
  for (xmlAttr* attribute = NodeAccess::Raw(*this)->properties; attribute != nullptr;
       attribute = attribute->next) {
    attributes.push_back(NodeAccess::Handle(reinterpret_cast<xmlNode*>(attribute)));
  }
  return attributes;
}

std::optional<std::string> Node::Attribute(std::string_view name) const {
  for (const Node attribute : Attributes()) {
    if (attribute.name() == name) return attribute.Text();
  }
  return {};
}

Node Node::Parent() const {
  return node_ == nullptr ? Node() : NodeAccess::Handle(NodeAccess::Raw(*this)->parent);
}

Node Node::FirstChild() const {
  const bool has_content = node_ != nullptr && HasContent(NodeAccess::Raw(*this));
  return has_content ? NodeAccess::Handle(NodeAccess::Raw(*this)->children) : Node();
}

Node Node::LastChild() const {
  const bool has_content = node_ != nullptr && HasContent(NodeAccess::Raw(*this));
  return has_content ? NodeAccess::Handle(NodeAccess::Raw(*this)->last) : Node();
}

Node Node::NextSibling() const {
  if (node_ == nullptr || kind() == NodeKind::Attribute) return {};
  return NodeAccess::Handle(NodeAccess::Raw(*this)->next);
}

Node Node::PreviousSibling() const {
  if (node_ == nullptr || kind() == NodeKind::Attribute) return {};
  return NodeAccess::Handle(NodeAccess::Raw(*this)->prev);
}

std::vector<Node> Node::Children() const {
  std::vector<Node> children;
  for (Node child = FirstChild(); child; child = child.NextSibling()) children.push_back(child);
  return children;
}

}  // namespace zent::xml
