#include "jet/tools/DatabaseFacts.h"

namespace zent::jet {

Result<FileHeader> HeaderOf(Pager& pager) {
  const Result<PageView> page = pager.Read(0);
  if (!page.ok()) return page.error();
  return ParseFileHeader(page.value().bytes());
}

Result<PropertyBlob> DocumentProperties(Catalog& catalog, ObjectType type, std::string_view name) {
  const Result<std::optional<CatalogObject>> object = catalog.Find(type, name);
  if (!object.ok()) return object.error();
  if (!object.value()) return PropertyBlob();
  return catalog.Properties(*object.value());
}

std::string FormatName(JetVersion version, const PropertyBlob& database_properties) {
  if (version == JetVersion::Jet3) return "V1997";
  const PropertySet* const set = database_properties.Find("");
  const Property* const made = set == nullptr ? nullptr : set->Find("AccessVersion");
  if (made == nullptr) return "GENERIC_JET4";
  const Value value = PropertyValue(version, *made);
  const auto* const text = std::get_if<Text>(&value);
  return text != nullptr && text->starts_with("09") ? "V2003" : "V2000";
}

}  // namespace zent::jet
