#include "xml/ChildIndexes.h"

#include <algorithm>

namespace zent::xml {
namespace {

constexpr std::size_t kMostAsked = 16;
constexpr std::size_t kFewChildren = 64;      // an index would not be faster
constexpr std::size_t kScannedBefore = 1024;  // an index costs about as much as a few scans

}  // namespace

ChildIndexes::Asked* ChildIndexes::Known(const xmlNode* parent, std::string_view name,
                                         const PlainTest& test) {
  const auto at = std::find_if(asked_.begin(), asked_.end(), [&](const Asked& asked) {
    return asked.parent == parent && asked.name == name && asked.of_attribute == test.attribute &&
           asked.compared == test.name;
  });
  if (at == asked_.end()) return nullptr;
  std::rotate(asked_.begin(), at, at + 1);
  return &asked_.front();
}

std::optional<std::vector<xmlNode*>> ChildIndexes::Find(xmlNode* parent, std::string_view name,
                                                        const PlainTest& test) {
  Asked* const asked = Known(parent, name, test);
  if (asked == nullptr) return {};
  if (!asked->index) {
    if (asked->scanned < kScannedBefore) return {};
    asked->index.emplace(parent, name, test);
  }
  std::vector<xmlNode*> found = asked->index->Find(test);
  // Of several the first is wanted, or all in order, which the index does not know.
  if (found.size() > 1) return {};
  return found;
}

void ChildIndexes::Scanned(xmlNode* parent, std::string_view name, const PlainTest& test,
                           std::size_t children) {
  if (children < kFewChildren) return;
  if (Asked* const asked = Known(parent, name, test)) {
    asked->scanned += children;
    return;
  }
  if (asked_.size() == kMostAsked) asked_.pop_back();
  asked_.insert(asked_.begin(),
                Asked{parent, std::string(name), test.attribute, test.name, children, {}});
}

void ChildIndexes::Changed(xmlNode* node) {
  if (asked_.empty()) return;
  for (; node != nullptr && node->parent != nullptr; node = node->parent) {
    for (Asked& asked : asked_) {
      if (!asked.index || asked.parent != node->parent) continue;
      asked.index->Changed(node);
      if (!asked.index->IsWorn()) continue;
      asked.index.reset();
      asked.scanned = 0;
    }
  }
}

}  // namespace zent::xml
