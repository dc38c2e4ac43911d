#include "xml/LibraryErrors.h"

#include <libxml/parser.h>
#include <libxml/xmlerror.h>

#include <string>

#include "xml/Tree.h"

namespace zent::xml {

namespace {

bool IsLostEntity(const xmlError& error) {
  return error.code == XML_WAR_UNDECLARED_ENTITY && error.ctxt != nullptr &&
         static_cast<const xmlParserCtxt*>(error.ctxt)->instate == XML_PARSER_ATTRIBUTE_VALUE;
}

/// Any text may name a namespace: the parser's remark that one is no address is no fault.
bool IsNamespaceFault(const xmlError& error) {
  return error.domain == XML_FROM_NAMESPACE && error.code != XML_WAR_NS_URI;
}

}  // namespace

struct ErrorReceiver {
  static void Take(void* receiver, xmlError* error) {
    auto& first = static_cast<LibraryErrors*>(receiver)->first_;
    // Errors beside fatal ones are the parser's remarks on the document type, which it goes past;
    // those of namespaces it does not, and an unknown entity in an attribute would be lost.
    const bool counts = error->level == XML_ERR_FATAL || IsNamespaceFault(*error) ||
                        error->domain == XML_FROM_XPATH || IsLostEntity(*error);
    if (first || error->level < XML_ERR_ERROR || !counts) return;
    std::string reason = error->message == nullptr ? "" : error->message;
    while (!reason.empty() && IsBlank(reason.substr(reason.size() - 1))) reason.pop_back();
    first = LoadError{{}, error->code, reason, error->line, error->int2};
  }
};

namespace {

void StartLibrary() {
  // The library wants its first call to be made by one thread.
  static const bool started = [] {
    xmlInitParser();
    return true;
  }();
  static_cast<void>(started);
}

// Some faults of an expression are written as text only, beside the error that is reported.
void DropText(void* /*context*/, const char* /*format*/, ...) {}

}  // namespace

LibraryErrors::LibraryErrors() {
  StartLibrary();
  old_text_context_ = xmlGenericErrorContext;
  old_text_handler_ = reinterpret_cast<void (*)()>(xmlGenericError);
  xmlSetGenericErrorFunc(nullptr, DropText);
  old_context_ = xmlStructuredErrorContext;
  old_handler_ = reinterpret_cast<void (*)()>(xmlStructuredError);
  xmlSetStructuredErrorFunc(this, ErrorReceiver::Take);
}

LibraryErrors::~LibraryErrors() {
  xmlSetGenericErrorFunc(old_text_context_,
                         reinterpret_cast<xmlGenericErrorFunc>(old_text_handler_));
  xmlSetStructuredErrorFunc(old_context_, reinterpret_cast<xmlStructuredErrorFunc>(old_handler_));
}

}  // namespace zent::xml
