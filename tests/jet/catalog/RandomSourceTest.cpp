#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "jet/catalog/RandomSource.h"
#include "jet/format/ValueText.h"

namespace zent::jet {
namespace {

RandomSource AllBytes(std::uint8_t value) {
  return [value](std::span<std::uint8_t> bytes) { std::fill(bytes.begin(), bytes.end(), value); };
}

TEST(MakeGuid, SaysThatItIsRandom) {
  struct Row {
    const char* what;
    std::uint8_t byte;
    std::uint8_t version, variant;
  };
  constexpr Row kRows[] = {
      {"no bit set", 0x00, 0x40, 0x80},
      {"all bits set", 0xFF, 0x4F, 0xBF},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.what);
    const Guid guid = MakeGuid(AllBytes(row.byte));
    for (std::size_t i = 0; i < guid.bytes.size(); ++i) {
      SCOPED_TRACE(i);
      const std::uint8_t expected = i == 6 ? row.version : i == 8 ? row.variant : row.byte;
      EXPECT_EQ(guid.bytes[i], expected);
    }
  }
}

TEST(MakeGuid, DiffersEachTimeWithTheSourceOfTheSystem) {
  const RandomSource random = SystemRandom();
  std::set<Guid> guids;
  for (int i = 0; i < 1000; ++i) guids.insert(MakeGuid(random));
  EXPECT_EQ(guids.size(), 1000U);
}

TEST(MakeRandomNumber, IsNeverZero) {
  EXPECT_EQ(MakeRandomNumber(AllBytes(0)), 1);
  EXPECT_EQ(MakeRandomNumber(AllBytes(0xFF)), -1);
  EXPECT_EQ(MakeRandomNumber(AllBytes(0x01)), 0x01010101);
}

}  // namespace
}  // namespace zent::jet
