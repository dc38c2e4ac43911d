#pragma once

#include <string>
#include <string_view>

#include "jet/format/Bytes.h"
#include "jet/format/Layout.h"

/// Text of fields. Jet 3 stores code page 1252; Jet 4 UTF-16, or a compressed form that begins
/// with FF FE: runs of single bytes and runs of UTF-16, a zero byte changing from one to the other.
namespace zent::jet {

inline constexpr std::string_view kCompressedMark = "\xFF\xFE";

/// Puts the text of a field in place of `utf8`. Every sequence of bytes is some text; an odd last
/// byte is left out.
void DecodeText(JetVersion version, ByteView bytes, std::string& utf8);
std::string DecodeText(JetVersion version, ByteView bytes);

/// Puts the bytes of a text for a Jet 4 field in place of `bytes`: compressed when `compress` is
/// set and it has 3 to 1024 characters, all U+0001 to U+00FF; else UTF-16. A plain text that begins
/// with U+FEFF would be taken for a compressed one: that mark is left out.
void EncodeText(std::string_view utf8, bool compress, std::string& bytes);

/// Names of definitions and texts of properties: never compressed.
std::string DecodeName(JetVersion version, ByteView bytes);
std::string EncodeName(JetVersion version, std::string_view utf8);

/// UTF-16 units of a text, the measure of text columns.
std::size_t CountUnits(std::string_view utf8);

}  // namespace zent::jet
