#include <gtest/gtest.h>
#include <windows.h>

// After windows.h, which it needs.
#include <sddl.h>

#include <vector>

#include "platform/win32/files/TestFolder.h"

namespace zent {
namespace {

using testing::TestFolder;

std::vector<char> RightsOf(const std::string& path) {
  DWORD size = 0;
  GetFileSecurityA(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
  std::vector<char> rights(size);
  EXPECT_TRUE(
      GetFileSecurityA(path.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size));
  return rights;
}

/// Lets everyone do everything, which no folder of the user does by itself.
void OpenToEveryone(const std::string& path) {
  PSECURITY_DESCRIPTOR everyone = nullptr;
  ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorA(
      "D:(A;;FA;;;WD)", SDDL_REVISION_1, &everyone, nullptr));
  EXPECT_TRUE(SetFileSecurityA(path.c_str(), DACL_SECURITY_INFORMATION, everyone));
  LocalFree(everyone);
}

class Rights : public ::testing::Test {
 protected:
  Rights() {
    folder_.Put("new", "new");
    folder_.Put("target", "old");
    usual_ = RightsOf(folder_.Full("target"));
    OpenToEveryone(folder_.Full("target"));
    opened_ = RightsOf(folder_.Full("target"));
  }
  TestFolder folder_;
  std::vector<char> usual_;
  std::vector<char> opened_;
};

TEST_F(Rights, OfAFileThatIsReplacedStay) {
  ASSERT_NE(usual_, opened_);
  EXPECT_TRUE(folder_.files().Copy("new", "target").ok());
  EXPECT_EQ(folder_.Get("target"), "new");
  EXPECT_EQ(RightsOf(folder_.Full("target")), opened_);
  EXPECT_TRUE(folder_.files().Write("target", "newer").ok());
  EXPECT_EQ(folder_.Get("target"), "newer");
  EXPECT_EQ(RightsOf(folder_.Full("target")), opened_);
}

TEST_F(Rights, OfANewFileAreTheUsualOnes) {
  EXPECT_TRUE(folder_.files().Write("other", "new").ok());
  EXPECT_EQ(RightsOf(folder_.Full("other")), usual_);
}

}  // namespace
}  // namespace zent
