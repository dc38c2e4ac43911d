#include <algorithm>
#include <iterator>
#include <utility>

#include "base/Utf.h"
#include "xml/DocumentState.h"
#include "xml/LibrarySelect.h"
#include "xml/PlainPath.h"
#include "xml/PlainWalk.h"
#include "xml/Tree.h"
#include "xml/XPathText.h"

namespace zent::xml {
namespace {

/// Faults that are found by looking at the text.
Status CheckText(std::string_view xpath) {
  if (xpath.size() > kLongestXPath) {
    return Unusable(xpath, "it has more than " + std::to_string(kLongestXPath) + " characters");
  }
  if (!IsUtf8(xpath) || xpath.find('\0') != std::string_view::npos) {
    return Unusable(xpath, "it is no text");
  }
  if (const std::optional<std::string> prefix = FirstPrefix(xpath)) {
    return Unusable(xpath, "the namespace prefix \"" + *prefix + "\" is not declared");
  }
  return {};
}

/// What `path` leads to from `from`.
std::vector<Node> Walked(const PlainPath& path, Node from, Wanted wanted) {
  xmlNode* const start = NodeAccess::Raw(from);
  ChildIndexes& indexes = DocumentAccess::Of(start->doc).indexes;
  const std::vector<xmlNode*> found = WalkPlainPath(path, start, wanted, indexes);
  std::vector<Node> nodes;
  nodes.reserve(found.size());
  std::transform(found.begin(), found.end(), std::back_inserter(nodes), NodeAccess::Handle);
  return nodes;
}

}  // namespace

Result<Node> Node::SelectFirst(std::string_view xpath) const {
  if (node_ == nullptr) return StandardError(kObjectNotSet);
  if (Status checked = CheckText(xpath); !checked.ok()) return checked.error();
  const std::optional<PlainPath> plain = ParsePlainPath(xpath);
  if (!plain) return LibrarySelectFirst(xpath, *this);
  const std::vector<Node> nodes = Walked(*plain, *this, Wanted::First);
  return nodes.empty() ? Node() : nodes.front();
}

Result<std::vector<Node>> Node::SelectAll(std::string_view xpath) const {
  if (node_ == nullptr) return StandardError(kObjectNotSet);
  if (Status checked = CheckText(xpath); !checked.ok()) return checked.error();
  const std::optional<PlainPath> plain = ParsePlainPath(xpath);
  if (!plain) return LibrarySelectAll(xpath, *this);
  return Walked(*plain, *this, Wanted::All);
}

}  // namespace zent::xml
