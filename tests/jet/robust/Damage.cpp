#include "jet/robust/Damage.h"

#include <gtest/gtest.h>

#include <random>

#include "jet/tools/ToolsFile.h"

namespace zent::jet::testing {
namespace {

// Where all is slow, each trial of so many is made; what is read is the same code.
constexpr std::size_t kOneOf = ZENT_DAMAGE_ONE_OF;

}  // namespace

void TryFile(std::string_view bytes) {
  const Verified verified = VerifyBytes(bytes);
  // A file that cannot be opened has told why.
  EXPECT_TRUE(verified.error != 0 || verified.summary.pages > 0);
  ReadEverything(bytes);
}

void TryCutFiles(const std::string& bytes, std::size_t page_size, std::size_t step) {
  for (std::size_t at = 0; at < bytes.size(); at += page_size * step * kOneOf) {
    SCOPED_TRACE(at);
    if (at > 0) TryFile(std::string_view(bytes).substr(0, at - 1));
    TryFile(std::string_view(bytes).substr(0, at));
    TryFile(std::string_view(bytes).substr(0, at + 1));
  }
  TryFile(std::string_view(bytes).substr(0, bytes.size() - 1));
}

void TryChangedBytes(const std::string& bytes, unsigned seed, int runs, int changes) {
  std::mt19937 random(seed);
  for (int run = 0; run < runs; run += int{ZENT_DAMAGE_ONE_OF}) {
    SCOPED_TRACE(run);
    std::string changed = bytes;
    for (int i = 0; i < changes; ++i) {
      changed[random() % changed.size()] = static_cast<char>(random() & 0xFFU);
    }
    TryFile(changed);
  }
}

void TryHeadsOfPages(const std::string& bytes, std::size_t page_size, std::size_t count,
                     unsigned value) {
  for (std::size_t page = 0; page < bytes.size(); page += page_size * kOneOf) {
    for (std::size_t i = 0; i < count; ++i) {
      SCOPED_TRACE(page + i);
      std::string changed = bytes;
      changed[page + i] = static_cast<char>(value);
      TryFile(changed);
    }
  }
}

}  // namespace zent::jet::testing
