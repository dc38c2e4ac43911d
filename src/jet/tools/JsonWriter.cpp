#include "jet/tools/JsonWriter.h"

#include <fmt/format.h>

#include <cmath>

#include "base/Utf.h"

namespace zent::jet {
namespace {

constexpr std::size_t kBuffer = 65536;

/// "1.5", "-0.0", "1e+300": always a number that has a fraction or an exponent.
template <typename Number>
std::string Digits(Number number) {
  std::string text = fmt::format("{}", number);
  if (text.find_first_of(".e") == std::string::npos) text += ".0";
  return text;
}

template <typename Number>
std::string NotFinite(Number number) {
  if (std::isnan(number)) return "NaN";
  return number > 0 ? "Infinity" : "-Infinity";
}

}  // namespace

void JsonWriter::Write(std::string_view text) {
  buffer_ += text;
  if (buffer_.size() >= kBuffer) Flush();
}

void JsonWriter::Flush() {
  if (!buffer_.empty()) take_(buffer_);
  buffer_.clear();
}

void JsonWriter::Separate(Line line) {
  if (after_key_) {
    after_key_ = false;
    return;
  }
  if (!first_) Write(",");
  first_ = false;
  if (line == Line::New) Write("\n");
}

void JsonWriter::Open(char bracket, Line line) {
  Separate(line);
  Write(std::string_view(&bracket, 1));
  first_ = true;
}

void JsonWriter::Close(char bracket) {
  Write(std::string_view(&bracket, 1));
  first_ = false;
}

void JsonWriter::Key(std::string_view name, Line line) {
  Separate(line);
  after_key_ = true;
  Add(name);
  Write(":");
  after_key_ = true;
}

void JsonWriter::Add(std::string_view text) {
  Separate();
  Write("\"");
  std::size_t plain = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t begin = at;
    const char32_t character = NextCodePoint(text, at);
    const bool is_plain = character >= 0x20 && character != '"' && character != '\\' &&
                          (character < 0xD800 || character > 0xDFFF);
    // What is no UTF-8 is read as U+FFFD and has to be written as such.
    if (is_plain && character != 0xFFFD) continue;
    Write(text.substr(plain, begin - plain));
    AddEscaped(character);
    plain = at;
  }
  Write(text.substr(plain));
  Write("\"");
}

void JsonWriter::AddEscaped(char32_t character) {
  switch (character) {
    case '"':
      return Write("\\\"");
    case '\\':
      return Write("\\\\");
    case '\n':
      return Write("\\n");
    case '\r':
      return Write("\\r");
    case '\t':
      return Write("\\t");
    default:
      return Write(fmt::format("\\u{:04x}", static_cast<std::uint32_t>(character)));
  }
}

void JsonWriter::Add(std::int64_t number) {
  Separate();
  Write(fmt::format("{}", number));
}

void JsonWriter::Add(bool value) {
  Separate();
  Write(value ? "true" : "false");
}

void JsonWriter::Add(double number) {
  if (!std::isfinite(number)) return Add(NotFinite(number));
  Separate();
  Write(Digits(number));
}

void JsonWriter::Add(float number) {
  if (!std::isfinite(number)) return Add(NotFinite(number));
  Separate();
  Write(Digits(number));
}

void JsonWriter::AddNull() {
  Separate();
  Write("null");
}

}  // namespace zent::jet
