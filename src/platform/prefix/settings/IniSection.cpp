#include "platform/prefix/settings/IniSection.h"

#include "base/CaseFold.h"

namespace zent {
namespace {

char UpperOfAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool IsAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }

}  // namespace

IniName::IniName(std::string_view utf8, const IniText& file)
    : file_(file), folded_(FoldName(TrimIniBlanks(utf8))) {}

bool IniName::Matches(std::string_view name) const {
  // An ASCII character folds to itself or to its capital, so most lines differ at once. The names
  // of a file are folded, with the copies that needs, only where other letters come in.
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (!IsAscii(name[i])) {
      // Characters outside the ANSI code page stand for themselves here: a "?" does not match them.
      const bool ansi = file_.encoding() == IniEncoding::Ansi;
      return FoldName(ansi ? file_.Decode(name) : std::string(name)) == folded_;
    }
    if (i >= folded_.size() || UpperOfAscii(name[i]) != folded_[i]) return false;
  }
  return name.size() == folded_.size();
}

IniSection::IniSection(const IniText& file, std::string_view name)
    : lines_(file.text()), text_(file.text()) {
  const IniName wanted(name, file);
  found_ = wanted.Matches("");
  while (!found_) {
    const std::optional<IniLine> line = lines_.Next();
    if (!line) return;
    if (line->kind != IniLineKind::Header || !wanted.Matches(line->name)) continue;
    found_ = true;
    begin_ = OffsetOf(*line, text_);
    behind_header_ = OffsetBehind(*line, text_);
  }
}

std::optional<IniLine> IniSection::Next() {
  if (end_) return std::nullopt;
  std::optional<IniLine> line = lines_.Next();
  if (line && line->kind != IniLineKind::Header) return line;
  end_ = line ? OffsetOf(*line, text_) : text_.size();
  return std::nullopt;
}

std::size_t OffsetOf(const IniLine& line, std::string_view text) {
  return static_cast<std::size_t>(line.content.data() - text.data());
}

std::size_t OffsetBehind(const IniLine& line, std::string_view text) {
  return OffsetOf(line, text) + line.content.size() + line.end.size();
}

}  // namespace zent
