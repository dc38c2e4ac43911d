#include "xml/ParserGuard.h"

#include <libxml/SAX2.h>
#include <libxml/hash.h>

#include <string>
#include <utility>

#include "xml/ErrorCodes.h"
#include "xml/Tags.h"
#include "xml/Tree.h"

namespace zent::xml {
namespace {

constexpr std::size_t kMostAttributes = 4096;  // of one element
constexpr std::size_t kMostNamespaces = 4096;  // of one element and those around it
constexpr std::size_t kMostDefaults = 64;      // that the parser compares to each element's own
constexpr std::size_t kMostDefaultNamespaces = 1024;

LoadError TooMany(const std::string& what, std::size_t limit, const std::string& of_what) {
  return {{}, kDocumentTooBig, what + " more than " + std::to_string(limit) + " " + of_what};
}

}  // namespace

/// Handlers of the parser: what the library's own do, and a look at what that leads to. A part of
/// the document that an entity holds has a parser of its own, with the same guard.
struct GuardingHandlers {
  static xmlParserCtxt* Parser(void* context) { return static_cast<xmlParserCtxt*>(context); }
  static ParserGuard& Guard(void* context) {
    return *static_cast<ParserGuard*>(Parser(context)->_private);
  }

  static void Stop(void* context, LoadError error) {
    ParserGuard& guard = Guard(context);
    if (!guard.fault_) guard.fault_ = std::move(error);
    xmlStopParser(Parser(context));
  }

  static void DeclareEntity(void* context, const xmlChar* name, int type, const xmlChar* public_id,
                            const xmlChar* system_id, xmlChar* content) {
    xmlSAX2EntityDecl(context, name, type, public_id, system_id, content);
    if (std::optional<LoadError> error = TooManyAttributes(View(content))) {
      Stop(context, std::move(*error));
    }
  }

  static void DeclareAttribute(void* context, const xmlChar* element, const xmlChar* name, int type,
                               int default_kind, const xmlChar* default_value,
                               xmlEnumeration* values) {
    xmlSAX2AttributeDecl(context, element, name, type, default_kind, default_value, values);
    ParserGuard& guard = Guard(context);
    if (default_value != nullptr) ++guard.defaults_;
    if (!View(name).starts_with("xmlns")) return;
    // The library keeps them in a list, which it walks along for each new attribute.
    if (++guard.default_namespaces_ <= kMostDefaultNamespaces) return;
    Stop(context, TooMany("The document type declares", kMostDefaultNamespaces, "namespaces"));
  }

  /// Called behind the inner part of the document type; nothing is read of the outer one. Defaults
  /// are not put into the tree, but they are compared to the attributes of each element. Those of
  /// namespaces count, so a few are left.
  static void EndDocumentType(void* context, const xmlChar* /*name*/, const xmlChar* /*public_id*/,
                              const xmlChar* /*system_id*/) {
    xmlParserCtxt* const parser = Parser(context);
    if (Guard(context).defaults_ <= kMostDefaults || parser->attsDefault == nullptr) return;
    xmlHashFree(parser->attsDefault, xmlHashDefaultDeallocator);
    parser->attsDefault = nullptr;
  }

  static void StartElement(void* context, const xmlChar* name, const xmlChar* prefix,
                           const xmlChar* uri, int namespace_count, const xmlChar** namespaces,
                           int attribute_count, int defaulted_count, const xmlChar** attributes) {
    xmlSAX2StartElementNs(context, name, prefix, uri, namespace_count, namespaces, attribute_count,
                          defaulted_count, attributes);
    if (Guard(context).fault_) return xmlStopParser(Parser(context));           // within an entity
    const auto in_scope = static_cast<std::size_t>(Parser(context)->nsNr) / 2;  // name and address
    if (in_scope <= kMostNamespaces) return;
    Stop(context, TooMany("An element stands below", kMostNamespaces, "namespaces"));
  }
};

std::optional<LoadError> TooManyAttributes(std::string_view text) {
  if (!HasTagWithMoreThan(kMostAttributes, text)) return {};
  return TooMany("An element has", kMostAttributes, "attributes");
}

ParserGuard::ParserGuard(xmlParserCtxt& parser) {
  parser._private = this;
  parser.sax->entityDecl = GuardingHandlers::DeclareEntity;
  parser.sax->attributeDecl = GuardingHandlers::DeclareAttribute;
  parser.sax->externalSubset = GuardingHandlers::EndDocumentType;
  parser.sax->startElementNs = GuardingHandlers::StartElement;
}

}  // namespace zent::xml
