#include "xml/PlainTests.h"

#include <string>

#include "xml/Tree.h"

namespace zent::xml {
namespace {

constexpr std::uint64_t kHashStart = 14695981039346656037U;  // FNV-1a

std::uint64_t HashOnward(std::uint64_t hash, std::string_view text) {
  constexpr std::uint64_t kHashFactor = 1099511628211U;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * kHashFactor;
  return hash;
}

bool IsText(const xmlNode* node) {
  return node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE;
}

/// As the library compares a text that holds entities: it looks at the first two bytes outside of
/// them, and only where these agree at all of it.
bool EqualsWithEntities(const xmlNode* node, std::string_view text) {
  constexpr std::size_t kLookedAt = 2;
  std::string begin;
  for (const xmlNode* part = node->children; part != nullptr && begin.size() < kLookedAt;
       part = NextInTree(part, node)) {
    if (IsText(part)) begin += View(part->content).substr(0, kLookedAt - begin.size());
  }
  return begin == text.substr(0, kLookedAt) && ContentOf(node) == text;
}

bool TextEquals(const xmlNode* node, std::string_view text) {
  std::string_view rest = text;
  for (const xmlNode* part = node->children; part != nullptr; part = NextInTree(part, node)) {
    if (part->type == XML_ENTITY_REF_NODE) return EqualsWithEntities(node, text);
    if (!IsText(part)) continue;
    const std::string_view content = View(part->content);
    if (!rest.starts_with(content)) return false;
    rest.remove_prefix(content.size());
  }
  return rest.empty();
}

}  // namespace

bool IsElementCalled(const xmlNode* node, std::string_view name) {
  if (node->type != XML_ELEMENT_NODE) return false;
  return name.empty() || (node->ns == nullptr && View(node->name) == name);
}

bool IsAttributeCalled(const xmlAttr* attribute, std::string_view name) {
  if (name.empty()) return true;
  const bool plain = attribute->ns == nullptr || attribute->ns->prefix == nullptr;
  return plain && View(attribute->name) == name;
}

bool Passes(const xmlNode* element, const PlainTest& test) {
  bool passes = false;
  ForEachCompared(element, test, [&](const xmlNode* compared) {
    passes = passes || !test.value || TextEquals(compared, *test.value);
  });
  return passes;
}

std::uint64_t HashOfText(std::string_view text) { return HashOnward(kHashStart, text); }

std::uint64_t HashOfText(const xmlNode* node) {
  std::uint64_t hash = kHashStart;
  for (const xmlNode* part = node->children; part != nullptr; part = NextInTree(part, node)) {
    if (part->type == XML_ENTITY_REF_NODE) return HashOfText(ContentOf(node));
    if (IsText(part)) hash = HashOnward(hash, View(part->content));
  }
  return hash;
}

}  // namespace zent::xml
