#include <gtest/gtest.h>

#include "contracts/PeBuilder.h"
#include "contracts/VersionResourcesContract.h"
#include "fakes/MemoryFileSystem.h"
#include "platform/prefix/version/PrefixVersionResources.h"

namespace zent::testing {
namespace {

class MemorySubject : public VersionResourcesSubject {
 public:
  MemorySubject() { files_.PutFolder(folder()); }

  const VersionResources& resources() override { return resources_; }
  std::string folder() override { return R"(C:\Korvo)"; }
  void PutFile(std::string_view name, std::string_view bytes) override {
    files_.PutFile(folder() + '\\' + std::string(name), bytes);
  }

 private:
  MemoryFileSystem files_;
  PrefixVersionResources resources_{files_};
};

std::unique_ptr<VersionResourcesSubject> MakeMemorySubject() {
  return std::make_unique<MemorySubject>();
}

INSTANTIATE_TEST_SUITE_P(OverMemory, VersionResourcesContract,
                         ::testing::Values(&MakeMemorySubject));

struct OpenCase {
  const char* what;
  const char* path;
  int number;
};

constexpr OpenCase kOpenCases[] = {
    {"a library with a version", R"(C:\Korvo\good.dll)", 0},
    {"the name in any case", R"(c:\KORVO\Good.DLL)", 0},
    {"no such file", R"(C:\Korvo\missing.dll)", kFileNotFound},
    {"no such folder", R"(C:\Missing\good.dll)", kPathNotFound},
    {"a folder", R"(C:\Korvo)", kPathFileAccess},
    {"a text", R"(C:\Korvo\readme.txt)", kInvalidFileFormat},
    {"a library without resources", R"(C:\Korvo\bare.dll)", kInvalidFileFormat},
    {"a file that may not be read", R"(C:\Korvo\held.dll)", kPermissionDenied},
};

TEST(PrefixVersionResources, HandsBackWhyThereIsNoVersion) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\Korvo\good.dll)", LibraryOfVersion("3.6.0"));
  files.PutFile(R"(C:\Korvo\held.dll)", LibraryOfVersion("3.6.0"));
  files.HoldOpen(R"(C:\Korvo\held.dll)", false);
  files.PutFile(R"(C:\Korvo\bare.dll)", BuildPe({}));
  files.PutFile(R"(C:\Korvo\readme.txt)", "MZ is how a program begins");
  const PrefixVersionResources resources(files);
  for (const OpenCase& row : kOpenCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(resources.Open(row.path).number(), row.number);
  }
}

TEST(PrefixVersionResources, KeepsTheVersionOfTheMomentItWasOpened) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\Korvo\a.dll)", LibraryOfVersion("1.0"));
  const PrefixVersionResources resources(files);

  const Result<std::unique_ptr<VersionInfo>> before = resources.Open(R"(C:\Korvo\a.dll)");
  files.PutFile(R"(C:\Korvo\a.dll)", LibraryOfVersion("2.0"));
  const Result<std::unique_ptr<VersionInfo>> after = resources.Open(R"(C:\Korvo\a.dll)");

  constexpr const char* kPath = R"(\StringFileInfo\040904B0\FileVersion)";
  ASSERT_TRUE(before.ok());
  ASSERT_TRUE(after.ok());
  EXPECT_EQ(before.value()->QueryText(kPath), "1.0");
  EXPECT_EQ(after.value()->QueryText(kPath), "2.0");
}

TEST(PrefixVersionResources, ChangesNothing) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\Korvo\a.dll)", LibraryOfVersion("1.0"), kAttributeReadOnly);
  ASSERT_TRUE(PrefixVersionResources(files).Open(R"(C:\Korvo\a.dll)").ok());
  EXPECT_TRUE(files.log().changes().empty());
}

}  // namespace
}  // namespace zent::testing
