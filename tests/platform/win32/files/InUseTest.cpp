#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <string>

#include "platform/win32/UniqueHandle.h"
#include "platform/win32/files/HoldingProcess.h"
#include "platform/win32/files/TestFolder.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using testing::HoldingProcess;
using testing::TestFolder;

class InUse : public ::testing::Test {
 protected:
  TestFolder folder_;
};

TEST_F(InUse, ALoadedLibraryMayBeRenamedButNotReplaced) {
  for (const char* mode : {"load", "run"}) {
    SCOPED_TRACE(mode);
    TestFolder folder;
    folder.Put("new.dll", "new");
    const auto file = folder.path() / "addin.dll";
    std::filesystem::copy_file(testing::HoldProgram(), file);
    const std::string old = folder.Get("addin.dll");
    const HoldingProcess holder(file, mode);
    ASSERT_TRUE(holder.ok());
    FileSystem& files = folder.files();

    EXPECT_EQ(files.Copy("new.dll", "addin.dll").number(), kPermissionDenied);
    EXPECT_EQ(files.Write("addin.dll", "x").number(), kPermissionDenied);
    EXPECT_EQ(files.Delete("addin.dll").number(), kPermissionDenied);
    EXPECT_TRUE(files.Move("addin.dll", "addin old.dll").ok());
    EXPECT_TRUE(files.Copy("new.dll", "addin.dll").ok());

    EXPECT_EQ(folder.Get("addin.dll"), "new");
    EXPECT_TRUE(folder.Get("addin old.dll") == old);
    EXPECT_EQ(folder.Names().size(), 3U);
  }
}

TEST_F(InUse, ARefusedFileIsLeftAsItWasAndNothingBesideIt) {
  folder_.Put("new", "new");
  const auto file = folder_.Put("held", "old");
  for (const char* mode : {"r0", "r1", "r3", "r7", "w3", "map"}) {
    SCOPED_TRACE(mode);
    {
      const HoldingProcess holder(file, mode);
      ASSERT_TRUE(holder.ok());
      EXPECT_EQ(folder_.files().Copy("new", "held").number(), kPermissionDenied);
      EXPECT_EQ(folder_.files().Write("held", "x").number(), kPermissionDenied);
    }
    EXPECT_EQ(folder_.Get("held"), "old");
    EXPECT_THAT(folder_.Names(), ElementsAre("held", "new"));
  }
  EXPECT_TRUE(folder_.files().Copy("new", "held").ok());
  EXPECT_EQ(folder_.Get("held"), "new");
}

TEST_F(InUse, ASourceThatIsNotSharedIsRefused) {
  folder_.Put("target", "old");
  const HoldingProcess holder(folder_.Put("held", "new"), "r0");
  ASSERT_TRUE(holder.ok());
  EXPECT_EQ(folder_.files().Copy("held", "target").number(), kPermissionDenied);
  EXPECT_EQ(folder_.files().OpenForReading("held").number(), kPermissionDenied);
  EXPECT_EQ(folder_.Get("target"), "old");
  EXPECT_THAT(folder_.Names(), ElementsAre("held", "target"));
}

TEST_F(InUse, AReadOnlyFileInUseIsReadOnlyFirst) {
  const HoldingProcess holder(folder_.Put("held", "old"), "r1");
  ASSERT_TRUE(holder.ok());
  FileSystem& files = folder_.files();
  EXPECT_TRUE(files.SetAttributes("held", kAttributeReadOnly).ok());
  EXPECT_EQ(files.Write("held", "new").number(), kPathFileAccess);
  EXPECT_EQ(files.Delete("held").number(), kPathFileAccess);
  EXPECT_EQ(files.Move("held", "new").number(), kPermissionDenied);
}

/// Opens each half-written file of a folder as soon as it can, sharing everything, and keeps it
/// open, as a virus scanner does; one at a time, in a thread of its own.
class Scanner {
 public:
  explicit Scanner(const TestFolder& folder)
      : pattern_(folder.Full(".zent-*")), folder_(folder.text()) {
    thread_ = UniqueHandle(CreateThread(nullptr, 0, Run, this, 0, nullptr));
  }
  Scanner(const Scanner&) = delete;
  Scanner& operator=(const Scanner&) = delete;
  ~Scanner() {
    ended_ = true;
    WaitForSingleObject(thread_.get(), INFINITE);
  }

  bool has_one() const { return has_one_; }

 private:
  static DWORD WINAPI Run(void* self) {
    static_cast<Scanner*>(self)->Scan();
    return 0;
  }
  void Scan() {
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    UniqueHandle file;
    while (!ended_) {
      WIN32_FIND_DATAA found = {};
      const HANDLE search =
          file.ok() ? INVALID_HANDLE_VALUE : FindFirstFileA(pattern_.c_str(), &found);
      if (search == INVALID_HANDLE_VALUE) continue;
      FindClose(search);
      file = UniqueHandle(CreateFileA((folder_ + '\\' + found.cFileName).c_str(), GENERIC_READ,
                                      kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
      has_one_ = file.ok();
    }
  }

  std::string pattern_;
  std::string folder_;
  std::atomic<bool> has_one_ = false;
  std::atomic<bool> ended_ = false;
  UniqueHandle thread_;  // last: the thread uses the others
};

TEST_F(InUse, ANewFileMayBeOpenElsewhereBeforeItIsInPlace) {
  // Large, so that there is the time to come upon it.
  folder_.Put("new", std::string(std::size_t{16} << 20U, 'x'));
  bool met = false;
  for (int i = 0; i < 50 && !met; ++i) {
    const Scanner scanner(folder_);
    EXPECT_TRUE(folder_.files().Copy("new", "target " + std::to_string(i)).ok());
    met = scanner.has_one();
  }
  EXPECT_TRUE(met) << "no copy could be opened while it was made";
}

TEST_F(InUse, AHeldFileDoesNotMoveToAnotherVolume) {
  const HoldingProcess holder(folder_.Put("held", "old"), "r1");
  ASSERT_TRUE(holder.ok());
  const std::string other = R"(Z:\dev\shm\zent-held-)" + std::to_string(GetCurrentProcessId());
  EXPECT_EQ(folder_.files().Move("held", other).number(), kPermissionDenied);
  EXPECT_EQ(folder_.Get("held"), "old");
  EXPECT_EQ(folder_.files().Attributes(other).number(), kFileNotFound);
}

TEST_F(InUse, AFolderThatIsACurrentFolderIsNotRenamed) {
  folder_.Put("dir/a");
  const HoldingProcess holder(folder_.path() / "dir", "folder");
  ASSERT_TRUE(holder.ok());
  EXPECT_EQ(folder_.files().Move("dir", "dir2").number(), kPermissionDenied);
  EXPECT_TRUE(folder_.files().Write(R"(dir\a)", "new").ok());
}

}  // namespace
}  // namespace zent
