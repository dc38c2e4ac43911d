#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zent {

/// How a settings file holds its text. Every form but ANSI shows by its byte-order mark.
enum class IniEncoding { Ansi, Utf8, Utf16Little, Utf16Big };

/// The bytes of a settings file and the text in them.
///
/// Lines are cut and searched in a byte form: the file's own bytes behind the mark or, of UTF-16,
/// their UTF-8. A change replaces the bytes of one place; all others stay as they are, broken ones
/// and the mark too.
class IniText {
 public:
  explicit IniText(std::string bytes);

  IniEncoding encoding() const { return encoding_; }
  const std::string& bytes() const { return bytes_; }

  /// The byte form, without the mark. A view of it is good until the next Replace.
  std::string_view text() const;

  /// The first `limit` characters of `part`, a piece of the byte form, in UTF-8. A character
  /// outside the ANSI code page becomes "?", as for every program that asks in ANSI.
  std::string Decode(std::string_view part, std::size_t limit = std::string::npos) const;

  /// The byte form of `utf8`.
  std::string Encode(std::string_view utf8) const;

  /// Puts `with` in the place of `count` bytes from `at` on; all three in the byte form.
  void Replace(std::size_t at, std::size_t count, std::string_view with);

 private:
  bool IsUtf16() const;
  /// The UTF-8 `text` as the file holds it.
  std::string ToUtf16Bytes(std::string_view text) const;

  std::string bytes_;
  IniEncoding encoding_ = IniEncoding::Ansi;
  std::string utf8_;  // of a UTF-16 file, otherwise empty
};

}  // namespace zent
