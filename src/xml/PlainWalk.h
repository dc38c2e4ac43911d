#pragma once

#include <libxml/tree.h>

#include <vector>

#include "xml/ChildIndexes.h"
#include "xml/PlainPath.h"

namespace zent::xml {

enum class Wanted { First, All };

/// The nodes that `path` leads to from `from`, in document order; of them the first alone where no
/// more are wanted. The same nodes as the library's evaluation of the expression gives, without its
/// cost: nothing is collected, where the first is wanted the walk ends there, and `indexes`, those
/// of the document, spare it many children.
std::vector<xmlNode*> WalkPlainPath(const PlainPath& path, xmlNode* from, Wanted wanted,
                                    ChildIndexes& indexes);

}  // namespace zent::xml
