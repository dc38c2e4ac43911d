#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

#include "xml/LoadError.h"

/// The encodings of files. They are converted here, not by the XML library, so that both platforms
/// know the same ones and write the same bytes.
namespace zent::xml {

enum class Charset { Utf8, Utf16Le, Utf16Be, Latin1, Ansi, Ascii };

/// A file as text.
struct SourceText {
  std::string utf8;  ///< well-formed, without mark, without NUL; lines end at LF
  Charset charset = Charset::Utf8;
  bool has_mark = false;            ///< a byte-order mark stood before it
  std::string line_break = "\r\n";  ///< the file's first one
};

/// The text of `bytes`, in the encoding that their byte-order mark or declaration names. An error,
/// with its place and without a document name, where they contradict each other, for an encoding
/// that is not known here, for bytes that the encoding does not have, and for a NUL.
std::variant<SourceText, LoadError> DecodeSource(std::string_view bytes);

/// The XML declaration at the start of `text`, with its marks, or nothing.
std::string_view DeclarationOf(std::string_view text);

/// True when `charset` has the character.
bool Holds(Charset charset, char32_t code_point);

/// The bytes of `utf8`, all of whose characters `charset` has.
std::string EncodeText(std::string_view utf8, Charset charset, bool with_mark);

}  // namespace zent::xml
