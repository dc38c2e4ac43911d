#include "jet/sql/execution/MadeNames.h"

#include <algorithm>

#include "base/CaseFold.h"
#include "base/Utf.h"
#include "jet/catalog/Catalog.h"
#include "jet/format/Layout.h"
#include "jet/format/TextKey.h"

namespace zent::jet {
namespace {

constexpr char16_t kFirstHighSurrogate = 0xD800;
constexpr char16_t kLastHighSurrogate = 0xDBFF;

std::string CutTo(std::string_view name, std::size_t units) {
  std::u16string cut = ToUtf16(name);
  if (cut.size() <= units) return std::string(name);
  cut.resize(units);
  const bool half = cut.back() >= kFirstHighSurrogate && cut.back() <= kLastHighSurrogate;
  if (half) cut.pop_back();
  return FromUtf16(cut);
}

}  // namespace

std::string CutName(std::string_view name) { return CutTo(name, kMaxNameUnits); }

std::string FreeName(std::string_view wanted,
                     const std::function<bool(const std::string& name)>& is_taken) {
  std::string name = CutName(wanted);
  for (int i = 1; is_taken(name); ++i) {
    const std::string number = std::to_string(i);
    name = CutTo(wanted, kMaxNameUnits - number.size()) + number;
  }
  return name;
}

Result<std::string> FreeRelationshipName(Catalog& catalog, const std::string& table,
                                         std::string_view wanted) {
  const Result<std::vector<Relationship>> relationships = catalog.Relationships();
  if (!relationships.ok()) return relationships.error();
  const Result<std::vector<CatalogObject>> objects = catalog.Objects();
  if (!objects.ok()) return objects.error();
  const Result<Table*> opened = catalog.OpenTable(table);
  if (!opened.ok()) return opened.error();
  const auto has = [](const auto& items, const std::string& name) {
    return std::any_of(items.begin(), items.end(), [&](const auto& item) {
      return SameName(item.name, name) || SameKey(item.name, name);
    });
  };
  return FreeName(wanted, [&](const std::string& name) {
    return has(relationships.value(), name) || has(objects.value(), name) ||
           has(opened.value()->definition().logical_indexes, name);
  });
}

}  // namespace zent::jet
