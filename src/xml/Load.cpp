#include <libxml/SAX2.h>
#include <libxml/parser.h>

#include <limits>
#include <utility>

#include "xml/Blanks.h"
#include "xml/Doctype.h"
#include "xml/DocumentState.h"
#include "xml/Entities.h"
#include "xml/ErrorCodes.h"
#include "xml/LibraryErrors.h"
#include "xml/Namespaces.h"
#include "xml/ParserGuard.h"
#include "xml/Tree.h"

namespace zent::xml {
namespace {

// No entity is put in place of its reference, no document type or inclusion is read, no address is
// opened, and of the encoding nothing is left to decide: the text is UTF-8 whatever it declares.
constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_IGNORE_ENC;

struct FreeParser {
  void operator()(xmlParserCtxt* parser) const { xmlFreeParserCtxt(parser); }
};

/// Takes text as the library does, and marks what comes from a character reference: such a call is
/// the one behind whose text a semicolon has just been read.
void TakeCharacters(void* context, const xmlChar* text, int length) {
  xmlSAX2Characters(context, text, length);
  const auto* parser = static_cast<const xmlParserCtxt*>(context);
  const std::string_view characters(reinterpret_cast<const char*>(text),
                                    static_cast<std::size_t>(length));
  const xmlParserInput* input = parser->input;
  if (!IsBlank(characters) || input == nullptr || input->cur <= input->base ||
      input->cur[-1] != ';' || parser->node == nullptr || parser->node->last == nullptr) {
    return;
  }
  if (parser->node->last->type == XML_TEXT_NODE) MarkReferenced(parser->node->last);
}

std::variant<LibraryPtr<xmlDoc>, LoadError> Parse(const std::string& utf8) {
  LibraryErrors errors;
  const std::unique_ptr<xmlParserCtxt, FreeParser> parser(xmlNewParserCtxt());
  if (!parser) return LoadError{{}, kDocumentTooBig, "Out of memory"};
  ParserGuard guard(*parser);  // changed by what the parser calls
  parser->sax->characters = TakeCharacters;
  parser->sax->ignorableWhitespace = TakeCharacters;
  LibraryPtr<xmlDoc> document(xmlCtxtReadMemory(
      parser.get(), utf8.data(), static_cast<int>(utf8.size()), nullptr, nullptr, kOptions));
  if (guard.fault()) return *guard.fault();
  if (document && !errors.first() && xmlDocGetRootElement(document.get()) != nullptr) {
    return document;
  }
  return errors.first().value_or(LoadError{{}, kInternalError, "The document cannot be read"});
}

SourceLayout LayoutOf(const SourceText& source, std::optional<std::string> indent) {
  SourceLayout layout;
  layout.charset = source.charset;
  layout.has_mark = source.has_mark;
  layout.line_break = source.line_break;
  layout.ends_with_break = source.utf8.ends_with('\n');
  if (indent) layout.indent = std::move(*indent);
  layout.declaration = DeclarationOf(source.utf8);
  layout.doctype = DoctypeOf(source.utf8);
  return layout;
}

std::variant<Document, LoadError> LoadUnnamed(std::string_view bytes, const LoadLimits& limits) {
  if (bytes.size() > limits.bytes) {
    return LoadError{{},
                     kDocumentTooBig,
                     "The document has more than " + std::to_string(limits.bytes) + " bytes"};
  }
  std::variant<SourceText, LoadError> decoded = DecodeSource(bytes);
  if (auto* error = std::get_if<LoadError>(&decoded)) return std::move(*error);
  const SourceText& source = std::get<SourceText>(decoded);
  if (source.utf8.size() > std::size_t{std::numeric_limits<int>::max()}) {
    return LoadError{{}, kDocumentTooBig, "The document is too big"};
  }

  if (std::optional<LoadError> error = TooManyAttributes(source.utf8)) return std::move(*error);
  std::variant<LibraryPtr<xmlDoc>, LoadError> parsed = Parse(source.utf8);
  if (auto* error = std::get_if<LoadError>(&parsed)) return std::move(*error);
  auto state = std::make_unique<DocumentAccess::State>();
  state->document = std::move(std::get<LibraryPtr<xmlDoc>>(parsed));
  if (!ExpandsWithin(state->document.get(), limits.expansion)) {
    return LoadError{{},
                     kEntityExpansion,
                     "The entities of the document stand for more than " +
                         std::to_string(limits.expansion) + " bytes"};
  }
  if (!DecodeNamespaceNames(state->document.get())) {
    return LoadError{{}, kInternalError, "The name of a namespace holds an entity"};
  }
  BlanksDropped blanks = DropBlanks(state->document.get());
  state->document->_private = state.get();
  state->node_count = blanks.nodes_left;
  state->byte_count = bytes.size();
  state->room = limits.memory;
  state->layout = LayoutOf(source, std::move(blanks.indent));
  return DocumentAccess::Make(std::move(state));
}

}  // namespace

LoadResult Document::Load(std::string_view bytes, std::string_view name, const LoadLimits& limits) {
  std::variant<Document, LoadError> loaded = LoadUnnamed(bytes, limits);
  if (auto* error = std::get_if<LoadError>(&loaded)) {
    error->url = name;
    return std::move(*error);
  }
  return std::move(std::get<Document>(loaded));
}

RuntimeError ToRuntimeError(const LoadError& error) {
  std::string text = "The XML document " + error.url + " cannot be read: " + error.reason;
  if (error.line > 0) {
    text +=
        " (line " + std::to_string(error.line) + ", column " + std::to_string(error.column) + ")";
  }
  return {kInvalidFileFormat, text};
}

}  // namespace zent::xml
