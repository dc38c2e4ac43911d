#pragma once

#include <string>
#include <string_view>

/// UTF-8 to and from the wider forms. Nothing fails: a broken sequence becomes U+FFFD.
namespace zent {

/// True when every byte of `text` belongs to a well-formed UTF-8 sequence.
bool IsUtf8(std::string_view text);

/// Appends `code_point` as UTF-8; a lone surrogate is kept in its three-byte form.
void AppendUtf8(char32_t code_point, std::string& text);

/// Takes the character at `at` off `text` and moves `at` behind it; needs at < text.size().
char32_t NextCodePoint(std::string_view text, std::size_t& at);

/// UTF-16 of `utf8`; a lone surrogate in its three-byte form becomes that surrogate again.
std::u16string ToUtf16(std::string_view utf8);

/// UTF-8 of `utf16`; lone surrogates survive in their three-byte form.
std::string FromUtf16(std::u16string_view utf16);

/// The text of bytes that hold UTF-16 in little-endian (or big-endian) order; an odd last byte is
/// left out.
std::string FromUtf16Bytes(std::string_view bytes, bool big_endian = false);

}  // namespace zent
