#include "platform/prefix/settings/IniEdit.h"

#include <cstddef>
#include <optional>
#include <string>

#include "base/Text.h"
#include "platform/prefix/settings/IniLines.h"
#include "platform/prefix/settings/IniSection.h"

namespace zent {
namespace {

/// The end for a new line at `at`: that of the line before it, of the first line, or CR LF.
std::string LineEndFor(std::string_view text, std::size_t at) {
  const std::size_t last = text.substr(0, at).find_last_of("\r\n");
  if (last != std::string_view::npos) {
    const bool is_pair = last > 0 && text.substr(last - 1, 2) == kLineBreak;
    return std::string(is_pair ? kLineBreak : text.substr(last, 1));
  }
  const std::optional<IniLine> first = IniLines(text).Next();
  return std::string(first && !first->end.empty() ? first->end : kLineBreak);
}

bool EndsLine(char c) { return c == '\r' || c == '\n'; }

/// Puts new lines at `at`, the start of a line or the end of the text: `header`, unless empty, and
/// `entry`.
bool InsertLines(IniText& file, std::size_t at, const std::string& header,
                 const std::string& entry) {
  const std::string_view text = file.text();
  const std::string end = LineEndFor(text, at);
  std::string lines;
  if (at > 0 && !EndsLine(text[at - 1])) lines += end;
  if (!header.empty()) lines += header + end;
  lines += entry + end;
  file.Replace(at, 0, lines);
  return true;
}

/// Where a new section begins: the end of the text, but before a last line that is blank and has no
/// end, so that a control-Z stays last.
std::size_t NewSectionOffset(std::string_view text) {
  const std::size_t last_line = text.find_last_of("\r\n") + 1;
  const bool blank = ClassifyIniLine(text.substr(last_line)).kind == IniLineKind::Blank;
  return blank ? last_line : text.size();
}

}  // namespace

bool SetIniValue(IniText& file, std::string_view section, std::string_view key,
                 std::string_view value) {
  const std::string_view text = file.text();
  const std::string stored = file.Encode(TrimIniBlanksBefore(value));
  const std::string entry = file.Encode(TrimIniBlanksBefore(key)) + "=" + stored;
  IniSection lines(file, section);
  if (!lines.found()) {
    const std::string header = "[" + file.Encode(TrimIniBlanks(section)) + "]";
    return InsertLines(file, NewSectionOffset(text), header, entry);
  }

  const IniName wanted(key, file);
  std::size_t behind = lines.behind_header();
  while (const std::optional<IniLine> line = lines.Next()) {
    if (line->kind == IniLineKind::Key && wanted.Matches(line->name)) {
      // Up to the end of the line: blanks and what stands behind a NUL go with the old value.
      const auto at = static_cast<std::size_t>(line->value.data() - text.data());
      const std::size_t count = OffsetOf(*line, text) + line->content.size() - at;
      if (text.substr(at, count) == stored) return false;
      file.Replace(at, count, stored);
      return true;
    }
    if (line->kind != IniLineKind::Blank) behind = OffsetBehind(*line, text);
  }
  return InsertLines(file, behind, "", entry);
}

bool RemoveIniKey(IniText& file, std::string_view section, std::string_view key) {
  IniSection lines(file, section);
  if (!lines.found()) return false;
  const IniName wanted(key, file);
  while (const std::optional<IniLine> line = lines.Next()) {
    if (line->kind != IniLineKind::Key || !wanted.Matches(line->name)) continue;
    file.Replace(OffsetOf(*line, file.text()), line->content.size() + line->end.size(), "");
    return true;
  }
  return false;
}

bool RemoveIniSection(IniText& file, std::string_view section) {
  IniSection lines(file, section);
  if (!lines.found()) return false;
  while (lines.Next()) {
  }
  if (lines.end() == lines.begin()) return false;
  file.Replace(lines.begin(), lines.end() - lines.begin(), "");
  return true;
}

}  // namespace zent
