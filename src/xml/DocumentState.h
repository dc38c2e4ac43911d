#pragma once

#include <libxml/tree.h>
#include <libxml/xpath.h>

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_set>

#include "xml/Charset.h"
#include "xml/ChildIndexes.h"
#include "xml/Document.h"

namespace zent::xml {

/// How the file was laid out, for writing it in the same way.
struct SourceLayout {
  Charset charset = Charset::Utf8;
  bool has_mark = false;
  std::string line_break;
  bool ends_with_break = false;  ///< a line break stood behind the last line
  std::string indent = "  ";     ///< of one level
  std::string declaration;       ///< as it was written, or empty
  std::string doctype;           ///< as it was written, or empty
};

struct FreeLibraryObject {
  void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
  void operator()(xmlNode* top) const { xmlFreeNode(top); }
  void operator()(xmlXPathContext* context) const { xmlXPathFreeContext(context); }
  void operator()(xmlXPathCompExpr* expression) const { xmlXPathFreeCompExpr(expression); }
  void operator()(xmlXPathObject* object) const { xmlXPathFreeObject(object); }
};

template <typename T>
using LibraryPtr = std::unique_ptr<T, FreeLibraryObject>;

/// All that a document is made of. The library's document points back to it.
struct Document::State {
  State() = default;
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  ~State();

  LibraryPtr<xmlDoc> document;
  SourceLayout layout;
  std::size_t node_count = 0;          ///< when it was loaded
  std::size_t byte_count = 0;          ///< of the file
  std::size_t room = 0;                ///< bytes of memory that copies and texts may still add
  std::unordered_set<xmlNode*> loose;  ///< tops of what stands outside the tree
  LibraryPtr<xmlXPathContext> xpath;   ///< made for the first selection
  ChildIndexes indexes;                ///< told of every change
};

struct DocumentAccess {
  using State = Document::State;
  static Document Make(std::unique_ptr<State> state) { return Document(std::move(state)); }
  static State& Of(const xmlDoc* document) { return *static_cast<State*>(document->_private); }
};

}  // namespace zent::xml
