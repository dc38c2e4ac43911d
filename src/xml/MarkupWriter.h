#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "base/Status.h"
#include "xml/DocumentState.h"

namespace zent::xml {

/// The characters of a file, in its encoding and with its line ends.
class MarkupWriter {
 public:
  explicit MarkupWriter(const SourceLayout& layout) : layout_(layout) {}

  /// Names and marks as they stand. A character outside the encoding makes Take fail.
  void Literal(std::string_view text);
  void Text(std::string_view text);
  void AttributeText(std::string_view text);
  /// Text with a reference in place of each character.
  void References(std::string_view text);
  void CData(std::string_view text);
  void Comment(std::string_view text);
  void Instruction(std::string_view target, std::string_view text);
  void Reference(std::string_view entity);
  void LineBreak() { out_ += layout_.line_break; }
  /// A new line with the indent of `level`.
  void NewLine(std::size_t level);

  /// All of it as bytes; nothing may be written afterwards.
  Result<std::string> Take();

 private:
  void Escaped(std::string_view text, bool in_attribute);
  void EscapedByte(char c, bool in_attribute);
  /// Puts the character that begins at `at` as itself or as a reference, and moves behind it.
  void OtherCharacter(std::string_view text, std::size_t& at);
  /// True when no byte of `text` needs a look at the encoding.
  bool FitsAnyway(std::string_view text) const;

  const SourceLayout& layout_;
  std::string out_;
  std::optional<RuntimeError> fault_;
};

}  // namespace zent::xml
