#pragma once

#include <libxml/tree.h>

#include <cstddef>

namespace zent::xml {

/// True when all references of `document` together stand for at most `limit` bytes. Whatever is
/// read of the document afterwards is bounded by its size and `limit`.
bool ExpandsWithin(xmlDoc* document, std::size_t limit);

/// The entity that `reference` (a node) stands for when it is an internal one, else null.
const xmlEntity* InternalEntity(const xmlNode* reference);

}  // namespace zent::xml
