#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "ui/console/LineBuffer.h"

namespace zent {
namespace {

using ::testing::ElementsAreArray;

constexpr std::size_t kLongest = std::size_t{64} << 10U;

struct LinesCase {
  const char* what;
  std::vector<std::string> read;  ///< piece by piece
  std::vector<std::string> lines;
  std::optional<std::string> rest;
};

const LinesCase kLinesCases[] = {
    {"nothing", {}, {}, std::nullopt},
    {"a line", {"yes\n"}, {"yes"}, std::nullopt},
    {"the other line end", {"yes\r\n"}, {"yes"}, std::nullopt},
    {"an empty line", {"\n"}, {""}, std::nullopt},
    {"two in one piece", {"a\nb\n"}, {"a", "b"}, std::nullopt},
    {"one in pieces", {"y", "e", "s\r", "\n"}, {"yes"}, std::nullopt},
    {"a rest", {"a\nb"}, {"a"}, "b"},
    {"a lone carriage return stays", {"a\rb\n"}, {"a\rb"}, std::nullopt},
    {"a line that is too long",
     {std::string(kLongest + 5, 'x'), "xx\nb\n"},
     {std::string(kLongest, 'x'), "b"},
     std::nullopt},
};

TEST(LineBuffer, CutsWhatWasReadIntoLines) {
  for (const LinesCase& row : kLinesCases) {
    SCOPED_TRACE(row.what);
    LineBuffer buffer;
    std::vector<std::string> lines;
    for (const std::string& piece : row.read) {
      buffer.Append(piece);
      while (auto line = buffer.Take()) lines.push_back(*line);
    }
    EXPECT_THAT(lines, ElementsAreArray(row.lines));
    EXPECT_EQ(buffer.TakeRest(), row.rest);
    EXPECT_EQ(buffer.TakeRest(), std::nullopt);
  }
}

}  // namespace
}  // namespace zent
