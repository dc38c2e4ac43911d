#include <gtest/gtest.h>

#include "contracts/ShellLinksContract.h"
#include "fakes/FakeShellLinks.h"
#include "fakes/MemoryFileSystem.h"

namespace zent::testing {
namespace {

class FakeSubject : public ShellLinksSubject {
 public:
  FakeSubject() { files_.PutFolder(R"(C:\Desktop)"); }
  ShellLinks& links() override { return links_; }
  std::string folder() override { return R"(C:\Desktop\)"; }
  std::string Contents(const std::string& name) override {
    return files_.Contents(folder() + name).value_or("");
  }
  void MakeReadOnly(const std::string& name) override {
    ASSERT_TRUE(files_.SetAttributes(folder() + name, kAttributeReadOnly).ok());
  }

 private:
  MemoryFileSystem files_;
  FakeShellLinks links_{files_};
};

INSTANTIATE_TEST_SUITE_P(Fake, ShellLinksContract, ::testing::Values([] {
                           return std::unique_ptr<ShellLinksSubject>(new FakeSubject);
                         }));

TEST(FakeShellLinks, KeepsWhatWasMadeAndNothingElse) {
  MemoryFileSystem files;
  FakeShellLinks links(files);
  EXPECT_TRUE(links.Create(R"(C:\a.lnk)", {.target = R"(C:\a.exe)", .arguments = "/x"}).ok());
  EXPECT_FALSE(links.Create(R"(C:\nosuch\a.lnk)", {.target = R"(C:\a.exe)"}).ok());
  ASSERT_EQ(links.created.size(), 1U);
  EXPECT_EQ(links.created[0].file, R"(C:\a.lnk)");
  EXPECT_EQ(links.created[0].link.arguments, "/x");
  EXPECT_EQ(files.Contents(R"(C:\a.lnk)"), R"(link to C:\a.exe)");
}

}  // namespace
}  // namespace zent::testing
