#include "platform/prefix/registry/RegistryLayout.h"

#include <fmt/format.h>

#include "platform/prefix/registry/RegistryData.h"
#include "platform/prefix/registry/RegistryLines.h"

namespace zent {
namespace {

constexpr std::string_view kFirstLine = "WINE REGISTRY Version 2";
constexpr std::string_view kLinkMark = "#link";

RuntimeError Malformed(const std::string& name, std::size_t line_number, std::string_view what) {
  return StandardError(kInvalidFileFormat, fmt::format("{}, line {}: {}", name, line_number, what));
}

/// True for a line that is whole even though no line break says so: a text with its closing quote,
/// or a number with all its digits. Anything else may be the start of a longer line.
bool IsWholeWithoutBreak(std::string_view line) {
  constexpr std::string_view kNumber = "dword:";
  constexpr std::size_t kNumberSize = kNumber.size() + 8;
  const std::optional<ValueLines> value = ReadValueLines(line, 0);
  if (!value || !ParseValueData(value->data)) return false;
  const bool is_number = value->data.substr(0, kNumber.size()) == kNumber;
  return is_number ? value->data.size() >= kNumberSize : value->data.back() == '"';
}

/// Enters one line after the other into a layout.
class LayoutReader {
 public:
  LayoutReader(std::string_view file, RegistryLayout& layout) : file_(file), layout_(layout) {}

  void Enter(const TextLine& line, std::size_t begin) {
    const std::string_view text = line.text;
    const bool of_value = IsOfValue(text);
    continued_ = of_value && text.back() == '\\' &&
                 (continued_ || text.find("=hex") != std::string_view::npos);
    if (text.empty()) return;
    if (text.front() == '[') {
      // The values below a broken key line belong to no key.
      const std::optional<KeyLine> key = ParseKeyLine(text);
      section_ = key ? layout_.index.AddSection(file_, begin, key->path) : kNoId;
      in_head_ = false;
    }
    if (in_head_) layout_.head_end = line.next;
    if (section_ == kNoId) return;
    if (of_value || text.front() == '[' || text.front() == '#') {
      layout_.index.SetEnd(section_, line.next);
    }
    if (text == kLinkMark) layout_.index.MarkLink(section_);
  }

  /// True when the line entered last says that more hexadecimal data follow.
  bool continued() const { return continued_; }

 private:
  bool IsOfValue(std::string_view text) const {
    if (text.empty()) return false;
    return text.front() == '"' || text.front() == '@' || (continued_ && IsHexContinuation(text));
  }

  std::string_view file_;
  RegistryLayout& layout_;
  SectionId section_ = kNoId;
  bool in_head_ = true;
  bool continued_ = false;
};

}  // namespace

Result<RegistryLayout> ReadRegistryLayout(std::string_view file, const std::string& name) {
  RegistryLayout layout;
  TextLine line = ReadLine(file, 0);
  if (line.text != kFirstLine) {
    return Malformed(name, 1, fmt::format("it does not read \"{}\"", kFirstLine));
  }
  if (line.next == kFirstLine.size() + 2) layout.line_break = "\r\n";
  layout.head_end = line.next;

  LayoutReader reader(file, layout);
  std::size_t line_number = 1;
  std::size_t begin = 0;
  while (line.next < file.size()) {
    begin = line.next;
    line = ReadLine(file, begin);
    reader.Enter(line, begin);
    ++line_number;
  }
  const bool has_break = file.back() == '\n';
  if (reader.continued() || (!has_break && !IsWholeWithoutBreak(file.substr(begin)))) {
    return Malformed(name, line_number, "the file ends within this line or value");
  }
  return layout;
}

}  // namespace zent
