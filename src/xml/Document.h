#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/Status.h"
#include "xml/LoadError.h"
#include "xml/Node.h"

/// XML documents as values: bytes in, bytes out. Nothing that a document names is ever fetched: no
/// entity, document type, inclusion or network address outside its own bytes.
namespace zent::xml {

class LoadResult;

/// A document in memory. It owns its nodes and is used by one thread at a time; documents share
/// nothing.
class Document {
 public:
  /// Reads `bytes`; `name` stands in reports only. White space alone between elements is dropped,
  /// except below xml:space="preserve"; all else is kept, also between CDATA sections and
  /// references to entities.
  static LoadResult Load(std::string_view bytes, std::string_view name,
                         const LoadLimits& limits = {});

  Document(Document&&) noexcept;
  Document& operator=(Document&&) noexcept;
  ~Document();

  /// The file of this document in its own encoding, with the byte-order mark, declaration and line
  /// ends that it came with. An element that holds elements, comments and processing instructions
  /// alone, and does not stand within text, is written with one of them on each line, indented as
  /// the input was (else by two blanks); no other text changes, but white space alone that counts
  /// outside of xml:space="preserve" is written as references: else the next load would drop it. An
  /// error for a name, comment or processing instruction that the encoding cannot hold; in text and
  /// attributes such a character is written as a reference.
  Result<std::string> Serialize() const;

  /// The document node, where a relative expression on the document starts.
  Node node() const;
  /// The document element; none after it has been removed.
  Node root() const;

  /// From the document node; see Node.
  Result<Node> SelectFirst(std::string_view xpath) const { return node().SelectFirst(xpath); }
  Result<std::vector<Node>> SelectAll(std::string_view xpath) const {
    return node().SelectAll(xpath);
  }

  /// An element of this document that stands nowhere yet. An error when `name` is no XML name or
  /// has a prefix.
  Result<Node> CreateElement(std::string_view name);

  /// A deep copy of `source`, a node of any document, that stands nowhere yet. Internal entities in
  /// it are replaced by what they stand for; an entity that is undeclared, external or unparsed is
  /// an error, as is a node that is not part of an element's content (attribute, document).
  Result<Node> Copy(Node source);

  // The changes below take a node of this document; one that stands somewhere is moved. What the
  // rules of XML forbid is an error and changes nothing: a second document element, text beside it,
  // a node below itself, elements nested more than 257 deep (which the parser refuses as well), a
  // node of another document (copy it first), no node at all.

  /// Puts `node` immediately before `reference`, below the same parent.
  Status InsertBefore(Node node, Node reference);
  /// Puts `node` behind the last child of `parent`, an element or the document.
  Status Append(Node parent, Node node);
  /// Puts `node` in the place of `old`, which is taken out of the tree. The document element may be
  /// replaced by an element.
  Status Replace(Node old, Node node);
  /// Takes `node` out of the tree; an attribute is taken from its element.
  Status Remove(Node node);
  /// Makes `text` all that the element or attribute holds; of text, comments and the like the
  /// content. An error when `text` holds a character that XML does not have.
  Status SetText(Node node, std::string_view text);

 private:
  friend struct DocumentAccess;
  struct State;
  explicit Document(std::unique_ptr<State> state);

  std::unique_ptr<State> state_;
};

/// The document, or why it was not loaded.
class [[nodiscard]] LoadResult {
 public:
  LoadResult(Document document) : content_(std::in_place_index<0>, std::move(document)) {}
  LoadResult(LoadError error) : content_(std::in_place_index<1>, std::move(error)) {}

  bool ok() const { return content_.index() == 0; }
  /// Only when ok().
  Document& value() { return *std::get_if<0>(&content_); }
  const Document& value() const { return *std::get_if<0>(&content_); }
  /// Only when !ok().
  const LoadError& error() const { return *std::get_if<1>(&content_); }

 private:
  std::variant<Document, LoadError> content_;
};

}  // namespace zent::xml
