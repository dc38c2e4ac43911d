#include "xmlupdate/ExtraFieldsVersion.h"

#include "base/Text.h"
#include "xmlupdate/XmlFiles.h"

namespace zent {
namespace {

constexpr std::string_view kVersionName = "Version";
constexpr std::size_t kPrefixLength = 3;  // characters

}  // namespace

std::string XFieldsVersionElement(std::string_view version) {
  const std::string_view prefix = FirstCharacters(version, kPrefixLength);
  const bool has_prefix = version.substr(prefix.size()).starts_with('-');
  return has_prefix ? std::string(prefix) + std::string(kVersionName) : std::string(kVersionName);
}

bool HasXFieldsVersion(const xml::Document& layout, std::string_view version) {
  const xml::Node element = ChildElement(layout.root(), XFieldsVersionElement(version));
  return element && TrimBlanks(element.Text()) == version;
}

Status StampXFieldsVersion(xml::Document& layout, std::string_view version) {
  const std::string name = XFieldsVersionElement(version);
  const xml::Node present = ChildElement(layout.root(), name);
  if (present) return layout.SetText(present, version);

  const xml::Node plain = ChildElement(layout.root(), kVersionName);
  if (!plain) {
    return StandardError(kObjectNotSet, "there is no Version to put " + name + " before");
  }
  const Result<xml::Node> created = layout.CreateElement(name);
  if (!created.ok()) return created.error();
  Status put = layout.SetText(created.value(), version);
  return put.ok() ? layout.InsertBefore(created.value(), plain) : put;
}

}  // namespace zent
