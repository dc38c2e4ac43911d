#include <gtest/gtest.h>
#include <io.h>
#include <windows.h>

#include "app/host/OwnFile.h"
#include "support/TempFolder.h"

namespace zent {
namespace {

TEST(CreateOwnFile, GivesAFileThatIsNotInherited) {
  const testing::TempFolder folder;
  const std::u8string name = (folder.path() / u8"\u4E2D").u8string();
  const std::string path(name.begin(), name.end());
  {
    const OwnFile file = CreateOwnFile(path);
    ASSERT_NE(file, nullptr);
    auto* const handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file.get())));
    DWORD flags = HANDLE_FLAG_INHERIT;
    EXPECT_NE(GetHandleInformation(handle, &flags), FALSE);
    EXPECT_EQ(flags & HANDLE_FLAG_INHERIT, 0U);
    std::fputs("a\n", file.get());
  }
  EXPECT_EQ(folder.Get(u8"\u4E2D"), "a\n");
  CreateOwnFile(path);
  EXPECT_EQ(folder.Get(u8"\u4E2D"), "");
}

}  // namespace
}  // namespace zent
