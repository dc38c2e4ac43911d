#pragma once

#include <optional>

#include "xml/LoadError.h"

namespace zent::xml {

/// While it lives, what the XML library reports in this thread comes here, and none of it goes to
/// the library's default, standard error. What was set before is back afterwards. Starts the
/// library where nobody has.
class LibraryErrors {
 public:
  LibraryErrors();
  LibraryErrors(const LibraryErrors&) = delete;
  LibraryErrors& operator=(const LibraryErrors&) = delete;
  ~LibraryErrors();

  /// The first error (no warning) since the last call of Clear.
  const std::optional<LoadError>& first() const { return first_; }
  void Clear() { first_.reset(); }

 private:
  friend struct ErrorReceiver;
  std::optional<LoadError> first_;
  // What was set before; the library's types, which this header does not name.
  void* old_context_;
  void (*old_handler_)();
  void* old_text_context_;
  void (*old_text_handler_)();
};

}  // namespace zent::xml
