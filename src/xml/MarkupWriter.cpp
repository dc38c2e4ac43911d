#include "xml/MarkupWriter.h"

#include <algorithm>
#include <utility>

#include "base/Utf.h"

namespace zent::xml {
namespace {

bool HoldsEverything(Charset charset) {
  return charset == Charset::Utf8 || charset == Charset::Utf16Le || charset == Charset::Utf16Be;
}

std::string CharacterReference(char32_t code_point) {
  return "&#" + std::to_string(static_cast<unsigned long>(code_point)) + ";";
}

}  // namespace

bool MarkupWriter::FitsAnyway(std::string_view text) const {
  return HoldsEverything(layout_.charset) || std::all_of(text.begin(), text.end(), [](char c) {
           return static_cast<unsigned char>(c) < 0x80;
         });
}

void MarkupWriter::Literal(std::string_view text) {
  if (!FitsAnyway(text)) {
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t start = at;
      if (Holds(layout_.charset, NextCodePoint(text, at)) || fault_) continue;
      fault_ = RuntimeError{kInvalidProcedureCall,
                            "The XML document cannot be written in its encoding: \"" +
                                std::string(text.substr(start, at - start)) +
                                "\" is not in it and stands where no reference can"};
    }
  }
  for (std::size_t end = 0; (end = text.find('\n')) != std::string_view::npos;) {
    out_.append(text.substr(0, end));
    LineBreak();
    text.remove_prefix(end + 1);
  }
  out_.append(text);
}

void MarkupWriter::EscapedByte(char c, bool in_attribute) {
  switch (c) {
    case '&':
      out_ += "&amp;";
      return;
    case '<':
      out_ += "&lt;";
      return;
    case '>':
      out_ += "&gt;";
      return;
    case '\r':
      out_ += "&#13;";
      return;
    case '\n':
      in_attribute ? out_.append("&#10;") : out_.append(layout_.line_break);
      return;
    case '\t':
      in_attribute ? out_.append("&#9;") : out_.append("\t");
      return;
    default:  // the quote, which is a plain character outside an attribute
      in_attribute ? out_.append("&quot;") : out_.append(1, c);
      return;
  }
}

void MarkupWriter::OtherCharacter(std::string_view text, std::size_t& at) {
  const std::size_t start = at;
  const char32_t code_point = NextCodePoint(text, at);
  if (Holds(layout_.charset, code_point)) {
    out_.append(text.substr(start, at - start));
  } else {
    out_ += CharacterReference(code_point);
  }
}

void MarkupWriter::Escaped(std::string_view text, bool in_attribute) {
  constexpr std::string_view kMarks = "&<>\r\n\t\"";
  const bool fits = FitsAnyway(text);
  for (std::size_t at = 0; at < text.size();) {
    if (!fits && static_cast<unsigned char>(text[at]) >= 0x80) {
      OtherCharacter(text, at);
    } else if (kMarks.find(text[at]) != std::string_view::npos) {
      EscapedByte(text[at++], in_attribute);
    } else {
      out_ += text[at++];
    }
  }
}

void MarkupWriter::Text(std::string_view text) { Escaped(text, false); }

void MarkupWriter::AttributeText(std::string_view text) { Escaped(text, true); }

void MarkupWriter::References(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) out_ += CharacterReference(NextCodePoint(text, at));
}

void MarkupWriter::CData(std::string_view text) {
  constexpr std::string_view kOpen = "<![CDATA[";
  constexpr std::string_view kClose = "]]>";
  out_ += kOpen;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t start = at;
    const char32_t code_point = NextCodePoint(text, at);
    if (!Holds(layout_.charset, code_point)) {
      // A reference is none within the section, so it stands between two.
      out_.append(kClose).append(CharacterReference(code_point)).append(kOpen);
    } else if (text.substr(start).starts_with(kClose)) {
      out_.append("]]").append(kClose).append(kOpen);
      at = start + 2;
    } else {
      Literal(text.substr(start, at - start));
    }
  }
  out_ += kClose;
}

void MarkupWriter::Comment(std::string_view text) {
  out_ += "<!--";
  Literal(text);
  out_ += "-->";
}

void MarkupWriter::Instruction(std::string_view target, std::string_view text) {
  out_ += "<?";
  Literal(target);
  if (!text.empty()) out_ += ' ';
  Literal(text);
  out_ += "?>";
}

void MarkupWriter::Reference(std::string_view entity) {
  out_ += '&';
  Literal(entity);
  out_ += ';';
}

void MarkupWriter::NewLine(std::size_t level) {
  LineBreak();
  for (; level > 0; --level) out_ += layout_.indent;
}

Result<std::string> MarkupWriter::Take() {
  if (fault_) return *fault_;
  return EncodeText(out_, layout_.charset, layout_.has_mark);
}

}  // namespace zent::xml
