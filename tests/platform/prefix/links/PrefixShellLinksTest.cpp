#include <gtest/gtest.h>

#include "contracts/LinkReader.h"
#include "contracts/ShellLinksContract.h"
#include "fakes/MemoryFileSystem.h"
#include "platform/prefix/links/PrefixShellLinks.h"

namespace zent {
namespace {

using testing::LinkFile;
using testing::MemoryFileSystem;
using testing::ReadLink;
using testing::ShellLinksContract;
using testing::ShellLinksSubject;

class PrefixSubject : public ShellLinksSubject {
 public:
  PrefixSubject() { files_.PutFolder(R"(C:\Desktop)"); }
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
  PrefixShellLinks links_{files_};
};

INSTANTIATE_TEST_SUITE_P(Prefix, ShellLinksContract, ::testing::Values([] {
                           return std::unique_ptr<ShellLinksSubject>(new PrefixSubject);
                         }));

struct KindCase {
  const char* what;
  const char* target;
  int kind;
};

constexpr KindCase kKindCases[] = {
    {"a file", R"(C:\Korvo\Korvo.exe)", 0x32},
    {"a folder", R"(C:\Korvo)", 0x31},
    {"what is not there is taken for a file", R"(C:\Korvo\none.exe)", 0x32},
};

TEST(PrefixShellLinks, LooksWhatTheTargetIs) {
  for (const KindCase& row : kKindCases) {
    SCOPED_TRACE(row.what);
    MemoryFileSystem files;
    files.PutFile(R"(C:\Korvo\Korvo.exe)", "MZ");
    PrefixShellLinks links(files);
    EXPECT_TRUE(links.Create(R"(C:\a.lnk)", {.target = row.target}).ok());
    const auto link = ReadLink(files.Contents(R"(C:\a.lnk)").value_or(""));
    ASSERT_TRUE(link.has_value());
    EXPECT_EQ(link->items.back().kind, row.kind);
    EXPECT_EQ(link->PathOfItems(), row.target);
  }
}

TEST(PrefixShellLinks, WritesTheFileAtOnce) {
  MemoryFileSystem files;
  PrefixShellLinks links(files);
  EXPECT_TRUE(links.Create(R"(C:\a.lnk)", {.target = R"(C:\b.exe)"}).ok());
  EXPECT_EQ(files.log().changes().size(), 1U);
  files.log().FailChange(1, StandardError(kDiskFull));
  EXPECT_EQ(links.Create(R"(C:\c.lnk)", {.target = R"(C:\b.exe)"}).number(), kDiskFull);
}

}  // namespace
}  // namespace zent
