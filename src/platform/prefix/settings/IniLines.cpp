#include "platform/prefix/settings/IniLines.h"

#include <algorithm>

namespace zent {
namespace {

constexpr std::string_view kBlanks = " \t\x1A";

std::size_t FindOrSize(std::string_view text, char wanted, std::size_t from) {
  return std::min(text.find(wanted, from), text.size());
}

}  // namespace

std::string_view TrimIniBlanksBefore(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(kBlanks), text.size()));
}

std::string_view TrimIniBlanks(std::string_view text) {
  const std::string_view trimmed = TrimIniBlanksBefore(text);
  return trimmed.substr(0, trimmed.find_last_not_of(kBlanks) + 1);
}

IniLine ClassifyIniLine(std::string_view content) {
  IniLine line;
  line.content = content;
  const std::string_view text = TrimIniBlanks(content.substr(0, content.find('\0')));
  if (text.empty()) return line;
  if (text.front() == ';') {
    line.kind = IniLineKind::Comment;
    return line;
  }
  if (text.front() == '[') {
    const std::size_t close = text.rfind(']');
    if (close != std::string_view::npos) {
      line.kind = IniLineKind::Header;
      line.name = TrimIniBlanks(text.substr(1, close - 1));
      return line;
    }
  }
  const std::size_t equals = text.find('=');
  line.kind = equals == std::string_view::npos ? IniLineKind::Other : IniLineKind::Key;
  if (line.kind == IniLineKind::Key) {
    // Blanks behind the last "=" of a line were trimmed off `text`; they stand before the value.
    const std::size_t behind = static_cast<std::size_t>(text.data() - content.data()) + equals + 1;
    line.name = TrimIniBlanks(text.substr(0, equals));
    line.value = TrimIniBlanks(content.substr(behind, content.find('\0', behind) - behind));
  }
  return line;
}

IniLines::IniLines(std::string_view text) : text_(text), next_feed_(FindOrSize(text, '\n', 0)) {}

std::optional<IniLine> IniLines::Next() {
  if (at_ >= text_.size()) return std::nullopt;
  // Looked for once a feed, not once a line: a file that ends its lines with CR has none.
  if (next_feed_ < at_) next_feed_ = FindOrSize(text_, '\n', at_);

  const std::string_view up_to_feed = text_.substr(at_, next_feed_ - at_);
  const std::size_t length = FindOrSize(up_to_feed, '\r', 0);
  const std::size_t end_at = at_ + length;
  std::size_t end_length = end_at < text_.size() ? 1 : 0;
  if (length + 1 == up_to_feed.size() && next_feed_ < text_.size()) end_length = 2;

  IniLine line = ClassifyIniLine(text_.substr(at_, length));
  line.end = text_.substr(end_at, end_length);
  at_ = end_at + end_length;
  return line;
}

}  // namespace zent
