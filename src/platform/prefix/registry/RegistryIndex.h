#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/prefix/registry/KeyPath.h"

namespace zent {

/// Number of a key in the index; a parent's is lower than its children's.
using KeyId = std::uint32_t;
/// Number of a section in the index, in the order of entering.
using SectionId = std::uint32_t;

inline constexpr KeyId kRootKey = 0;
inline constexpr std::uint32_t kNoId = std::numeric_limits<std::uint32_t>::max();

/// The lines of one key: from its key line to behind the last value line.
struct RegistrySection {
  std::size_t begin = 0;
  std::size_t end = 0;
  SectionId next = kNoId;  ///< the next section of the same key
};

/// Where the keys stand in a registry file: the tree of keys, and the sections of each. It holds
/// offsets and never the text itself, which every routine that reads names is given. Its size grows
/// with the number of names in the file, not with the length of the paths.
class RegistryIndex {
 public:
  RegistryIndex() : keys_(1) {}

  /// Enters a section that begins at `begin`, with the keys of its escaped path.
  SectionId AddSection(std::string_view file, std::size_t begin, std::string_view path);
  void SetEnd(SectionId section, std::size_t end) { sections_[section].end = end; }
  /// Notes that the key of the section is a symbolic link.
  void MarkLink(SectionId section) { keys_[keys_of_sections_[section]].is_link = true; }

  /// The key `name` right below `parent`, in any case.
  std::optional<KeyId> FindChild(KeyId parent, std::string_view name) const;
  /// The escaped name of a key, spelled as where the file names it first.
  std::string_view NameOf(std::string_view file, KeyId key) const;
  bool IsLink(KeyId key) const { return keys_[key].is_link; }
  /// The first and the last section of a key that was entered; kNoId for a key without its own.
  SectionId FirstSection(KeyId key) const { return keys_[key].first_section; }
  SectionId LastSection(KeyId key) const { return keys_[key].last_section; }
  const RegistrySection& section(SectionId section) const { return sections_[section]; }

  /// The section behind which a new one for `path` has its sorted place; kNoId for the place before
  /// all sections.
  SectionId SectionBefore(std::string_view file, const KeyPath& path) const;

  /// Moves the sections that begin at or behind `from` by `by` bytes.
  void Shift(std::size_t from, std::ptrdiff_t by);

 private:
  /// The name stands in a key line: `name_at` bytes behind the start of `named_in`.
  struct Key {
    KeyId parent = kRootKey;
    SectionId named_in = kNoId;
    std::uint32_t name_at = 0;
    std::uint32_t name_size = 0;
    SectionId first_section = kNoId;
    SectionId last_section = kNoId;
    bool is_link = false;
  };
  /// A key of the path entered last: neighbours in a file share most of their paths.
  struct Step {
    std::string name;  ///< escaped
    KeyId key = kRootKey;
  };

  KeyId Enter(KeyId parent, std::string_view name, SectionId section, std::size_t name_at);
  std::vector<bool> KeysBehind(std::string_view file, const KeyPath& path) const;

  std::vector<Key> keys_;
  std::vector<RegistrySection> sections_;
  std::vector<KeyId> keys_of_sections_;
  std::unordered_map<std::string, KeyId> children_;  ///< by parent and folded name
  std::vector<Step> last_path_;
};

}  // namespace zent
