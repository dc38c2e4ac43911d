#pragma once

#include <string>
#include <string_view>

#include "platform/VersionResources.h"

/// The version of a program file, and which of two versions is the older one.
///
/// A version is a text like "3.06.0012". Two are compared by a key: their first three numbers, each
/// written with at least six digits, one behind the other. A fourth number and any later one do not
/// count, a number that is missing counts 0, and so does a part that begins with no number;
/// "12beta" counts 12.
namespace zent {

/// What the version resource of a file says, each text at most 255 characters, empty when absent.
struct FileVersionRecord {
  std::string company_name = {};
  std::string file_description = {};
  std::string file_version = {};
  std::string internal_name = {};
  std::string legal_notice = {};
  std::string build_file_name = {};  ///< the name that the file had when it was built
  std::string product_name = {};
  std::string product_version = {};

  bool operator==(const FileVersionRecord&) const = default;
};

/// Fills `record` from the text table that the file's first translation names, and from no other.
/// True when the file has version information with a translation, whether or not that table is
/// there; on false every text is empty. Shows nothing.
bool ReadVersionInfo(const VersionResources& resources, std::string_view path,
                     FileVersionRecord& record);

/// The text "FileVersion" of the file at `path`; empty when it has none. The fixed version numbers
/// beside the texts never count. A blank path is empty without a look at the disk.
std::string GetFileVersionText(const VersionResources& resources, std::string_view path);

/// True when `a` is not above `b`.
bool IsVersionNotNewer(std::string_view a, std::string_view b);

/// True when `a` is below `b`.
bool IsVersionOlder(std::string_view a, std::string_view b);

}  // namespace zent
