#include "platform/prefix/settings/IniText.h"

#include <utility>

#include "base/CodePage.h"
#include "base/Utf.h"

namespace zent {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16LittleMark = "\xFF\xFE";
constexpr std::string_view kUtf16BigMark = "\xFE\xFF";

IniEncoding EncodingOf(std::string_view bytes) {
  if (bytes.starts_with(kUtf8Mark)) return IniEncoding::Utf8;
  if (bytes.starts_with(kUtf16LittleMark)) return IniEncoding::Utf16Little;
  if (bytes.starts_with(kUtf16BigMark)) return IniEncoding::Utf16Big;
  return IniEncoding::Ansi;
}

std::size_t MarkLength(IniEncoding encoding) {
  if (encoding == IniEncoding::Ansi) return 0;
  return encoding == IniEncoding::Utf8 ? kUtf8Mark.size() : kUtf16LittleMark.size();
}

/// Bytes that the UTF-8 `text` takes as UTF-16. Counted without converting: the text in front of a
/// change may be the whole of a large file.
std::size_t Utf16ByteCount(std::string_view text) {
  std::size_t units = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0U) != 0x80U) units += byte >= 0xF0U ? 2 : 1;
  }
  return 2 * units;
}

}  // namespace

IniText::IniText(std::string bytes) : bytes_(std::move(bytes)), encoding_(EncodingOf(bytes_)) {
  if (!IsUtf16()) return;
  utf8_ = FromUtf16Bytes(std::string_view(bytes_).substr(MarkLength(encoding_)),
                         encoding_ == IniEncoding::Utf16Big);
}

bool IniText::IsUtf16() const {
  return encoding_ == IniEncoding::Utf16Little || encoding_ == IniEncoding::Utf16Big;
}

std::string_view IniText::text() const {
  if (IsUtf16()) return utf8_;
  return std::string_view(bytes_).substr(MarkLength(encoding_));
}

std::string IniText::Decode(std::string_view part, std::size_t limit) const {
  if (encoding_ == IniEncoding::Ansi) return FromAnsi(part.substr(0, limit));
  return FromAnsi(std::string_view(ToAnsi(part)).substr(0, limit));
}

std::string IniText::Encode(std::string_view utf8) const {
  return encoding_ == IniEncoding::Ansi ? ToAnsi(utf8) : std::string(utf8);
}

void IniText::Replace(std::size_t at, std::size_t count, std::string_view with) {
  if (!IsUtf16()) {
    bytes_.replace(MarkLength(encoding_) + at, count, with);
    return;
  }
  const std::string_view before = std::string_view(utf8_).substr(0, at);
  const std::string_view replaced = std::string_view(utf8_).substr(at, count);
  bytes_.replace(MarkLength(encoding_) + Utf16ByteCount(before), Utf16ByteCount(replaced),
                 ToUtf16Bytes(with));
  utf8_.replace(at, count, with);
}

std::string IniText::ToUtf16Bytes(std::string_view text) const {
  std::string bytes;
  for (const char16_t unit : ToUtf16(text)) {
    const auto low = static_cast<char>(unit & 0xFFU);
    const auto high = static_cast<char>(unit >> 8U);
    const bool big = encoding_ == IniEncoding::Utf16Big;
    bytes.push_back(big ? high : low);
    bytes.push_back(big ? low : high);
  }
  return bytes;
}

}  // namespace zent
