#include "xml/PlainWalk.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "xml/PlainTests.h"
#include "xml/Tree.h"

namespace zent::xml {
namespace {

/// What one predicate has seen of the children of one node.
struct Progress {
  std::size_t reached = 0;    ///< nodes that came to it
  xmlNode* latest = nullptr;  ///< the last of them
};

class Walk {
 public:
  Walk(const PlainPath& path, Wanted wanted, ChildIndexes& indexes)
      : path_(path), wanted_(wanted), indexes_(indexes) {}

  std::vector<xmlNode*> From(xmlNode* node) {
    Follow(node, 0);
    return std::move(found_);
  }

 private:
  using Kind = PlainPredicate::Kind;

  bool HasEnough() const { return wanted_ == Wanted::First && !found_.empty(); }

  // Recursion is as deep as the path is long, which its parser limits.
  void Follow(xmlNode* node, std::size_t step_number) {
    if (step_number == path_.steps.size()) return found_.push_back(node);
    const PlainStep& step = path_.steps[step_number];
    if (step.attribute) return TakeAttributes(node, step);
    if (!HasContent(node)) return;
    std::vector<Progress> progress(step.predicates.size());
    const PlainTest* const test = IndexedTest(step);
    std::optional<std::vector<xmlNode*>> known;
    if (test != nullptr) known = indexes_.Find(node, step.name, *test);
    if (known) {
      for (xmlNode* child : *known) Filter(child, step_number, 0, progress);
    } else {
      const std::size_t seen = FilterAll(node, step_number, progress);
      if (test != nullptr) indexes_.Scanned(node, step.name, *test, seen);
    }
    // Which node is the last one is known behind all of them; this may let it reach another last().
    for (std::size_t i = 0; i < progress.size() && !HasEnough(); ++i) {
      if (step.predicates[i].kind != Kind::Last || progress[i].latest == nullptr) continue;
      Filter(progress[i].latest, step_number, i + 1, progress);
    }
  }

  /// The test of the first predicate that an index can answer, or null.
  static const PlainTest* IndexedTest(const PlainStep& step) {
    if (step.name.empty() || step.predicates.empty()) return nullptr;
    const std::vector<PlainTest>& tests = step.predicates.front().tests;
    const auto with_value = [](const PlainTest& test) { return test.value.has_value(); };
    const auto at = std::find_if(tests.begin(), tests.end(), with_value);
    return at == tests.end() ? nullptr : &*at;
  }

  /// Takes all children on, one by one. Returns how many it looked at.
  std::size_t FilterAll(xmlNode* node, std::size_t step_number, std::vector<Progress>& progress) {
    const std::string& name = path_.steps[step_number].name;
    std::size_t seen = 0;
    for (xmlNode* child = node->children; child != nullptr && !HasEnough(); child = child->next) {
      ++seen;
      if (IsElementCalled(child, name)) Filter(child, step_number, 0, progress);
    }
    return seen;
  }

  /// Takes `child` past the predicates from number `first` on, and if they let it on to the rest.
  void Filter(xmlNode* child, std::size_t step_number, std::size_t first,
              std::vector<Progress>& progress) {
    const std::vector<PlainPredicate>& predicates = path_.steps[step_number].predicates;
    for (std::size_t i = first; i < predicates.size(); ++i) {
      ++progress[i].reached;
      progress[i].latest = child;
      if (!LetsOn(predicates[i], child, progress[i])) return;
    }
    Follow(child, step_number + 1);
  }

  static bool LetsOn(const PlainPredicate& predicate, const xmlNode* child,
                     const Progress& progress) {
    if (predicate.kind == Kind::Position) return progress.reached == predicate.position;
    if (predicate.kind == Kind::Last) return false;  // not yet
    return std::all_of(predicate.tests.begin(), predicate.tests.end(),
                       [child](const PlainTest& test) { return Passes(child, test); });
  }

  void TakeAttributes(xmlNode* node, const PlainStep& step) {
    if (node->type != XML_ELEMENT_NODE) return;
    for (xmlAttr* at = node->properties; at != nullptr && !HasEnough(); at = at->next) {
      if (IsAttributeCalled(at, step.name)) found_.push_back(reinterpret_cast<xmlNode*>(at));
    }
  }

  const PlainPath& path_;
  Wanted wanted_;
  ChildIndexes& indexes_;
  std::vector<xmlNode*> found_;
};

}  // namespace

std::vector<xmlNode*> WalkPlainPath(const PlainPath& path, xmlNode* from, Wanted wanted,
                                    ChildIndexes& indexes) {
  xmlNode* const start = path.absolute ? reinterpret_cast<xmlNode*>(from->doc) : from;
  return Walk(path, wanted, indexes).From(start);
}

}  // namespace zent::xml
