#include <gtest/gtest.h>

#include "platform/win32/UniqueHandle.h"
#include "platform/win32/files/TestFolder.h"
#include "platform/win32/files/WholeFile.h"

namespace zent {
namespace {

using testing::TestFolder;

UniqueHandle OpenToWrite(const std::string& path, DWORD disposition) {
  return UniqueHandle(
      CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, disposition, 0, nullptr));
}

TEST(WriteWhole, WritesEveryByte) {
  const TestFolder folder;
  std::string large;
  for (int i = 0; large.size() < 20'000'000; ++i) large += std::to_string(i);
  for (const std::string& contents : {std::string(), std::string("a\0b\r\n", 5), large}) {
    SCOPED_TRACE(contents.size());
    UniqueHandle file = OpenToWrite(folder.Full("a"), CREATE_ALWAYS);
    EXPECT_TRUE(WriteWhole(file.get(), contents).ok());
    file.Close();
    EXPECT_TRUE(folder.Get("a") == contents);
  }
}

TEST(WriteWhole, TellsAFullDisk) {
  // A file of the host that never has room.
  const UniqueHandle full = OpenToWrite(R"(Z:\dev\full)", OPEN_EXISTING);
  ASSERT_TRUE(full.ok());
  EXPECT_EQ(WriteWhole(full.get(), "contents").number(), kDiskFull);
}

TEST(WriteWhole, TellsAHandleWithoutTheRight) {
  const TestFolder folder;
  folder.Put("a", "old");
  const UniqueHandle file(CreateFileA(folder.Full("a").c_str(), GENERIC_READ, FILE_SHARE_READ,
                                      nullptr, OPEN_EXISTING, 0, nullptr));
  EXPECT_EQ(WriteWhole(file.get(), "new").number(), kPathFileAccess);
  EXPECT_EQ(folder.Get("a"), "old");
}

TEST(OpenToRead, ReadsFromAnyPlace) {
  const TestFolder folder;
  std::string large;
  for (int i = 0; large.size() < 20'000'000; ++i) large += std::to_string(i);
  folder.Put("a", large);
  const auto file = OpenToRead(folder.Full("a"));
  ASSERT_TRUE(file.ok());
  EXPECT_EQ(file.value()->Size().value_or(0), large.size());
  std::string read(large.size(), '\0');
  EXPECT_EQ(file.value()->ReadAt(1, read).value_or(0), large.size() - 1);
  EXPECT_TRUE(std::string_view(read).substr(0, large.size() - 1) ==
              std::string_view(large).substr(1));
  EXPECT_EQ(file.value()->ReadAt(std::uint64_t{1} << 63U, read).value_or(1), 0U);
}

TEST(OpenToRead, LetsOthersDoWhatTheyLike) {
  TestFolder folder;
  folder.Put("a", "contents");
  const auto file = OpenToRead(folder.Full("a"));
  ASSERT_TRUE(file.ok());
  const UniqueHandle writer(CreateFileA(folder.Full("a").c_str(), GENERIC_WRITE,
                                        FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                        0, nullptr));
  EXPECT_TRUE(writer.ok());
  EXPECT_TRUE(folder.files().Move("a", "moved").ok());
  EXPECT_TRUE(folder.files().Delete("moved").ok());
  std::string read(8, '\0');
  EXPECT_EQ(file.value()->ReadAt(0, read).value_or(0), 8U);
  EXPECT_EQ(read, "contents");
}

}  // namespace
}  // namespace zent
