#include "xml/Charset.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "base/CodePage.h"
#include "base/Text.h"
#include "base/Utf.h"
#include "xml/ErrorCodes.h"

namespace zent::xml {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16LeMark = "\xFF\xFE";
constexpr std::string_view kUtf16BeMark = "\xFE\xFF";

struct CharsetName {
  std::string_view name;
  Charset charset;
};

constexpr CharsetName kNames[] = {
    {"utf-8", Charset::Utf8},        {"utf8", Charset::Utf8},
    {"utf-16", Charset::Utf16Le},    {"utf-16le", Charset::Utf16Le},
    {"utf-16be", Charset::Utf16Be},  {"iso-10646-ucs-2", Charset::Utf16Le},
    {"iso-8859-1", Charset::Latin1}, {"latin1", Charset::Latin1},
    {"windows-1252", Charset::Ansi}, {"cp1252", Charset::Ansi},
    {"us-ascii", Charset::Ascii},    {"ascii", Charset::Ascii},
};

bool IsUtf16(Charset charset) { return charset == Charset::Utf16Le || charset == Charset::Utf16Be; }

/// How the bytes are laid out, as far as their beginning shows it.
struct Family {
  Charset charset = Charset::Utf8;  ///< Utf8 stands for any encoding with ASCII in it
  std::string_view mark;
};

Family FamilyOf(std::string_view bytes) {
  if (bytes.starts_with(kUtf8Mark)) return {Charset::Utf8, kUtf8Mark};
  if (bytes.starts_with(kUtf16LeMark)) return {Charset::Utf16Le, kUtf16LeMark};
  if (bytes.starts_with(kUtf16BeMark)) return {Charset::Utf16Be, kUtf16BeMark};
  if (bytes.starts_with(std::string_view("<\0", 2))) return {Charset::Utf16Le, {}};
  if (bytes.starts_with(std::string_view("\0<", 2))) return {Charset::Utf16Be, {}};
  return {};
}

/// The value of `encoding` in a declaration; nothing where the parser will find fault with it.
std::string DeclaredEncoding(std::string_view declaration) {
  constexpr std::string_view kKey = "encoding";
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t key = declaration.find(kKey);
  if (key == std::string_view::npos) return {};
  std::size_t at = declaration.find_first_not_of(kBlanks, key + kKey.size());
  if (at == std::string_view::npos || declaration[at] != '=') return {};
  at = declaration.find_first_not_of(kBlanks, at + 1);
  if (at == std::string_view::npos || (declaration[at] != '"' && declaration[at] != '\'')) {
    return {};
  }
  const std::size_t end = declaration.find(declaration[at], at + 1);
  if (end == std::string_view::npos) return {};
  return std::string(declaration.substr(at + 1, end - at - 1));
}

LoadError ErrorAt(std::string_view text, std::size_t at, int code, std::string reason) {
  const std::string_view before = text.substr(0, at);
  const std::size_t line_start = before.rfind('\n') + 1;  // npos + 1 is the start
  LoadError error;
  error.code = code;
  error.reason = std::move(reason);
  error.line = static_cast<int>(std::count(before.begin(), before.end(), '\n')) + 1;
  error.column = static_cast<int>(CountCharacters(before.substr(line_start))) + 1;
  return error;
}

/// Position of the first byte that is no part of UTF-8 text, or npos.
std::size_t FindBadUtf8(std::string_view text) {
  if (IsUtf8(text)) return std::string_view::npos;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t length = 1;
    while (length <= 4 && !IsUtf8(text.substr(at, length))) ++length;
    if (length > 4) return at;
    at += length;
  }
  return std::string_view::npos;
}

std::string FromLatin1(std::string_view bytes) {
  std::string utf8;
  utf8.reserve(bytes.size() + bytes.size() / 8);
  for (const char c : bytes) AppendUtf8(static_cast<unsigned char>(c), utf8);
  return utf8;
}

std::string ToUtf8(std::string_view bytes, Charset charset) {
  switch (charset) {
    case Charset::Utf16Le:
      return FromUtf16Bytes(bytes);
    case Charset::Utf16Be:
      return FromUtf16Bytes(bytes, true);
    case Charset::Latin1:
      return FromLatin1(bytes);
    case Charset::Ansi:
      return FromAnsi(bytes);
    case Charset::Utf8:
    case Charset::Ascii:
      break;
  }
  return std::string(bytes);
}

/// Why `text`, which came from `charset`, cannot be parsed.
std::optional<LoadError> FaultIn(std::string_view text, Charset charset) {
  if (charset == Charset::Ascii) {
    const auto* const high = std::find_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    if (high != text.end()) {
      return ErrorAt(text, static_cast<std::size_t>(high - text.begin()), kInvalidEncoding,
                     "Input is not proper US-ASCII");
    }
  }
  std::size_t bad = FindBadUtf8(text);  // ill-formed UTF-16 comes as ill-formed UTF-8
  if (bad != std::string_view::npos) {
    return ErrorAt(text, bad, kInvalidEncoding,
                   IsUtf16(charset) ? "Input is not proper UTF-16" : "Input is not proper UTF-8");
  }
  bad = text.find('\0');
  if (bad == std::string_view::npos) return {};
  return ErrorAt(text, bad, kInvalidChar, "Char 0x0 out of allowed range");
}

/// The charset that the declaration of `text` names, `family` where it names none.
std::variant<Charset, LoadError> DeclaredCharset(std::string_view text, const Family& family) {
  const std::string name = DeclaredEncoding(DeclarationOf(text));
  if (name.empty()) return family.charset;
  const auto* const found =
      std::find_if(std::begin(kNames), std::end(kNames),
                   [&name](const CharsetName& row) { return EqualsIgnoringCase(row.name, name); });
  if (found == std::end(kNames)) {
    return ErrorAt(text, 0, kUnsupportedEncoding, "Unsupported encoding " + name);
  }
  const bool plain_utf16 = EqualsIgnoringCase(name, "utf-16") || found->name.starts_with("iso-106");
  const bool fits =
      IsUtf16(family.charset)
          ? plain_utf16 || found->charset == family.charset
          : !IsUtf16(found->charset) && (family.mark.empty() || found->charset == Charset::Utf8);
  if (!fits) {
    return ErrorAt(
        text, 0, kInvalidEncoding,
        "The document is declared as " + name + ", but its bytes are in another encoding");
  }
  return IsUtf16(family.charset) ? family.charset : found->charset;
}

std::string_view FirstLineBreak(std::string_view text) {
  const std::size_t at = text.find_first_of("\r\n");
  if (at == std::string_view::npos) return kLineBreak;
  return text.substr(at, text.substr(at).starts_with(kLineBreak) ? 2 : 1);
}

/// Every line end as LF, as XML reads them.
void NormalizeLineBreaks(std::string& text) {
  if (text.find('\r') == std::string::npos) return;
  std::size_t to = 0;
  for (std::size_t from = 0; from < text.size(); ++from) {
    if (text[from] != '\r') {
      text[to++] = text[from];
    } else if (from + 1 == text.size() || text[from + 1] != '\n') {
      text[to++] = '\n';
    }
  }
  text.resize(to);
}

std::string ToUtf16Bytes(std::string_view utf8, bool big_endian) {
  std::string bytes;
  bytes.reserve(2 * utf8.size());
  for (const char16_t unit : ToUtf16(utf8)) {
    const char high = static_cast<char>(unit >> 8U);
    const char low = static_cast<char>(unit & 0xFFU);
    bytes.push_back(big_endian ? high : low);
    bytes.push_back(big_endian ? low : high);
  }
  return bytes;
}

std::string ToLatin1(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  for (std::size_t at = 0; at < utf8.size();) {
    bytes.push_back(static_cast<char>(NextCodePoint(utf8, at)));
  }
  return bytes;
}

}  // namespace

std::string_view DeclarationOf(std::string_view text) {
  if (!text.starts_with("<?xml") || text.size() < 6) return {};
  if (std::string_view(" \t\r\n").find(text[5]) == std::string_view::npos) return {};
  const std::size_t end = text.find("?>");
  return end == std::string_view::npos ? std::string_view() : text.substr(0, end + 2);
}

std::variant<SourceText, LoadError> DecodeSource(std::string_view bytes) {
  const Family family = FamilyOf(bytes);
  bytes.remove_prefix(family.mark.size());
  SourceText source;
  source.has_mark = !family.mark.empty();
  if (IsUtf16(family.charset) && bytes.size() % 2 != 0) {
    return ErrorAt({}, 0, kInvalidEncoding,
                   "Input is not proper UTF-16: half a character at its end");
  }
  source.utf8 = ToUtf8(bytes, family.charset);
  const std::variant<Charset, LoadError> declared = DeclaredCharset(source.utf8, family);
  if (const auto* error = std::get_if<LoadError>(&declared)) return *error;
  source.charset = std::get<Charset>(declared);
  if (!IsUtf16(source.charset)) source.utf8 = ToUtf8(bytes, source.charset);

  source.line_break = FirstLineBreak(source.utf8);
  NormalizeLineBreaks(source.utf8);
  if (std::optional<LoadError> fault = FaultIn(source.utf8, source.charset)) return *fault;
  return source;
}

bool Holds(Charset charset, char32_t code_point) {
  if (code_point < 0x80) return true;
  switch (charset) {
    case Charset::Ascii:
      return false;
    case Charset::Latin1:
      return code_point <= 0xFF;
    case Charset::Ansi: {
      std::string utf8;
      AppendUtf8(code_point, utf8);
      return ToAnsi(utf8) != "?";
    }
    case Charset::Utf8:
    case Charset::Utf16Le:
    case Charset::Utf16Be:
      break;
  }
  return true;
}

std::string EncodeText(std::string_view utf8, Charset charset, bool with_mark) {
  switch (charset) {
    case Charset::Utf16Le:
      return std::string(with_mark ? kUtf16LeMark : "") + ToUtf16Bytes(utf8, false);
    case Charset::Utf16Be:
      return std::string(with_mark ? kUtf16BeMark : "") + ToUtf16Bytes(utf8, true);
    case Charset::Latin1:
      return ToLatin1(utf8);
    case Charset::Ansi:
      return ToAnsi(utf8);
    case Charset::Utf8:
    case Charset::Ascii:
      break;
  }
  return std::string(with_mark ? kUtf8Mark : "") + std::string(utf8);
}

}  // namespace zent::xml
