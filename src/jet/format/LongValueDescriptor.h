#pragma once

#include <array>
#include <cstdint>

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/format/Layout.h"

/// What the field of a memo or OLE column holds: where the value is.
namespace zent::jet {

inline constexpr std::size_t kLongValueDescriptorSize = 12;
inline constexpr std::uint32_t kMaxLongValue = 0x3FFFFFFF;

enum class LongValueKind : std::uint8_t {
  Chain = 0,   ///< rows that each begin with a pointer to the next
  Single = 1,  ///< one row
  Inline = 2,  ///< behind the descriptor
};

struct LongValueDescriptor {
  LongValueKind kind = LongValueKind::Inline;
  std::uint32_t length = 0;  ///< bytes of the value; rows may hold more
  RowPointer first = {};     ///< Single and Chain
  ByteView data = {};        ///< Inline
};

/// Reads a field. A field of no bytes is an empty value, inline. `page` is for errors.
Result<LongValueDescriptor> ParseLongValue(ByteView field, PageNumber page);

/// The twelve bytes; the data of an inline value goes behind them.
std::array<std::uint8_t, kLongValueDescriptorSize> LongValueField(LongValueKind kind,
                                                                  std::uint32_t length,
                                                                  RowPointer first);

}  // namespace zent::jet
