#pragma once

#include <libxml/tree.h>

#include <cstddef>
#include <optional>
#include <string>

namespace zent::xml {

/// Marks a text node as holding a character that was written as a reference: it stays, even if it
/// is white space alone.
void MarkReferenced(xmlNode* text);

/// True for white space directly beside a CDATA section or a reference to an entity: it parts words
/// of one text and is no indentation.
bool IsBesideText(const xmlNode* blanks);

struct BlanksDropped {
  std::optional<std::string> indent;  ///< of one level, where the dropped text showed it
  std::size_t nodes_left = 0;
};

/// Drops the text nodes below `document` that hold white space alone, except beside other text and
/// below xml:space="preserve".
BlanksDropped DropBlanks(xmlDoc* document);

}  // namespace zent::xml
