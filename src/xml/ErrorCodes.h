#pragma once

/// Numbers of load failures that are found outside the parser, in the parser's own numbering.
namespace zent::xml {

inline constexpr int kInternalError = 1;
inline constexpr int kDocumentTooBig = 2;  ///< the parser's "out of memory"
inline constexpr int kInvalidChar = 9;
inline constexpr int kUnsupportedEncoding = 32;
inline constexpr int kInvalidEncoding = 81;
inline constexpr int kEntityExpansion = 89;  ///< the parser's "entity reference loop"

}  // namespace zent::xml
