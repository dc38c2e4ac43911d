#pragma once

#include <string_view>

#include "base/Status.h"
#include "xml/Node.h"

namespace zent::xml {

/// An error where a node of `kind` cannot hold `text`: characters that XML does not have, and what
/// would end a comment or processing instruction.
Status CheckContent(NodeKind kind, std::string_view text);

}  // namespace zent::xml
