#include <gtest/gtest.h>
#include <windows.h>

#include "base/ErrorNumbers.h"
#include "platform/win32/Win32Errors.h"

namespace zent {
namespace {

TEST(Win32Errors, HaveTheirRunTimeNumberAndText) {
  EXPECT_EQ(ErrorOfWin32(ERROR_FILE_NOT_FOUND).number, kFileNotFound);
  EXPECT_EQ(ErrorOfWin32(ERROR_SHARING_VIOLATION).number, kPermissionDenied);
  EXPECT_EQ(ErrorOfWin32(ERROR_SHARING_VIOLATION).description, "Permission denied");
  EXPECT_EQ(ErrorOfWin32(999999).number, kPathFileAccess) << "a code without a row of its own";
}

TEST(Win32Errors, TakeTheErrorOfTheCallThatFailed) {
  ASSERT_EQ(GetFileAttributesA(R"(C:\no such folder\a)"), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(LastError().number, kPathNotFound);
}

}  // namespace
}  // namespace zent
