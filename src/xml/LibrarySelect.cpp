#include "xml/LibrarySelect.h"

#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "xml/DocumentState.h"
#include "xml/LibraryErrors.h"
#include "xml/Tree.h"
#include "xml/XPathCost.h"
#include "xml/XPathText.h"

namespace zent::xml {
namespace {

// Steps of the evaluator that one selection may take: a few looks at every node, and some more for
// small documents.
constexpr std::uint64_t kStepsForAny = 1'000'000;
constexpr std::uint64_t kStepsForEachNode = 40;

/// Those of an expression of which a step may look at all of the document once more: as many as
/// take some seconds. A node costs as much as some bytes of text.
std::uint64_t StepsOfSteep(const DocumentAccess::State& state) {
  constexpr std::uint64_t kLooks = 4'000'000'000;
  constexpr std::uint64_t kBytesForOneLook = 16;
  constexpr std::uint64_t kFewest = 1000;
  return std::max(kFewest, kLooks / (1 + state.node_count + state.byte_count / kBytesForOneLook));
}

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
    if (!state_.xpath) state_.xpath.reset(OrNoMemory(xmlXPathNewContext(state_.document.get())));
    xmlXPathContext& context = *state_.xpath;
    context.node = from_;
    context.opCount = 0;
    context.opLimit = static_cast<unsigned long>(MostSteps());
    errors_.Clear();
  }

  std::uint64_t MostSteps() const {
    const std::uint64_t steps = kStepsForAny + kStepsForEachNode * state_.node_count;
    const std::uint64_t fewer = StepsOfSteep(state_);
    return fewer < steps && IsSteepHere() ? fewer : steps;
  }

  /// IsSteep, but for a path that goes on so from few nodes: from one to what is below it at any
  /// depth, or from some to their parents.
  bool IsSteepHere() const {
    constexpr int kFewNodes = 1000;
    if (!IsSteep(xpath_)) return false;
    const std::optional<SteepStep> step = FindSteepStep(xpath_);
    if (!step || IsSteep(step->before) || IsSteep("." + std::string(step->rest))) return true;
    const Result<LibraryPtr<xmlXPathObject>> found = Evaluation(step->before, from_).Run();
    const xmlNodeSet* const set = found.ok() ? found.value()->nodesetval : nullptr;
    return !found.ok() || (set != nullptr && set->nodeNr > (step->to_parent ? kFewNodes : 1));
  }

  RuntimeError Failure() const {
    if (HasTakenTooManySteps()) {
      return Unusable(xpath_, "it costs too much in a document of this size");
    }
    if (!errors_.first()) return Unusable(xpath_, "it is not valid");
    constexpr int kTypeFault = XML_XPATH_INVALID_TYPE;
    if (errors_.first()->code == kTypeFault) return NoNodes();
    return Unusable(xpath_, errors_.first()->reason);
  }

  /// Some evaluations end there without an error that is handed over.
  bool HasTakenTooManySteps() const {
    constexpr int kTooManySteps = int{XML_XPATH_EXPRESSION_OK} + int{XPATH_OP_LIMIT_EXCEEDED};
    if (errors_.first()) return errors_.first()->code == kTooManySteps;
    return state_.xpath->opCount >= state_.xpath->opLimit;
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
