#include "jet/format/LongValueDescriptor.h"

#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

// Length and kind share the first four bytes, the row pointer follows.
constexpr unsigned kKindShift = 30;
constexpr std::size_t kPointerOffset = 4;

}  // namespace

Result<LongValueDescriptor> ParseLongValue(ByteView field, PageNumber page) {
  if (field.empty()) return LongValueDescriptor{};
  if (field.size() < kLongValueDescriptorSize) {
    return Damaged(page, "the descriptor of a long value is cut");
  }
  const std::uint32_t first = LoadU32(field, 0);
  LongValueDescriptor descriptor;
  descriptor.length = first & kMaxLongValue;
  const std::uint32_t kind = first >> kKindShift;
  if (kind > static_cast<std::uint32_t>(LongValueKind::Inline)) {
    return Damaged(page, "a long value of unknown kind");
  }
  descriptor.kind = static_cast<LongValueKind>(kind);
  if (descriptor.kind != LongValueKind::Inline) {
    descriptor.first = RowPointer::FromPacked(LoadU32(field, kPointerOffset));
    return descriptor;
  }
  const ByteView data = field.subspan(kLongValueDescriptorSize);
  if (descriptor.length > data.size()) return Damaged(page, "a long value in its row is cut");
  descriptor.data = data.first(descriptor.length);
  return descriptor;
}

std::array<std::uint8_t, kLongValueDescriptorSize> LongValueField(LongValueKind kind,
                                                                  std::uint32_t length,
                                                                  RowPointer first) {
  std::array<std::uint8_t, kLongValueDescriptorSize> field = {};
  StoreU32(field, 0, (static_cast<std::uint32_t>(kind) << kKindShift) | (length & kMaxLongValue));
  if (kind != LongValueKind::Inline) StoreU32(field, kPointerOffset, first.packed());
  return field;
}

}  // namespace zent::jet
