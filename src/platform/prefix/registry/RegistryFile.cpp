#include "platform/prefix/registry/RegistryFile.h"

#include "base/CaseFold.h"
#include "platform/prefix/registry/RegistryData.h"
#include "platform/prefix/registry/RegistryEscapes.h"
#include "platform/prefix/registry/RegistryLines.h"

namespace zent {

Result<RegistryFile> RegistryFile::Parse(std::string text, const std::string& name) {
  Result<RegistryLayout> layout = ReadRegistryLayout(text, name);
  if (!layout.ok()) return layout.error();
  return RegistryFile(std::move(text), std::move(layout.value()));
}

std::string RegistryFile::RootName() const {
  constexpr std::string_view kRootRemark = ";; All keys relative to ";
  const std::string_view remark = ReadLine(text_, ReadLine(text_, 0).next).text;
  if (remark.substr(0, kRootRemark.size()) != kRootRemark) return {};
  const std::string_view path = remark.substr(kRootRemark.size());
  std::string_view last;
  std::size_t at = 0;
  while (const std::optional<std::string_view> name = NextKeyName(path, at)) last = *name;
  return Unescape(last);
}

std::optional<KeyId> RegistryFile::FindChild(KeyId parent, std::string_view name) const {
  return layout_.index.FindChild(parent, name);
}

std::optional<KeyId> RegistryFile::FindKey(const KeyPath& path) const {
  KeyId key = kRootKey;
  for (const std::string& name : path) {
    const std::optional<KeyId> child = FindChild(key, name);
    if (!child) return std::nullopt;
    key = *child;
  }
  return key;
}

std::optional<RegistryValue> RegistryFile::FindValue(KeyId key, std::string_view name) const {
  std::optional<PlacedValue> found = PlaceOf(key, name);
  if (!found) return std::nullopt;
  return std::move(found->value);
}

std::optional<RegistryFile::PlacedValue> RegistryFile::PlaceOf(KeyId key,
                                                               std::string_view name) const {
  const RegistryIndex& index = layout_.index;
  const std::string folded = FoldName(name);
  std::optional<PlacedValue> found;
  for (SectionId id = index.FirstSection(key); id != kNoId; id = index.section(id).next) {
    const std::size_t end = index.section(id).end;
    for (std::size_t at = HeadEnd(id); at < end;) {
      const std::optional<ValueLines> lines = ReadValueLines(text_, at);
      if (lines && FoldName(lines->name) == folded) {
        std::optional<RegistryValue> value = ParseValueData(lines->data);
        if (value) found = PlacedValue{id, at, lines->next, std::move(*value)};
      }
      at = lines ? lines->next : ReadLine(text_, at).next;
    }
  }
  return found;
}

std::size_t RegistryFile::HeadEnd(SectionId section) const {
  const RegistrySection& lines = layout_.index.section(section);
  std::size_t at = ReadLine(text_, lines.begin).next;
  while (at < lines.end && text_[at] == '#') at = ReadLine(text_, at).next;
  return at;
}

std::string RegistryFile::TextAfter(const RegistryEdit& edit) const {
  std::string after;
  after.reserve(text_.size() + edit.text.size());
  after.append(text_, 0, edit.from).append(edit.text).append(text_, edit.to);
  return after;
}

void RegistryFile::Apply(const RegistryEdit& edit, std::string text_after) {
  RegistryIndex& index = layout_.index;
  if (text_.back() != '\n') {
    // The last line got the break that it lacked, which moves its section's end.
    text_ = std::move(text_after);
    Result<RegistryLayout> layout = ReadRegistryLayout(text_, {});
    if (layout.ok()) layout_ = std::move(layout.value());
    return;
  }
  const auto grown = static_cast<std::ptrdiff_t>(text_after.size() - text_.size());
  text_ = std::move(text_after);
  if (edit.section == kNoId) {
    index.Shift(edit.from, grown);
    const std::size_t begin = edit.from + edit.section_begin;
    const std::optional<KeyLine> line = ParseKeyLine(ReadLine(text_, begin).text);
    if (line)
      index.SetEnd(index.AddSection(text_, begin, line->path), edit.from + edit.section_end);
  } else {
    const std::size_t end = index.section(edit.section).end;
    index.Shift(edit.from + 1, grown);
    index.SetEnd(edit.section, end + static_cast<std::size_t>(grown));
  }
}

}  // namespace zent
