#include "base/Utf.h"

namespace zent {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDBFF; }
bool IsLowSurrogate(char32_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

unsigned ByteAt(std::string_view text, std::size_t at) {
  return static_cast<unsigned char>(text[at]);
}

/// Length of the sequence that `lead` begins; 0 when no sequence begins with it.
std::size_t SequenceLength(unsigned lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  return 0;
}

constexpr char32_t kBroken = 0xFFFFFFFF;

/// The code point of the sequence at `at`, or kBroken; moves `at` behind what was read.
char32_t DecodeAt(std::string_view text, std::size_t& at) {
  const unsigned lead = ByteAt(text, at);
  const std::size_t length = SequenceLength(lead);
  if (length == 1) return static_cast<char32_t>(text[at++]);
  if (length == 0 || at + length > text.size()) {
    ++at;
    return kBroken;
  }
  char32_t code_point = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    const unsigned next = ByteAt(text, at + i);
    if ((next & 0xC0U) != 0x80U) {
      ++at;
      return kBroken;
    }
    code_point = (code_point << 6U) | (next & 0x3FU);
  }
  const bool overlong =
      (length == 3 && code_point < 0x800) || (length == 4 && code_point < 0x10000);
  if (overlong || code_point > 0x10FFFF) {
    ++at;
    return kBroken;
  }
  at += length;
  return code_point;
}

}  // namespace

bool IsUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const char32_t code_point = DecodeAt(text, at);
    if (code_point == kBroken || IsHighSurrogate(code_point) || IsLowSurrogate(code_point)) {
      return false;
    }
  }
  return true;
}

void AppendUtf8(char32_t code_point, std::string& text) {
  const auto put = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
  if (code_point < 0x80) {
    put(code_point);
  } else if (code_point < 0x800) {
    put(0xC0U | (code_point >> 6U));
    put(0x80U | (code_point & 0x3FU));
  } else if (code_point < 0x10000) {
    put(0xE0U | (code_point >> 12U));
    put(0x80U | ((code_point >> 6U) & 0x3FU));
    put(0x80U | (code_point & 0x3FU));
  } else {
    put(0xF0U | (code_point >> 18U));
    put(0x80U | ((code_point >> 12U) & 0x3FU));
    put(0x80U | ((code_point >> 6U) & 0x3FU));
    put(0x80U | (code_point & 0x3FU));
  }
}

char32_t NextCodePoint(std::string_view text, std::size_t& at) {
  const char32_t code_point = DecodeAt(text, at);
  return code_point == kBroken ? kReplacement : code_point;
}

std::u16string ToUtf16(std::string_view utf8) {
  std::u16string utf16;
  utf16.reserve(utf8.size());
  for (std::size_t at = 0; at < utf8.size();) {
    const char32_t code_point = NextCodePoint(utf8, at);
    if (code_point < 0x10000) {
      utf16.push_back(static_cast<char16_t>(code_point));
    } else {
      utf16.push_back(static_cast<char16_t>(0xD7C0U + (code_point >> 10U)));
      utf16.push_back(static_cast<char16_t>(0xDC00U + (code_point & 0x3FFU)));
    }
  }
  return utf16;
}

std::string FromUtf16(std::u16string_view utf16) {
  std::string utf8;
  utf8.reserve(utf16.size());
  for (std::size_t i = 0; i < utf16.size(); ++i) {
    char32_t code_point = utf16[i];
    if (IsHighSurrogate(code_point) && i + 1 < utf16.size() && IsLowSurrogate(utf16[i + 1])) {
      code_point = 0x10000U + ((code_point - 0xD800U) << 10U) + (utf16[i + 1] - 0xDC00U);
      ++i;
    }
    AppendUtf8(code_point, utf8);
  }
  return utf8;
}

std::string FromUtf16Bytes(std::string_view bytes, bool big_endian) {
  std::u16string utf16;
  utf16.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    const unsigned first = ByteAt(bytes, at);
    const unsigned second = ByteAt(bytes, at + 1);
    utf16.push_back(
        static_cast<char16_t>(big_endian ? (first << 8U) | second : (second << 8U) | first));
  }
  return FromUtf16(utf16);
}

}  // namespace zent
