#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/prefix/settings/IniLines.h"
#include "platform/prefix/settings/IniText.h"

namespace zent {

/// A section or key name that lines are compared with, without regard to case and to the blanks
/// around it.
class IniName {
 public:
  /// `utf8` is the name as a caller gives it; `file` must outlive this.
  IniName(std::string_view utf8, const IniText& file);

  /// True when `name`, a name of one of the file's lines, is this name.
  bool Matches(std::string_view name) const;

 private:
  const IniText& file_;
  std::string folded_;
};

/// The lines of the first section of a name: those from its header to the next header. Later
/// sections of the same name do not count. The lines before the first header are the section
/// without a name, which every file has.
class IniSection {
 public:
  /// `file` must outlive this and stay unchanged while lines are taken.
  IniSection(const IniText& file, std::string_view name);

  bool found() const { return found_; }
  /// Byte offset of the section's header in the text; 0 for the section without a name.
  std::size_t begin() const { return begin_; }
  /// Byte offset behind the header line; 0 for the section without a name.
  std::size_t behind_header() const { return behind_header_; }
  /// Byte offset behind the section's last line. Only when Next() has given nothing.
  std::size_t end() const { return end_.value_or(behind_header_); }

  /// The section's next line, its header not among them; nothing behind the last one.
  std::optional<IniLine> Next();

 private:
  IniLines lines_;
  std::string_view text_;
  bool found_ = false;
  std::size_t begin_ = 0;
  std::size_t behind_header_ = 0;
  std::optional<std::size_t> end_;
};

/// Byte offset of `line` in the text it was cut from.
std::size_t OffsetOf(const IniLine& line, std::string_view text);

/// Byte offset behind `line` and its end.
std::size_t OffsetBehind(const IniLine& line, std::string_view text);

}  // namespace zent
