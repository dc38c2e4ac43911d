#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "ui/console/posix/InputPipe.h"
#include "ui/console/posix/LineReader.h"

namespace zent {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAreArray;
using testing::InputPipe;
using State = LineReader::State;

struct LinesCase {
  const char* what;
  std::string input;
  std::vector<std::string> lines;
};

const LinesCase kLinesCases[] = {
    {"no input has no line", "", {}},
    {"a line end alone is an empty line", "\n", {""}},
    {"LF ends a line", "a\nb\n", {"a", "b"}},
    {"CR LF ends a line", "a\r\nb\r\n", {"a", "b"}},
    {"a CR within a line stays", "a\rb\n", {"a\rb"}},
    {"the last line needs no end", "a\nb", {"a", "b"}},
    {"blanks stay", "  a \n", {"  a "}},
    {"NUL is a character", std::string("a\0b\n", 4), {std::string("a\0b", 3)}},
};

TEST(LineReader, ReadsLinesToTheEnd) {
  for (const LinesCase& row : kLinesCases) {
    SCOPED_TRACE(row.what);
    const InputPipe input(row.input);
    LineReader reader(input.fd());
    std::vector<std::string> lines;
    LineReader::Reading reading = reader.Next(std::nullopt);
    for (; reading.state == State::Line; reading = reader.Next(std::nullopt)) {
      lines.push_back(reading.line);
    }
    EXPECT_EQ(reading.state, State::End);
    EXPECT_THAT(lines, ElementsAreArray(row.lines));
    EXPECT_EQ(reader.Next(milliseconds(0)).state, State::End) << "it stays ended";
  }
}

TEST(LineReader, CutsALineThatIsTooLong) {
  constexpr std::size_t kLongest = std::size_t{64} << 10U;
  InputPipe input;
  LineReader reader(input.fd());
  std::thread writer([&] {
    for (int i = 0; i < 40; ++i) input.Type(std::string(5000, 'x'));
    input.Type("\nshort\n");
    input.Type(std::string(kLongest - 2, 'y') + "\n");
    input.End();
  });

  const auto first = reader.Next(std::nullopt);
  const auto second = reader.Next(std::nullopt);
  const auto third = reader.Next(std::nullopt);
  writer.join();

  EXPECT_EQ(first.line, std::string(kLongest, 'x'));
  EXPECT_EQ(second.line, "short");
  EXPECT_EQ(third.line.size(), kLongest - 2);
}

TEST(LineReader, ReturnsWithoutALineAfterTheTime) {
  InputPipe input;
  LineReader reader(input.fd());
  input.Type("half");
  const auto start = std::chrono::steady_clock::now();

  EXPECT_EQ(reader.Next(milliseconds(30)).state, State::Nothing);

  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(30));
  input.Type(" a line\nnext\n");
  EXPECT_EQ(reader.Next(milliseconds(0)).line, "half a line") << "what was read before is kept";
  EXPECT_EQ(reader.Next(milliseconds(0)).line, "next");
  EXPECT_EQ(reader.Next(milliseconds(0)).state, State::Nothing);
  EXPECT_EQ(reader.Next(milliseconds(-5)).state, State::Nothing);
}

TEST(LineReader, WaitsForTheLine) {
  InputPipe input;
  LineReader reader(input.fd());
  std::thread writer([&] {
    std::this_thread::sleep_for(milliseconds(20));
    input.Type("late\n");
  });
  const auto reading = reader.Next(milliseconds::max());
  writer.join();
  EXPECT_EQ(reading.line, "late");
}

TEST(LineReader, IsInterruptedByTheOtherDescriptor) {
  InputPipe input;
  InputPipe other("!");
  LineReader reader(input.fd());
  EXPECT_EQ(reader.Next(std::nullopt, other.fd()).state, State::Interrupt);
}

TEST(LineReader, TakesAnUnreadableInputForItsEnd) {
  EXPECT_EQ(LineReader(-1).Next(milliseconds(20)).state, State::Nothing);
  EXPECT_EQ(LineReader(9999).Next(std::nullopt).state, State::End);
}

}  // namespace
}  // namespace zent
