#include <gtest/gtest.h>
#include <windows.h>

#include "platform/win32/FileChecks.h"
#include "platform/win32/UniqueHandle.h"
#include "support/TempFolder.h"

namespace zent {
namespace {

constexpr DWORD kWrite = GENERIC_READ | GENERIC_WRITE;
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

class FileChecks : public ::testing::Test {
 protected:
  /// The ANSI path of a file of the test's folder.
  std::string PathOf(const char* name) const { return (folder_.path() / name).string(); }
  std::string Put(const char* name) const { return folder_.Put(name, "x").string(); }

 private:
  testing::TempFolder folder_;
};

UniqueHandle Hold(const std::string& path, DWORD access, DWORD share) {
  return UniqueHandle(CreateFileA(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
}

TEST_F(FileChecks, SaysWhatIsWrongWithThePath) {
  Put("file");
  struct PathCase {
    const char* what;
    std::string path;
    int number;
  };
  const PathCase cases[] = {
      {"a file", PathOf("file"), 0},
      {"a missing file", PathOf("none"), kFileNotFound},
      {"a missing folder", PathOf(R"(none\file)"), kPathNotFound},
      {"a missing drive", R"(Q:\file)", kPathNotFound},
      {"a folder", PathOf("."), kPathFileAccess},
      {"a name that cannot be", PathOf("a?"), kBadFileName},
      {"nothing", "", kPathNotFound},
  };
  for (const PathCase& row : cases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(CheckFile(row.path, GENERIC_READ).number(), row.number);
    EXPECT_EQ(CheckFile(row.path, kWrite).number(), row.number);
  }
}

struct HoldCase {
  const char* what;
  DWORD access;
  DWORD share;
  int read;
  int write;
  int replace;
};

constexpr HoldCase kHoldCases[] = {
    {"everything is shared", GENERIC_READ, kShareAll, 0, 0, 0},
    {"nothing is shared", GENERIC_READ, 0, kPermissionDenied, kPermissionDenied, kPermissionDenied},
    {"reading is shared", GENERIC_READ, FILE_SHARE_READ, 0, kPermissionDenied, kPermissionDenied},
    {"all but deleting is shared", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, 0, 0,
     kPermissionDenied},
};

TEST_F(FileChecks, SaysWhatAnotherUserOfTheFileLeaves) {
  for (const HoldCase& row : kHoldCases) {
    SCOPED_TRACE(row.what);
    const std::string path = Put("held");
    const UniqueHandle holder = Hold(path, row.access, row.share);
    ASSERT_TRUE(holder.ok());
    EXPECT_EQ(CheckFile(path, GENERIC_READ).number(), row.read);
    EXPECT_EQ(CheckFile(path, kWrite).number(), row.write);
    EXPECT_EQ(CheckFile(path, GENERIC_WRITE | DELETE).number(), row.replace);
  }
}

TEST_F(FileChecks, AReadOnlyFileCanBeReadAlone) {
  const std::string path = Put("fixed");
  ASSERT_TRUE(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY));
  EXPECT_EQ(CheckFile(path, GENERIC_READ).number(), 0);
  EXPECT_EQ(CheckFile(path, kWrite).number(), kPathFileAccess);
  EXPECT_EQ(CheckFile(path, GENERIC_WRITE | DELETE).number(), kPathFileAccess);
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

}  // namespace
}  // namespace zent
