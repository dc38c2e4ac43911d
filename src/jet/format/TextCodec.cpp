#include "jet/format/TextCodec.h"

#include <algorithm>

#include "base/CodePage.h"
#include "base/Utf.h"

namespace zent::jet {
namespace {

constexpr std::size_t kMinCompressed = 3;
constexpr std::size_t kMaxCompressed = 1024;
constexpr char16_t kByteOrderMark = 0xFEFF;

/// Most text is of these characters alone; eight at a time.
bool IsAscii(ByteView bytes) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  std::uint64_t all = 0;
  std::size_t at = 0;
  for (; at + 8 <= bytes.size(); at += 8) all |= LoadU64(bytes, at);
  for (; at < bytes.size(); ++at) all |= bytes[at];
  return (all & kHighBits) == 0;
}

/// Appends characters of one byte each, U+0001 to U+00FF.
void AppendBytes(ByteView bytes, std::string& utf8) {
  if (IsAscii(bytes)) {
    utf8.append(AsText(bytes));
    return;
  }
  for (const std::uint8_t byte : bytes) AppendUtf8(byte, utf8);
}

void AppendWords(ByteView bytes, std::string& utf8) {
  std::size_t at = 0;
  for (; at + 1 < bytes.size(); at += 2) {
    if (bytes[at + 1] != 0 || bytes[at] >= 0x80) break;
    utf8.push_back(static_cast<char>(bytes[at]));
  }
  if (at + 1 < bytes.size()) utf8 += FromUtf16Bytes(AsText(bytes.subspan(at)));
}

void AppendCompressed(ByteView bytes, std::string& utf8) {
  bool words = false;
  while (true) {
    const auto zero = std::find(bytes.begin(), bytes.end(), std::uint8_t{0});
    const auto length = static_cast<std::size_t>(zero - bytes.begin());
    if (words) {
      AppendWords(bytes.first(length), utf8);
    } else {
      AppendBytes(bytes.first(length), utf8);
    }
    if (length == bytes.size()) return;
    bytes = bytes.subspan(length + 1);
    words = !words;
  }
}

bool IsCompressible(std::u16string_view text) {
  return text.size() >= kMinCompressed && text.size() <= kMaxCompressed &&
         std::all_of(text.begin(), text.end(), [](char16_t c) { return c >= 1 && c <= 0xFF; });
}

void AppendUtf16Bytes(std::u16string_view text, std::string& bytes) {
  bytes.reserve(bytes.size() + 2 * text.size());
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<char>(unit & 0xFFU));
    bytes.push_back(static_cast<char>(unit >> 8U));
  }
}

}  // namespace

void DecodeText(JetVersion version, ByteView bytes, std::string& utf8) {
  utf8.clear();
  if (version == JetVersion::Jet3) {
    if (IsAscii(bytes)) {
      utf8.assign(AsText(bytes));
    } else {
      utf8 = FromAnsi(AsText(bytes));
    }
  } else if (AsText(bytes).starts_with(kCompressedMark)) {
    AppendCompressed(bytes.subspan(kCompressedMark.size()), utf8);
  } else {
    AppendWords(bytes, utf8);
  }
}

std::string DecodeText(JetVersion version, ByteView bytes) {
  std::string utf8;
  DecodeText(version, bytes, utf8);
  return utf8;
}

void EncodeText(std::string_view utf8, bool compress, std::string& bytes) {
  bytes.clear();
  const bool short_enough = utf8.size() >= kMinCompressed && utf8.size() <= kMaxCompressed;
  if (compress && short_enough && IsAscii(AsBytes(utf8)) && utf8.find('\0') == utf8.npos) {
    bytes.reserve(kCompressedMark.size() + utf8.size());
    bytes.append(kCompressedMark).append(utf8);
    return;
  }
  const std::u16string text = ToUtf16(utf8);
  if (compress && IsCompressible(text)) {
    bytes.reserve(kCompressedMark.size() + text.size());
    bytes = kCompressedMark;
    for (const char16_t unit : text) bytes.push_back(static_cast<char>(unit));
    return;
  }
  std::u16string_view rest = text;
  while (!rest.empty() && rest.front() == kByteOrderMark) rest.remove_prefix(1);
  AppendUtf16Bytes(rest, bytes);
}

std::string DecodeName(JetVersion version, ByteView bytes) {
  return version == JetVersion::Jet3 ? FromAnsi(AsText(bytes)) : FromUtf16Bytes(AsText(bytes));
}

std::string EncodeName(JetVersion version, std::string_view utf8) {
  if (version == JetVersion::Jet3) return ToAnsi(utf8);
  std::string bytes;
  AppendUtf16Bytes(ToUtf16(utf8), bytes);
  return bytes;
}

std::size_t CountUnits(std::string_view utf8) {
  if (IsAscii(AsBytes(utf8))) return utf8.size();
  std::size_t units = 0;
  for (std::size_t at = 0; at < utf8.size();) units += NextCodePoint(utf8, at) < 0x10000 ? 1U : 2U;
  return units;
}

}  // namespace zent::jet
