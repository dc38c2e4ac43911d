#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "fakes/FakeSystemInfo.h"
#include "fakes/MemoryFileSystem.h"
#include "lib/TextFileReader.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using testing::FakeSystemInfo;
using testing::MemoryFileSystem;

constexpr const char* kPath = R"(C:\Lines.txt)";

/// The lines of a file; the last one is "error NUMBER" when it could not be read to its end.
std::vector<std::string> LinesOf(FileSystem& files, FakeSystemInfo system = {}) {
  Result<TextFileReader> reader = TextFileReader::Open(files, system, kPath);
  if (!reader.ok()) return {"error " + std::to_string(reader.number())};
  std::vector<std::string> lines;
  std::string line;
  while (true) {
    const Result<bool> read = reader.value().Next(line);
    if (!read.ok()) lines.push_back("error " + std::to_string(read.number()));
    if (!read.value_or(false)) return lines;
    lines.push_back(line);
  }
}

TEST(TextFileReader, ReadsLinesOfAnyEnd) {
  MemoryFileSystem files;
  files.PutFile(kPath, "one\r\ntwo\nthree\r\r\nK\xF6ln");
  EXPECT_THAT(LinesOf(files), ElementsAre("one", "two", "three", "", "K\xC3\xB6ln"));
}

TEST(TextFileReader, ReadsTheCodePageOfTheMachineAndUtf8BehindItsMark) {
  MemoryFileSystem files;
  FakeSystemInfo system;
  system.letters['\x9D'] = "\xC5\xA5";
  files.PutFile(kPath, "a\x9D");
  EXPECT_THAT(LinesOf(files, system), ElementsAre("a\xC5\xA5"));
  files.PutFile(kPath, "\xEF\xBB\xBFK\xC3\xB6ln");
  EXPECT_THAT(LinesOf(files, system), ElementsAre("K\xC3\xB6ln"));
}

TEST(TextFileReader, ReadsLinesAcrossItsPieces) {
  MemoryFileSystem files;
  std::string text;
  std::vector<std::string> expected;
  for (int i = 0; i < 300; ++i) {
    expected.emplace_back(1000 + i, 'x');
    text += expected.back() + "\r\n";
  }
  files.PutFile(kPath, text);
  EXPECT_EQ(LinesOf(files), expected);
}

TEST(TextFileReader, ReadsLinesOfMegabytes) {
  MemoryFileSystem files;
  const std::string ten_megabytes(std::size_t{10} << 20U, 'x');
  files.PutFile(kPath, "short\r\n" + ten_megabytes + "\r\nlast");
  const std::vector<std::string> lines = LinesOf(files);
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_TRUE(lines[1] == ten_megabytes);
  EXPECT_EQ(lines[2], "last");
}

/// A file of a terabyte without a line end, that is not there until it is read.
class EndlessLine : public File {
 public:
  explicit EndlessLine(std::uint64_t& furthest) : furthest_(furthest) {}
  Result<std::uint64_t> Size() override { return std::uint64_t{1} << 40U; }
  Result<std::size_t> ReadAt(std::uint64_t offset, std::span<char> buffer) override {
    std::fill(buffer.begin(), buffer.end(), 'x');
    furthest_ = std::max(furthest_, offset + buffer.size());
    return buffer.size();
  }

 private:
  std::uint64_t& furthest_;
};

class EndlessFiles : public MemoryFileSystem {
 public:
  Result<std::unique_ptr<File>> OpenForReading(std::string_view /*path*/) override {
    return std::unique_ptr<File>(std::make_unique<EndlessLine>(furthest));
  }
  std::uint64_t furthest = 0;  ///< byte that was read
};

TEST(TextFileReader, GivesUpALineThatDoesNotEnd) {
  EndlessFiles files;
  EXPECT_THAT(LinesOf(files), ElementsAre("error " + std::to_string(kOutOfStringSpace)));
  EXPECT_EQ(files.furthest, TextFileReader::kLongestLine);
}

TEST(TextFileReader, RefusesUtf16) {
  MemoryFileSystem files;
  files.PutFile(kPath,
                "\xFF\xFE"
                "a");
  EXPECT_THAT(LinesOf(files), ElementsAre("error " + std::to_string(kInvalidFileFormat)));
}

}  // namespace
}  // namespace zent
