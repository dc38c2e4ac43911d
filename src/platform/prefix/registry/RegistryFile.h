#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/Status.h"
#include "platform/Registry.h"
#include "platform/prefix/registry/KeyPath.h"
#include "platform/prefix/registry/RegistryLayout.h"

namespace zent {

/// A change of one place of a registry file: the bytes from `from` to `to` become `text`.
struct RegistryEdit {
  std::size_t from = 0;
  std::size_t to = 0;
  std::string text;
  SectionId section = kNoId;      ///< the section that changes; kNoId when `text` is a new one
  std::size_t section_begin = 0;  ///< where in `text` the new section's key line begins
  std::size_t section_end = 0;    ///< where in `text` its last line ends

  /// True when there is nothing to change.
  bool empty() const { return from == to && text.empty(); }
};

/// The text of one registry file ("WINE REGISTRY Version 2") with an index of its keys. The text is
/// kept as it was read: an edit replaces the lines it is about, and no other byte.
///
/// Sections may stand in any order, one key may have several, and a value that comes twice has the
/// data that come last. Lines that make no sense are kept and passed over.
///
/// An edit is made, stored by the caller as TextAfter says, and applied when it is stored: what
/// failed to be stored leaves the file as it was.
class RegistryFile {
 public:
  /// Takes over `text`. What is refused, and how, says ReadRegistryLayout.
  static Result<RegistryFile> Parse(std::string text, const std::string& name);

  const std::string& text() const { return text_; }
  /// The last name of the path in the second line, for a user's file the user's identifier
  /// "S-1-5-21-0-0-0-1000"; empty without such a line.
  std::string RootName() const;

  /// A key that has a section of its own or exists through its subkeys; in any case.
  std::optional<KeyId> FindKey(const KeyPath& path) const;
  std::optional<KeyId> FindChild(KeyId parent, std::string_view name) const;
  bool IsLink(KeyId key) const { return layout_.index.IsLink(key); }
  /// The value `name` (empty: the default value); nothing when no line gives it.
  std::optional<RegistryValue> FindValue(KeyId key, std::string_view name) const;

  /// Stores `text` as a REG_SZ value, making the key when it is missing, and sets the times of the
  /// key's section to `now` (100 ns since 1601). Empty when the value has that text already.
  RegistryEdit EditText(const KeyPath& path, std::string_view name, std::string_view text,
                        std::uint64_t now) const;
  /// Makes a key without values; empty when it exists.
  RegistryEdit EditNewKey(const KeyPath& path, std::uint64_t now) const;

  std::string TextAfter(const RegistryEdit& edit) const;
  /// `text_after` is what TextAfter gave for the edit; the edit is not empty.
  void Apply(const RegistryEdit& edit, std::string text_after);

 private:
  /// A value's place in the file.
  struct PlacedValue {
    SectionId section = kNoId;
    std::size_t begin = 0;
    std::size_t end = 0;
    RegistryValue value;
  };

  RegistryFile(std::string text, RegistryLayout layout)
      : text_(std::move(text)), layout_(std::move(layout)) {}

  std::optional<PlacedValue> PlaceOf(KeyId key, std::string_view name) const;
  std::size_t PlaceForValue(SectionId section, std::string_view name) const;
  std::size_t HeadEnd(SectionId section) const;
  std::string HeadAt(SectionId section, std::uint64_t now) const;
  std::string EscapedPath(const KeyPath& path) const;
  std::string BreakBefore(std::size_t at) const;
  RegistryEdit EditNewSection(const KeyPath& path, const std::string& value_lines,
                              std::uint64_t now) const;

  std::string text_;
  RegistryLayout layout_;
};

}  // namespace zent
