#pragma once

#include <libxml/tree.h>

namespace zent::xml {

/// The parser leaves an ampersand in the name of a namespace as "&#38;", and references to entities
/// as they are: puts the first right, and is false for the second, which are not taken.
bool DecodeNamespaceNames(xmlDoc* document);

/// Makes the namespaces of `top` and all below it hold where it stands now: each prefix in use
/// means what it meant, and an element without a namespace stays without one. What is missing is
/// declared within `top`.
void SettleNamespaces(xmlNode* top);

/// The declaration that gives `prefix` the meaning `href` at `element`, or null where none does.
xmlNs* NamespaceInScope(const xmlNode* element, const xmlChar* prefix, const xmlChar* href);

/// The declaration that gives `prefix` the meaning `href` at `element`, made below or at `top`
/// where there is none. `prefix` is null for the default namespace.
xmlNs* DeclaredNamespace(xmlNode* element, xmlNode* top, const xmlChar* prefix,
                         const xmlChar* href);

}  // namespace zent::xml
