#include "xml/Entities.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>

#include "xml/Tree.h"

namespace zent::xml {
namespace {

/// What the entities of one document cost, each reckoned once.
class EntityCosts {
 public:
  EntityCosts(xmlDoc* document, std::size_t limit) : document_(document), too_much_(limit + 1) {}

  /// Bytes that a reference to the entity stands for; anything above the limit is limit + 1.
  std::size_t Of(const std::string& name) { return Of(name, 0); }

  std::size_t Add(std::size_t a, std::size_t b) const { return std::min(a + b, too_much_); }

 private:
  std::size_t Of(const std::string& name, int depth) {
    constexpr int kMostNested = 64;  // above what the parser takes
    const auto known = costs_.find(name);
    if (known != costs_.end()) return known->second;
    const xmlEntity* const entity = xmlGetDocEntity(document_, XmlText(name));
    if (entity == nullptr || entity->content == nullptr) return 0;
    if (depth > kMostNested) return too_much_;
    costs_[name] = too_much_;  // while it is reckoned: an entity within itself
    const std::size_t cost = OfText(View(entity->content), depth);
    costs_[name] = cost;
    return cost;
  }

  std::size_t OfText(std::string_view text, int depth) {
    std::size_t cost = std::min(text.size(), too_much_);
    for (std::size_t at = text.find('&'); at != std::string_view::npos; at = text.find('&', at)) {
      const std::size_t end = text.find(';', at);
      if (end == std::string_view::npos) break;
      const std::string_view name = text.substr(at + 1, end - at - 1);
      if (!name.starts_with('#')) cost = Add(cost, Of(std::string(name), depth + 1));
      at = end;
    }
    return cost;
  }

  xmlDoc* document_;
  std::size_t too_much_;
  std::unordered_map<std::string, std::size_t> costs_;
};

}  // namespace

bool ExpandsWithin(xmlDoc* document, std::size_t limit) {
  if (document->intSubset == nullptr) return true;
  EntityCosts costs(document, limit);
  std::size_t sum = 0;
  const auto add = [&costs, &sum](const xmlNode* node) {
    if (node->type == XML_ENTITY_REF_NODE) {
      sum = costs.Add(sum, costs.Of(std::string(View(node->name))));
    }
  };
  for (const xmlNode* node = xmlDocGetRootElement(document); node != nullptr;
       node = NextInTree(node, xmlDocGetRootElement(document))) {
    add(node);
    if (node->type != XML_ELEMENT_NODE) continue;
    for (const xmlAttr* attribute = node->properties; attribute != nullptr;
         attribute = attribute->next) {
      for (const xmlNode* part = attribute->children; part != nullptr; part = part->next) add(part);
    }
  }
  return sum <= limit;
}

const xmlEntity* InternalEntity(const xmlNode* reference) {
  const xmlEntity* const entity = xmlGetDocEntity(reference->doc, reference->name);
  const bool internal = entity != nullptr && (entity->etype == XML_INTERNAL_GENERAL_ENTITY ||
                                              entity->etype == XML_INTERNAL_PREDEFINED_ENTITY);
  return internal ? entity : nullptr;
}

}  // namespace zent::xml
