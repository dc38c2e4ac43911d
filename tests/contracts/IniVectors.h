#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace zent::testing {

/// One call on a settings file and what it gives. All texts are bytes in ANSI.
struct IniCall {
  bool is_write = false;
  std::optional<std::string> section;
  std::optional<std::string> key;
  std::optional<std::string> value;  ///< of a read the default
  std::size_t buffer_size = 0;       ///< of a read
  /// The text read, or the bytes of the file after the write; nothing for no file.
  std::optional<std::string> result;
  std::string line;  ///< the row itself, for messages
};

struct IniCase {
  std::string name;
  std::optional<std::string> file;  ///< its bytes; nothing when there is no file
  bool own = false;                 ///< settled for our own adapter, not expected of a system's
  std::vector<IniCall> calls;
};

/// The cases of a file in tests/data/ini, whose head describes the form. A fault of the form fails
/// the running test.
std::vector<IniCase> LoadIniCases(const std::filesystem::path& path);

}  // namespace zent::testing
