#pragma once

#include <libxml/tree.h>

namespace zent::xml {

// What id() finds stands in a list that the library fills while it parses, and when it makes an
// attribute. These keep the elements of the tree in it, and no others. `top` is an attribute, or a
// node with all that is in it.

/// To be called when `top` has been put somewhere: a node outside of the tree is not entered.
void EnterIdentifiers(xmlNode* top);

/// To be called before `top` is taken out or an attribute changed.
void ForgetIdentifiers(xmlNode* top);

}  // namespace zent::xml
