#pragma once

#include <libxml/parser.h>

#include <cstddef>
#include <optional>
#include <string_view>

#include "xml/LoadError.h"

namespace zent::xml {

/// An error where an element of `text`, which is UTF-8, has more attributes than the parser is
/// given to see: it compares every two of them.
std::optional<LoadError> TooManyAttributes(std::string_view text);

/// Keeps a parser from what takes it much longer than the size of the document tells: elements with
/// very many attributes in entities, very many namespaces at one place, very many attributes that
/// the document type gives to each element. Outlives the work of its parser.
class ParserGuard {
 public:
  /// Takes the place of handlers of `parser`, and its pointer to data of the user.
  explicit ParserGuard(xmlParserCtxt& parser);
  ParserGuard(const ParserGuard&) = delete;
  ParserGuard& operator=(const ParserGuard&) = delete;

  /// Why the parser was stopped, if it was.
  const std::optional<LoadError>& fault() const { return fault_; }

 private:
  friend struct GuardingHandlers;
  std::size_t defaults_ = 0;            ///< attributes with a default
  std::size_t default_namespaces_ = 0;  ///< those of them that declare namespaces
  std::optional<LoadError> fault_;
};

}  // namespace zent::xml
