#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include "platform/win32/files/HoldingProcess.h"
#include "platform/win32/files/TestFolder.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using testing::HoldingProcess;
using testing::TestFolder;

TEST(Kill, LeavesTheOldFileOrTheNewOne) {
  TestFolder folder;
  const std::string old = "old";
  const std::string written(300'000, 'w');
  const std::string copied(500'000, 'c');
  folder.Put("other", copied);
  constexpr DWORD kRounds = 20;
  for (DWORD round = 0; round < kRounds; ++round) {
    SCOPED_TRACE(round);
    const auto file = folder.Put("file", old);
    {
      HoldingProcess writer(file, "replace");
      ASSERT_TRUE(writer.ok());
      Sleep(round);  // milliseconds; a replacement takes about one
      writer.Kill();
    }
    const std::string left = folder.Get("file");
    EXPECT_TRUE(left == old || left == written || left == copied) << left.size();
  }
  EXPECT_TRUE(folder.Get("other") == copied);
  // What the killed ones left is gone with the next file.
  EXPECT_TRUE(folder.files().Write("next", "").ok());
  EXPECT_THAT(folder.Names(), ElementsAre("file", "next", "other"));
}

}  // namespace
}  // namespace zent
