#include "contracts/PeBuilder.h"

#include <map>

#include "base/CodePage.h"
#include "base/Utf.h"

namespace zent::testing {
namespace {

constexpr std::uint32_t kIsTable = 0x80000000;
constexpr std::uint32_t kFileAlignment = 0x200;
constexpr std::uint32_t kSectionAlignment = 0x1000;
constexpr std::uint32_t kCodeAddress = 0x1000;

void PadTo(std::string& bytes, std::size_t alignment) {
  bytes.append((alignment - bytes.size() % alignment) % alignment, '\0');
}

std::string Encoded(std::string_view text, VersionForm form) {
  if (form == VersionForm::Ansi) return ToAnsi(text);
  std::string bytes;
  for (const char16_t unit : ToUtf16(text)) bytes += U16(unit);
  return bytes;
}

std::string Value(const VersionNode& node, VersionForm form) {
  if (!node.text) return node.bytes;
  std::string value = Encoded(*node.text, form);
  if (node.ends_with_nul) value += Encoded(std::string_view("\0", 1), form);
  return value;
}

/// Appends a block that begins at a multiple of 4.
void AppendBlock(const VersionNode& node, VersionForm form, std::string& bytes) {
  if (node.raw) {
    bytes += *node.raw;
    return;
  }
  const bool is_unicode = form == VersionForm::Unicode;
  const std::string value = Value(node, form);
  const bool counts_characters = is_unicode && node.is_text;
  const std::size_t value_length = counts_characters ? value.size() / 2 : value.size();

  const std::size_t start = bytes.size();
  bytes += U16(0);  // the length, when it is known
  bytes += U16(node.value_length.value_or(static_cast<std::uint16_t>(value_length)));
  if (is_unicode) bytes += U16(node.is_text ? 1 : 0);
  bytes += Encoded(node.key + '\0', form);
  PadTo(bytes, 4);
  bytes += value;
  for (const VersionNode& child : node.children) {
    PadTo(bytes, 4);
    AppendBlock(child, form, bytes);
  }
  const auto length = static_cast<std::uint16_t>(bytes.size() - start);
  bytes.replace(start, 2, U16(node.length.value_or(length)));
}

using Languages = std::map<std::uint32_t, std::string>;
using Numbers = std::map<std::uint32_t, Languages>;
using Types = std::map<std::uint32_t, Numbers>;

/// Writes the tables of the resources one behind the other, depth first, then the data.
class ResourceTree {
 public:
  explicit ResourceTree(std::uint16_t named_entries) : named_entries_(named_entries) {}

  std::string Build(const Types& types) {
    AppendTable(types);
    for (const auto& [leaf, data] : leaves_) {
      PadTo(bytes_, 8);
      const auto address = static_cast<std::uint32_t>(kResourcesAddress + bytes_.size());
      bytes_.replace(leaf, 4, U32(address));
      bytes_ += data;
    }
    return bytes_;
  }

 private:
  template <typename Level>
  void AppendTable(const std::map<std::uint32_t, Level>& entries) {
    bytes_ += std::string(12, '\0') + U16(named_entries_);
    bytes_ += U16(static_cast<std::uint16_t>(entries.size()));
    for (std::uint32_t name = 0; name < named_entries_; ++name) {
      bytes_ += U32(kIsTable | name) + U32(kIsTable | 0x7FFFFFFF);  // both lead nowhere
    }
    const std::size_t rows = bytes_.size();
    for (const auto& [number, below] : entries) bytes_ += U32(number) + U32(0);
    std::size_t row = rows;
    for (const auto& [number, below] : entries) {
      bytes_.replace(row + 4, 4, U32(Append(below)));
      row += 8;
    }
  }

  /// What an entry points to, appended; its offset as the entry has it.
  template <typename Level>
  std::uint32_t Append(const std::map<std::uint32_t, Level>& table) {
    const auto offset = static_cast<std::uint32_t>(bytes_.size());
    AppendTable(table);
    return kIsTable | offset;
  }
  std::uint32_t Append(const std::string& data) {
    const auto offset = static_cast<std::uint32_t>(bytes_.size());
    leaves_.emplace_back(offset, data);
    bytes_ += U32(0) + U32(static_cast<std::uint32_t>(data.size())) + U32(0) + U32(0);
    return offset;
  }

  std::uint16_t named_entries_;
  std::string bytes_;
  std::vector<std::pair<std::size_t, std::string>> leaves_;
};

std::string Resources(const PeFile& file) {
  Types types;
  for (const PeResource& resource : file.resources) {
    types[resource.type][resource.number][resource.language] = resource.data;
  }
  return ResourceTree(file.named_entries).Build(types);
}

std::uint32_t RoundedUp(std::size_t size, std::size_t alignment) {
  return static_cast<std::uint32_t>((size + alignment - 1) / alignment * alignment);
}

std::string SectionRow(std::string name, std::size_t size, std::uint32_t address,
                       std::size_t offset, std::uint32_t rights) {
  name.resize(8, '\0');
  return name + U32(static_cast<std::uint32_t>(size)) + U32(address) +
         U32(RoundedUp(size, kFileAlignment)) + U32(static_cast<std::uint32_t>(offset)) +
         std::string(12, '\0') + U32(rights);
}

/// What a system wants before it takes a file for a program, and the directory of resources.
std::string OptionalHeader(const PeFile& file, std::size_t resources_size) {
  const std::string base =
      file.is_64_bit ? U32(0x10000000) + U32(0) : U32(kResourcesAddress) + U32(0x10000000);
  const std::uint32_t image_size = kResourcesAddress + RoundedUp(resources_size, kSectionAlignment);

  std::string header = U16(file.is_64_bit ? 0x20B : 0x10B);
  header.resize(24, '\0');
  header += base + U32(kSectionAlignment) + U32(kFileAlignment);
  header += U32(4) + U32(0) + U32(4) + U32(0);               // versions of system and subsystem
  header += U32(image_size) + U32(kFileAlignment) + U32(0);  // image, headers, checksum
  header += U16(2) + U16(0);                                 // a program with windows
  header.resize((file.is_64_bit ? 112 : 96) - 4, '\0');
  header += U32(16);  // directories
  header.append(16, '\0');
  header += U32(resources_size == 0 ? 0 : kResourcesAddress);
  header += U32(static_cast<std::uint32_t>(resources_size));
  constexpr std::size_t kOtherDirectories = 104;  // bytes
  header.append(kOtherDirectories, '\0');
  return header;
}

}  // namespace

std::string U16(std::uint16_t number) {
  return {static_cast<char>(number & 0xFFU), static_cast<char>(number >> 8U)};
}

std::string U32(std::uint32_t number) {
  return U16(static_cast<std::uint16_t>(number)) + U16(static_cast<std::uint16_t>(number >> 16U));
}

std::string Patched(std::string bytes, std::size_t at, std::string_view patch) {
  return bytes.replace(at, patch.size(), patch);
}

std::string BuildVersion(const VersionNode& root, VersionForm form) {
  std::string bytes;
  AppendBlock(root, form, bytes);
  return bytes;
}

std::string FixedVersion() {
  std::string fixed = U32(0xFEEF04BD) + U32(0x00010000);  // signature, version of the form
  for (int version = 0; version < 2; ++version) {         // of the file, of the product
    fixed += U32(0x00030006) + U32(0x0000000C);
  }
  return fixed + U32(0x3F) + U32(0) + U32(0x00040004) + U32(2) + std::string(12, '\0');
}

VersionNode Root(std::vector<VersionNode> children) {
  return {.key = "VS_VERSION_INFO",
          .bytes = FixedVersion(),
          .children = std::move(children),
          .is_text = false};
}

VersionNode StringFileInfo(std::vector<VersionNode> tables) {
  return {.key = "StringFileInfo", .children = std::move(tables)};
}

VersionNode Table(std::string_view name, std::vector<VersionNode> texts) {
  return {.key = std::string(name), .children = std::move(texts)};
}

VersionNode Text(std::string_view key, std::string_view text) {
  return {.key = std::string(key), .text = std::string(text)};
}

VersionNode VarFileInfo(std::string_view bytes) {
  return {.key = "VarFileInfo",
          .children = {{.key = "Translation", .bytes = std::string(bytes), .is_text = false}}};
}

std::string BuildPe(const PeFile& file) {
  std::string resources = file.resources.empty() ? std::string() : Resources(file);
  const std::string optional_header = OptionalHeader(file, resources.size());

  std::string bytes = "MZ" + std::string(0x3A, '\0') + U32(kPeHeaderAt);
  bytes += std::string("PE\0\0", 4) + U16(file.is_64_bit ? 0x8664 : 0x014C);
  bytes += U16(resources.empty() ? 1 : 2) + std::string(12, '\0');
  bytes += U16(static_cast<std::uint16_t>(optional_header.size()));
  bytes += U16(file.is_library ? 0x2022 : 0x0022);
  bytes += optional_header;
  bytes += SectionRow(".text", 1, kCodeAddress, kFileAlignment, 0x60000020);
  if (!resources.empty()) {
    bytes += SectionRow(".rsrc", resources.size(), kResourcesAddress, kResourcesAt, 0x40000040);
  }
  PadTo(bytes, kFileAlignment);
  bytes += '\xC3';
  PadTo(bytes, kFileAlignment);
  PadTo(resources, kFileAlignment);
  return bytes + resources;
}

std::string BuildLibrary(std::string version) {
  return BuildPe({.resources = {{.data = std::move(version)}}});
}

std::string LibraryOfVersion(std::string_view file_version) {
  return BuildLibrary(
      BuildVersion(Root({StringFileInfo({Table("040904B0", {Text("FileVersion", file_version)})}),
                         VarFileInfo("\x09\x04\xB0\x04")})));
}

}  // namespace zent::testing
