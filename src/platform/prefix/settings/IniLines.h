#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

/// The lines of a settings file. Nothing is copied: the views of a line lie in the text it was cut
/// from. Works on the byte forms of IniText, in which every character that counts here is one byte.
namespace zent {

enum class IniLineKind {
  Blank,    ///< blanks only
  Comment,  ///< begins with a semicolon
  Header,   ///< "[name]", whatever follows; the last closing bracket of the line ends the name
  Key,      ///< "name=value"
  Other,    ///< any other text; a header without its closing bracket is one
};

struct IniLine {
  IniLineKind kind = IniLineKind::Blank;
  std::string_view content;  ///< the whole line without its end
  std::string_view end;      ///< CR LF, LF or CR; empty when the text ends without one
  std::string_view name;     ///< of a header or a key, without the blanks around it
  std::string_view value;    ///< of a key, without the blanks around it but with its quotes; an
                             ///< empty one still lies where the value belongs
};

/// `text` without the blanks at its ends: spaces, tabs and control-Z, with which old editors mark
/// the end of a file. An empty result lies at the end of `text`.
std::string_view TrimIniBlanks(std::string_view text);

/// As TrimIniBlanks, at the front alone.
std::string_view TrimIniBlanksBefore(std::string_view text);

/// The line whose content is `content`; its `end` is left empty. What stands behind a NUL byte
/// belongs to the content, but is not looked at.
IniLine ClassifyIniLine(std::string_view content);

/// Cuts a text into lines, from its start to its end, in time linear in what was read.
class IniLines {
 public:
  /// `text` must outlive this.
  explicit IniLines(std::string_view text);

  /// The next line; nothing behind the last one. A line end at the end of the text begins no line.
  std::optional<IniLine> Next();

 private:
  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t next_feed_;  // the first LF at or behind at_, or the size of the text
};

}  // namespace zent
