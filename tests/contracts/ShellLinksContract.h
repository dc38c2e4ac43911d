#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/ShellLinks.h"

/// What every adapter of ShellLinks must keep. An adapter's test includes this file once, makes a
/// ShellLinksSubject and instantiates the suite ShellLinksContract.
namespace zent::testing {

/// An adapter with a folder of the machine for its links.
class ShellLinksSubject {
 public:
  virtual ~ShellLinksSubject() = default;
  virtual ShellLinks& links() = 0;
  /// Full path of an existing folder, with a trailing backslash.
  virtual std::string folder() = 0;
  /// The bytes of a file of that folder; empty when it is missing.
  virtual std::string Contents(const std::string& name) = 0;
  virtual void MakeReadOnly(const std::string& name) = 0;
};

using ShellLinksFactory = std::unique_ptr<ShellLinksSubject> (*)();

class ShellLinksContract : public ::testing::TestWithParam<ShellLinksFactory> {
 protected:
  void SetUp() override { subject_ = GetParam()(); }

  Status Create(const std::string& name, const std::string& target) {
    return subject_->links().Create(subject_->folder() + name, {.target = target});
  }
  std::string Contents(const std::string& name) { return subject_->Contents(name); }
  ShellLinksSubject& subject() { return *subject_; }

 private:
  std::unique_ptr<ShellLinksSubject> subject_;
};

TEST_P(ShellLinksContract, WritesTheLinkFile) {
  EXPECT_TRUE(Create("Korvo.lnk", R"(C:\Korvo\Korvo.exe)").ok());
  EXPECT_NE(Contents("Korvo.lnk"), "");
}

TEST_P(ShellLinksContract, TheTargetNeedNotExist) {
  EXPECT_TRUE(Create("Korvo.lnk", R"(C:\nosuch\none.exe)").ok());
  EXPECT_NE(Contents("Korvo.lnk"), "");
}

TEST_P(ShellLinksContract, ReplacesALink) {
  EXPECT_TRUE(Create("Korvo.lnk", R"(C:\Korvo\Old.exe)").ok());
  const std::string old = Contents("Korvo.lnk");
  EXPECT_TRUE(Create("Korvo.lnk", R"(C:\Korvo\New.exe)").ok());
  EXPECT_NE(Contents("Korvo.lnk"), old);
}

TEST_P(ShellLinksContract, AMissingFolderIsPathNotFound) {
  EXPECT_EQ(Create(R"(nosuch\Korvo.lnk)", R"(C:\Korvo\Korvo.exe)").number(), kPathNotFound);
}

TEST_P(ShellLinksContract, AReadOnlyLinkStays) {
  EXPECT_TRUE(Create("Korvo.lnk", R"(C:\Korvo\Old.exe)").ok());
  const std::string old = Contents("Korvo.lnk");
  subject().MakeReadOnly("Korvo.lnk");
  EXPECT_EQ(Create("Korvo.lnk", R"(C:\Korvo\New.exe)").number(), kPathFileAccess);
  EXPECT_EQ(Contents("Korvo.lnk"), old);
}

TEST_P(ShellLinksContract, ATargetWithoutADriveIsRefused) {
  for (const char* target :
       {"", "Korvo.exe", R"(\Korvo\Korvo.exe)", R"(\\server\share\Korvo.exe)", "C:Korvo.exe"}) {
    SCOPED_TRACE(target);
    EXPECT_EQ(Create("Korvo.lnk", target).number(), kBadFileName);
    EXPECT_EQ(Contents("Korvo.lnk"), "");
  }
}

}  // namespace zent::testing
