#include "xml/Content.h"

#include <string>

#include "base/Utf.h"

namespace zent::xml {
namespace {

bool IsXmlCharacter(char32_t c) {
  return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c < 0xD800) ||
         (c >= 0xE000 && c != 0xFFFE && c != 0xFFFF);
}

bool HoldsOnlyXmlCharacters(std::string_view text) {
  if (!IsUtf8(text)) return false;
  for (std::size_t at = 0; at < text.size();) {
    if (!IsXmlCharacter(NextCodePoint(text, at))) return false;
  }
  return true;
}

RuntimeError Refused(const std::string& reason) {
  return {kInvalidProcedureCall, "The text cannot stand in an XML document: " + reason};
}

bool Has(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

}  // namespace

Status CheckContent(NodeKind kind, std::string_view text) {
  if (!HoldsOnlyXmlCharacters(text)) return Refused("it holds a character that XML does not have");
  const bool comment = kind == NodeKind::Comment;
  const bool instruction = kind == NodeKind::ProcessingInstruction;
  if (comment && (Has(text, "--") || text.ends_with('-'))) {
    return Refused("a comment cannot hold \"--\"");
  }
  if (instruction && Has(text, "?>")) {
    return Refused("a processing instruction cannot hold \"?>\"");
  }
  // Only text and attributes can write it as a reference; elsewhere it would be read as a line end.
  if ((comment || instruction || kind == NodeKind::CData) && Has(text, "\r")) {
    return Refused("a carriage return cannot be written there");
  }
  return {};
}

}  // namespace zent::xml
