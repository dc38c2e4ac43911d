#include "platform/prefix/links/PrefixShellLinks.h"

#include "platform/prefix/links/LinkFormat.h"

namespace zent {

Status PrefixShellLinks::Create(std::string_view link_file, const ShellLink& link) {
  const Result<std::uint32_t> attributes = files_.Attributes(link.target);
  const bool is_folder = attributes.ok() && (attributes.value() & kAttributeFolder) != 0;
  const Result<std::string> bytes = FormatShellLink(link, is_folder);
  if (!bytes.ok()) return bytes.error();
  return files_.Write(link_file, bytes.value());
}

}  // namespace zent
