#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "base/Status.h"
#include "platform/prefix/registry/RegistryIndex.h"

namespace zent {

/// What stands where in a registry file.
struct RegistryLayout {
  RegistryIndex index;
  std::string line_break = "\n";  ///< that of the first line
  std::size_t head_end = 0;       ///< behind the last line before the first section
};

/// Reads through the text of a registry file once. Lines that make no sense are passed over. A
/// first line of another kind, an empty text, and a text that ends within a line or value are
/// kInvalidFileFormat with `name` and the number of the line. A last line without a line break is
/// taken when it cannot be the start of a longer one.
Result<RegistryLayout> ReadRegistryLayout(std::string_view file, const std::string& name);

}  // namespace zent
