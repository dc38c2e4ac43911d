#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zent::testing {

/// A key of a registry file: what stands below its heading.
struct RegistryKeyText {
  std::string heading;                        ///< the line itself, with the time
  std::vector<std::string> notes;             ///< lines that begin with "#"
  std::map<std::string, std::string> values;  ///< "name" or @ as written, with its data as written
};

/// A registry file of a Wine prefix, read line by line and without the code under test. Paths and
/// value names are as the file writes them, with doubled backslashes.
struct RegistryText {
  std::string head;  ///< what stands before the first key
  std::map<std::string, RegistryKeyText> keys;

  static RegistryText Read(std::string_view text);
  std::string Write() const;
};

/// Lays the keys and values of `machine` over `prefix`. What `sample` has and `machine` lacks is
/// taken off: a machine may be about a value that is missing. Keys that the system makes anew at
/// every start stay as they are.
void LayOver(const RegistryText& sample, const RegistryText& machine, RegistryText& prefix);

/// The values that differ, and the keys without values that are new or gone, one a line, names in
/// lower case: "+ key|name=data", "- key|name=data", "~ key|name=data" with the new data.
std::string RegistryChanges(const RegistryText& before, const RegistryText& after);

}  // namespace zent::testing
