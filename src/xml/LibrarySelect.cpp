#include "xml/LibrarySelect.h"

#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include "xml/DocumentState.h"
#include "xml/LibraryErrors.h"
#include "xml/Tree.h"
#include "xml/XPathText.h"

namespace zent::xml {
namespace {

// Steps of the evaluator that one selection may take: a few looks at every node, and some more for
// small documents.
constexpr std::size_t kStepsForAny = 1'000'000;
constexpr std::size_t kStepsForEachNode = 40;

/// One evaluation in the context that a document keeps.
class Evaluation {
 public:
  Evaluation(std::string_view xpath, xmlNode* from)
      : xpath_(xpath), from_(from), state_(DocumentAccess::Of(from->doc)) {}

  /// The nodes that the expression selects.
  Result<LibraryPtr<xmlXPathObject>> Run() {
    PrepareContext();
    const LibraryPtr<xmlXPathCompExpr> compiled(
        xmlXPathCtxtCompile(state_.xpath.get(), XmlText(std::string(xpath_))));
    if (!compiled) return Failure();
    LibraryPtr<xmlXPathObject> found(xmlXPathCompiledEval(compiled.get(), state_.xpath.get()));
    if (!found) return Failure();
    if (found->type != XPATH_NODESET) return NoNodes();
    return found;
  }

 private:
  void PrepareContext() {
    if (!state_.xpath) state_.xpath.reset(xmlXPathNewContext(state_.document.get()));
    xmlXPathContext& context = *state_.xpath;
    context.node = from_;
    context.opCount = 0;
    context.opLimit =
        static_cast<unsigned long>(kStepsForAny + kStepsForEachNode * state_.node_count);
    errors_.Clear();
  }

  RuntimeError Failure() const {
    if (!errors_.first()) return Unusable(xpath_, "it is not valid");
    constexpr int kTypeFault = XML_XPATH_INVALID_TYPE;
    if (errors_.first()->code == kTypeFault) return NoNodes();
    return Unusable(xpath_, errors_.first()->reason);
  }

  RuntimeError NoNodes() const {
    return Unusable(xpath_, "its result is no set of nodes", kTypeMismatch);
  }

  std::string_view xpath_;
  xmlNode* from_;
  DocumentAccess::State& state_;
  LibraryErrors errors_;
};

/// False for a declaration of the document type and what stands below it, which no handle shows.
bool IsShown(const xmlNode* node) {
  for (; node != nullptr; node = node->parent) {
    if (node->type == XML_ENTITY_DECL || node->type == XML_ELEMENT_DECL ||
        node->type == XML_ATTRIBUTE_DECL) {
      return false;
    }
  }
  return true;
}

/// Handles to what was found.
Result<std::vector<Node>> HandlesTo(const xmlXPathObject& found, std::string_view xpath) {
  std::vector<Node> nodes;
  const xmlNodeSet* const set = found.nodesetval;
  if (set == nullptr) return nodes;
  for (int i = 0; i < set->nodeNr; ++i) {
    xmlNode* const node = set->nodeTab[i];
    if (node->type == XML_NAMESPACE_DECL) {
      return Unusable(xpath, "it selects namespaces", kTypeMismatch);
    }
    if (IsShown(node)) nodes.push_back(NodeAccess::Handle(node));
  }
  return nodes;
}

}  // namespace

Result<std::vector<Node>> LibrarySelectAll(std::string_view xpath, Node from) {
  Evaluation evaluation(xpath, NodeAccess::Raw(from));
  Result<LibraryPtr<xmlXPathObject>> found = evaluation.Run();
  if (!found.ok()) return found.error();
  xmlXPathNodeSetSort(found.value()->nodesetval);
  return HandlesTo(*found.value(), xpath);
}

Result<Node> LibrarySelectFirst(std::string_view xpath, Node from) {
  // All of them: what the evaluator calls the first is not always the first of the document.
  const Result<std::vector<Node>> nodes = LibrarySelectAll(xpath, from);
  if (!nodes.ok()) return nodes.error();
  return nodes.value().empty() ? Node() : nodes.value().front();
}

}  // namespace zent::xml
