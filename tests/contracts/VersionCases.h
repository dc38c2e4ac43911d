#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zent::testing {

/// One file and what a system answers to the questions after its version.
struct VersionCase {
  const char* what = "";
  std::string name = {};
  std::optional<std::string> file = {};  ///< its bytes; nothing when there is no file of that name
  bool opens = true;                     ///< it has version information
  /// The bytes of the fixed part; nothing when there is none.
  std::optional<std::string> fixed = {};
  std::optional<std::string> translation = {};  ///< bytes; nothing when there is none
  /// Of the eight texts, under the table that the first translation names, those that are found.
  std::vector<std::pair<std::string, std::string>> texts = {};
  /// The answer is settled for our own reader, or known to differ among systems.
  bool own = false;
};

/// All of them, each with a name of its own.
std::vector<VersionCase> AllVersionCases();

/// The name of the table that a translation of at least 4 bytes stands for: "040904B0".
std::string TableOfTranslation(const std::string& translation);

/// The eight keys of a record, in its order.
inline constexpr const char* kRecordKeys[] = {"CompanyName",  "FileDescription", "FileVersion",
                                              "InternalName", "LegalCopyright",  "OriginalFileName",
                                              "ProductName",  "ProductVersion"};

}  // namespace zent::testing
