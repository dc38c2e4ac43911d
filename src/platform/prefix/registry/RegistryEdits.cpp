#include <fmt/format.h>

#include <algorithm>

#include "platform/prefix/registry/RegistryData.h"
#include "platform/prefix/registry/RegistryEscapes.h"
#include "platform/prefix/registry/RegistryFile.h"
#include "platform/prefix/registry/RegistryLines.h"
#include "platform/prefix/registry/RegistryOrder.h"

namespace zent {
namespace {

constexpr std::string_view kTimeMark = "#time=";

/// Seconds since 1970 of a time in 100 ns since 1601.
std::uint64_t UnixSeconds(std::uint64_t file_time) {
  constexpr std::uint64_t kTicksPerSecond = 10'000'000;
  constexpr std::uint64_t kSecondsTo1970 = 11'644'473'600;
  const std::uint64_t seconds = file_time / kTicksPerSecond;
  return seconds < kSecondsTo1970 ? 0 : seconds - kSecondsTo1970;
}

bool IsTimeLine(std::string_view line) {
  constexpr std::string_view kHexDigits = "0123456789abcdefABCDEF";
  return line.size() > kTimeMark.size() && line.substr(0, kTimeMark.size()) == kTimeMark &&
         line.find_first_not_of(kHexDigits, kTimeMark.size()) == std::string_view::npos;
}

/// A line above the values of a section, with `now` in place of the time that it has: behind the
/// bracket of a key line in seconds, in a line of its own in full.
std::string HeadLineAt(std::string_view line, std::uint64_t now) {
  if (IsTimeLine(line)) return fmt::format("{}{:x}", kTimeMark, now);
  const std::optional<KeyLine> key = ParseKeyLine(line);
  if (!key) return std::string(line);
  const std::size_t begin = line.find_first_not_of(" \t", key->behind);
  const std::size_t end = std::min(line.find_first_not_of("0123456789", begin), line.size());
  if (begin >= end) return std::string(line);
  return fmt::format("{}{}{}", line.substr(0, begin), UnixSeconds(now), line.substr(end));
}

}  // namespace

RegistryEdit RegistryFile::EditText(const KeyPath& path, std::string_view name,
                                    std::string_view text, std::uint64_t now) const {
  const RegistryValue value{kRegSz, std::string(text) + '\0'};
  const std::string lines = FormatValueLines(name, value, layout_.line_break);
  const std::optional<KeyId> key = FindKey(path);
  const SectionId last = key ? layout_.index.LastSection(*key) : kNoId;
  if (last == kNoId) return EditNewSection(path, lines, now);

  RegistryEdit edit;
  std::size_t kept_end = 0;
  if (const std::optional<PlacedValue> old = PlaceOf(*key, name)) {
    if (old->value.type == value.type && old->value.data == value.data) return {};
    edit.section = old->section;
    kept_end = old->begin;
    edit.to = old->end;
  } else {
    edit.section = last;
    kept_end = PlaceForValue(last, name);
    edit.to = kept_end;
  }
  const std::size_t head_end = HeadEnd(edit.section);
  edit.from = layout_.index.section(edit.section).begin;
  edit.text = HeadAt(edit.section, now) + text_.substr(head_end, kept_end - head_end) +
              BreakBefore(kept_end) + lines;
  return edit;
}

RegistryEdit RegistryFile::EditNewKey(const KeyPath& path, std::uint64_t now) const {
  if (FindKey(path)) return {};
  return EditNewSection(path, {}, now);
}

std::size_t RegistryFile::PlaceForValue(SectionId section, std::string_view name) const {
  // Behind the last value before the first that comes later: what stands above a value stays there.
  const std::size_t end = layout_.index.section(section).end;
  std::size_t place = HeadEnd(section);
  for (std::size_t at = place; at < end;) {
    const std::optional<ValueLines> lines = ReadValueLines(text_, at);
    if (lines && ComesBefore(name, lines->name)) return place;
    at = lines ? lines->next : ReadLine(text_, at).next;
    if (lines) place = at;
  }
  return place;
}

std::string RegistryFile::HeadAt(SectionId section, std::uint64_t now) const {
  // A key without times has that of the reading, so that none need be put in.
  const std::size_t end = HeadEnd(section);
  std::size_t at = layout_.index.section(section).begin;
  std::string head;
  while (at < end) {
    const TextLine line = ReadLine(text_, at);
    const std::size_t break_at = at + line.text.size();
    head += HeadLineAt(line.text, now);
    head.append(text_, break_at, line.next - break_at);
    at = line.next;
  }
  return head;
}

RegistryEdit RegistryFile::EditNewSection(const KeyPath& path, const std::string& value_lines,
                                          std::uint64_t now) const {
  const std::string& line_break = layout_.line_break;
  const SectionId before = layout_.index.SectionBefore(text_, path);
  RegistryEdit edit;
  edit.from = before == kNoId ? layout_.head_end : layout_.index.section(before).end;
  edit.to = edit.from;
  edit.text = BreakBefore(edit.from) + line_break;
  edit.section_begin = edit.text.size();
  edit.text += fmt::format("[{}] {}{}{}{:x}{}{}", EscapedPath(path), UnixSeconds(now), line_break,
                           kTimeMark, now, line_break, value_lines);
  edit.section_end = edit.text.size();
  const bool next_is_key = edit.from < text_.size() && text_[edit.from] == '[';
  if (next_is_key) edit.text += line_break;
  return edit;
}

std::string RegistryFile::EscapedPath(const KeyPath& path) const {
  std::string escaped;
  std::optional<KeyId> key = kRootKey;
  for (const std::string& name : path) {
    if (key) key = FindChild(*key, name);
    if (!escaped.empty()) escaped += "\\\\";
    escaped += key ? std::string(layout_.index.NameOf(text_, *key)) : EscapeKeyName(name);
  }
  return escaped;
}

std::string RegistryFile::BreakBefore(std::size_t at) const {
  return text_[at - 1] == '\n' ? std::string() : layout_.line_break;
}

}  // namespace zent
