#pragma once

#include <cstddef>
#include <string>

#include "base/RuntimeError.h"

namespace zent::xml {

/// Why a document was not loaded, and where.
struct LoadError {
  std::string url;     ///< the name that the document was given
  int code = 0;        ///< the parser's number; 0 never stands for a failure
  std::string reason;  ///< one line, without a line break at its end
  int line = 0;        ///< 1-based; 0 where no place can be named
  int column = 0;      ///< 1-based; 0 where no place can be named
};

/// The failure as a run-time error (321): reason, document, line and column.
RuntimeError ToRuntimeError(const LoadError& error);

/// What a document may cost. Beyond, it is refused.
struct LoadLimits {
  std::size_t bytes = std::size_t{256} << 20;  ///< size of the file, tested before it is parsed
  std::size_t expansion = std::size_t{16}
                          << 20;  ///< bytes that entity references stand for, in all
  /// Bytes of memory that copies and texts may add. A small element takes thirty times as many in
  /// memory as in a file, so it is more than the file may have: as much as the address space
  /// allows.
  std::size_t memory = (std::size_t{256} << 20) * (sizeof(void*) >= 8 ? 8 : 2);
};

}  // namespace zent::xml
