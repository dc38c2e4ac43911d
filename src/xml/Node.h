#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"

namespace zent::xml {

enum class NodeKind {
  None,  ///< of a handle that stands for no node
  Document,
  DocumentType,
  Element,
  Attribute,
  Text,
  CData,
  EntityReference,
  Comment,
  ProcessingInstruction,
};

/// A handle to a node of a Document, cheap to copy; the default handle stands for no node. A node
/// lives as long as its document, also when it has been taken out of the tree, so a handle is valid
/// until its document goes. Nodes are read here and changed through their Document. A handle to no
/// node reads as empty.
class Node {
 public:
  Node() = default;

  explicit operator bool() const { return node_ != nullptr; }
  friend bool operator==(Node a, Node b) { return a.node_ == b.node_; }

  NodeKind kind() const;
  bool IsElement() const { return kind() == NodeKind::Element; }

  /// Qualified name of an element or attribute ("p:Item"), target of a processing instruction, name
  /// of an entity or document type, else the DOM's "#document", "#text", "#cdata-section",
  /// "#comment".
  std::string name() const;

  /// All text in it as it stands, without comments and processing instructions (but the content of
  /// one of these when it is the node itself). Internal entities count as what they stand for.
  std::string Text() const;

  /// The value of the attribute called `name` (qualified, without regard to namespaces); nothing
  /// for an absent one and for a node that is no element.
  std::optional<std::string> Attribute(std::string_view name) const;

  /// The attributes of an element, as written; without the declarations of namespaces.
  std::vector<Node> Attributes() const;

  Node Parent() const;  ///< of an attribute: its element; none for the document
  Node FirstChild() const;
  Node LastChild() const;
  Node NextSibling() const;
  Node PreviousSibling() const;
  /// In document order, of every kind. Entity references have no children here.
  std::vector<Node> Children() const;

  /// The first node in document order that `xpath` (1.0) selects from this node, or no node. An
  /// error where the expression does not compile, has a result other than nodes, uses a prefix
  /// (none is declared) or costs too much. A text that holds an entity within
  /// its first two bytes equals no text in a comparison; functions on texts (string, contains) see
  /// what they stand for.
  Result<Node> SelectFirst(std::string_view xpath) const;

  /// All nodes that `xpath` selects, in document order; errors as above.
  Result<std::vector<Node>> SelectAll(std::string_view xpath) const;

 private:
  friend struct NodeAccess;
  void* node_ = nullptr;  ///< the library's node, known to src/xml alone
};

}  // namespace zent::xml
