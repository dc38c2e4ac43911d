#include <gtest/gtest.h>

#include "app/windows/HostFolders.h"
#include "platform/win32/AnsiText.h"
#include "support/TempFolder.h"

namespace zent {
namespace {

TEST(HostFolders, MakesFullPathsWithoutALastBackslash) {
  struct Row {
    const char* folder;
    const char* full;
  };
  constexpr Row kRows[] = {
      {R"(C:\a\b\)", R"(C:\a\b)"},
      {R"(C:\a\..\b)", R"(C:\b)"},
      {R"(C:\)", R"(C:\)"},
      {"C:/a/b/", R"(C:\a\b)"},
      {"C:\\\xE4\xB8\xAD", "C:\\\xE4\xB8\xAD"},
  };
  for (const Row& row : kRows) EXPECT_EQ(FullFolder(row.folder), row.full);
}

TEST(HostFolders, KnowsFoldersFromFiles) {
  const testing::TempFolder folder;
  const std::string path = folder.path().string();
  folder.Put("file", "");
  EXPECT_TRUE(IsFolder(path));
  EXPECT_FALSE(IsFolder(path + R"(\file)"));
  EXPECT_FALSE(IsFolder(path + R"(\missing)"));
  EXPECT_FALSE(IsFolder(""));
  EXPECT_TRUE(IsFolder(ProgramFolder()));
}

TEST(HostFolders, NamesAFolderInTheLettersOfTheSystem) {
  const testing::TempFolder folder;
  const std::string path = folder.path().string();
  EXPECT_EQ(AnsiFolder(path), path);
  std::filesystem::create_directory(folder.path() / L"\u4E2D\u6587");
  const std::string name = AnsiFolder(path + "\\\xE4\xB8\xAD\xE6\x96\x87");
  EXPECT_TRUE(AnsiOf(name).ok());
  EXPECT_TRUE(IsFolder(name));
  EXPECT_EQ(AnsiFolder(path + "\\\xE4\xB8\xAD"), path + "\\\xE4\xB8\xAD") << "there is none";
}

}  // namespace
}  // namespace zent
