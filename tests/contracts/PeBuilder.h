#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Program files with a version resource, made from a description, sound or not.
namespace zent::testing {

/// One block of a version resource. What is not told is made right.
struct VersionNode {
  std::string key = {};
  std::string bytes = {};                  ///< the value of a binary block
  std::optional<std::string> text = {};    ///< the value of a text block, UTF-8
  bool ends_with_nul = true;               ///< of the text
  std::vector<VersionNode> children = {};  ///< the blocks below
  bool is_text = true;                     ///< the type
  std::optional<std::uint16_t> length = {};
  std::optional<std::uint16_t> value_length = {};
  /// Stands here in place of a block.
  std::optional<std::string> raw = {};
};

/// Unicode is the form of 32-bit tools, Ansi that of 16-bit ones.
enum class VersionForm { Unicode, Ansi };

/// The bytes of a version resource.
std::string BuildVersion(const VersionNode& root, VersionForm form = VersionForm::Unicode);

/// The fixed part, for the version 3.6.0.12.
std::string FixedVersion();

// The blocks of a usual resource, from the outside in.

VersionNode Root(std::vector<VersionNode> children);
VersionNode StringFileInfo(std::vector<VersionNode> tables);
VersionNode Table(std::string_view name, std::vector<VersionNode> texts);
VersionNode Text(std::string_view key, std::string_view text);
/// `bytes` of the list of translations: each a language and a code page, little-endian.
VersionNode VarFileInfo(std::string_view bytes);

struct PeResource {
  std::uint32_t type = 16;  ///< 16 is a version
  std::uint32_t number = 1;
  std::uint32_t language = 0x0409;
  std::string data = {};
};

struct PeFile {
  bool is_64_bit = true;
  bool is_library = true;
  std::uint16_t named_entries = 0;  ///< in each table of the resources, before the numbered ones
  std::vector<PeResource> resources = {};
};

/// A program file of that description. Without resources it has no section for them.
std::string BuildPe(const PeFile& file);

/// A 64-bit library with `version` as its only resource.
std::string BuildLibrary(std::string version);

/// A 64-bit library whose text "FileVersion" is `file_version`, with nothing else in its resource.
std::string LibraryOfVersion(std::string_view file_version);

// Where things lie in what BuildPe makes of one resource and no named entries.

inline constexpr std::size_t kPeHeaderAt = 0x40;
inline constexpr std::size_t kOptionalHeaderAt = kPeHeaderAt + 24;
inline constexpr std::size_t kOptionalHeaderSize64 = 240;
inline constexpr std::size_t kSectionTableAt = kOptionalHeaderAt + kOptionalHeaderSize64;
inline constexpr std::size_t kResourceSectionRowAt = kSectionTableAt + 40;
inline constexpr std::size_t kResourcesAt = 0x400;
inline constexpr std::uint32_t kResourcesAddress = 0x2000;
inline constexpr std::size_t kTypeTableAt = kResourcesAt;  // header of 16 bytes, one entry of 8
inline constexpr std::size_t kNumberTableAt = kTypeTableAt + 24;
inline constexpr std::size_t kLanguageTableAt = kNumberTableAt + 24;
inline constexpr std::size_t kLeafAt = kLanguageTableAt + 24;
inline constexpr std::size_t kDataAt = kLeafAt + 16;

/// `bytes` with `patch` written over them from `at` on.
std::string Patched(std::string bytes, std::size_t at, std::string_view patch);
/// Little-endian bytes of a number.
std::string U16(std::uint16_t number);
std::string U32(std::uint32_t number);

}  // namespace zent::testing
