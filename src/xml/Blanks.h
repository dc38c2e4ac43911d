#pragma once

#include <libxml/tree.h>

#include <cstddef>
#include <optional>
#include <string>

namespace zent::xml {

/// Marks a text node as holding a character that was written as a reference: it stays, even if it
/// is white space alone.
void MarkReferenced(xmlNode* text);

struct BlanksDropped {
  std::optional<std::string> indent;  ///< of one level, where the dropped text showed it
  std::size_t nodes_left = 0;
};

/// Drops the text nodes below `document` that hold white space alone, except below
/// xml:space="preserve".
BlanksDropped DropBlanks(xmlDoc* document);

}  // namespace zent::xml
