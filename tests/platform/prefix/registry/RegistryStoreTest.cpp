#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "platform/posix/UniqueFd.h"
#include "platform/prefix/registry/RegistryMachines.h"
#include "platform/prefix/registry/RegistryStore.h"

namespace zent {
namespace {

using ::testing::HasSubstr;
using testing::kEmptyUserFile;
using testing::kNow;
using testing::RunInChild;
using testing::TempFolder;

/// A folder with a registry file, and a store on it.
class RegistryStoreTest : public ::testing::Test {
 protected:
  RegistryStoreTest() { folder_.Put("user.reg", kEmptyUserFile); }

  RegistryStore Store() const { return {fd_.get(), "user.reg", "M/user.reg"}; }
  RegistryStore LoadedStore() const {
    RegistryStore store = Store();
    EXPECT_TRUE(store.Load().ok());
    return store;
  }
  static Status Set(RegistryStore& store, const std::string& name, const std::string& text) {
    return store.Save([&](const RegistryFile& file) {
      return Result<RegistryEdit>(file.EditText({"Korvo"}, name, text, kNow));
    });
  }
  std::string path() const { return (folder_.path() / "user.reg").string(); }

  TempFolder folder_;
  UniqueFd fd_{::open(folder_.path().c_str(), O_RDONLY | O_DIRECTORY)};
};

TEST_F(RegistryStoreTest, ReplacesTheFile) {
  RegistryStore store = LoadedStore();
  struct stat before = {};
  ASSERT_EQ(::stat(path().c_str(), &before), 0);
  ASSERT_TRUE(Set(store, "v", "x").ok());
  struct stat after = {};
  ASSERT_EQ(::stat(path().c_str(), &after), 0);
  EXPECT_NE(before.st_ino, after.st_ino);
  EXPECT_EQ(before.st_mode, after.st_mode);
  EXPECT_EQ(folder_.Get("user.reg"), store.file().text());
  EXPECT_EQ(
      folder_.Get("user.reg"),
      std::string(kEmptyUserFile) + "\n[Korvo] 1795253793\n#time=1dd799bcbb4dcc2\n\"v\"=\"x\"\n");
}

TEST_F(RegistryStoreTest, WritesNothingForAnEmptyEdit) {
  RegistryStore store = LoadedStore();
  ASSERT_TRUE(Set(store, "v", "x").ok());
  struct stat before = {};
  ASSERT_EQ(::stat(path().c_str(), &before), 0);
  ASSERT_TRUE(Set(store, "v", "x").ok());
  struct stat after = {};
  ASSERT_EQ(::stat(path().c_str(), &after), 0);
  EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST_F(RegistryStoreTest, ReportsWhatItCannotLoad) {
  RegistryStore store = Store();
  std::filesystem::remove(path());
  const Status missing = store.Load();
  EXPECT_EQ(missing.number(), kFileNotFound);
  EXPECT_THAT(missing.error().description, HasSubstr("M/user.reg"));

  folder_.Put("user.reg", "WINE REGISTRY Version 2\n[Soft");
  const Status half = store.Load();
  EXPECT_EQ(half.number(), kInvalidFileFormat);
  EXPECT_THAT(half.error().description, HasSubstr("M/user.reg, line 2"));
  EXPECT_FALSE(store.loaded());
}

TEST_F(RegistryStoreTest, RefusesWhatIsNoOrdinaryFile) {
  folder_.Put("elsewhere.reg", kEmptyUserFile);
  RegistryStore store = Store();

  std::filesystem::remove(path());
  std::filesystem::create_symlink("elsewhere.reg", path());
  EXPECT_EQ(store.Load().number(), kPathFileAccess);

  std::filesystem::remove(path());
  ASSERT_EQ(::mkfifo(path().c_str(), 0600), 0);
  EXPECT_EQ(store.Load().number(), kPathFileAccess);

  std::filesystem::remove(path());
  std::filesystem::create_directory(path());
  EXPECT_EQ(store.Load().number(), kPathFileAccess);
}

TEST_F(RegistryStoreTest, ReadsAgainWhatAnotherWriterStored) {
  RegistryStore first = LoadedStore();
  RegistryStore second = LoadedStore();
  ASSERT_TRUE(Set(first, "a", "1").ok());
  ASSERT_TRUE(Set(second, "b", "2").ok());
  ASSERT_TRUE(Set(first, "c", "3").ok());
  EXPECT_EQ(
      folder_.Get("user.reg"),
      std::string(kEmptyUserFile) +
          "\n[Korvo] 1795253793\n#time=1dd799bcbb4dcc2\n\"a\"=\"1\"\n\"b\"=\"2\"\n\"c\"=\"3\"\n");
  EXPECT_EQ(first.file().text(), folder_.Get("user.reg"));
}

TEST_F(RegistryStoreTest, SeesAFileThatWasWrittenInPlace) {
  RegistryStore store = LoadedStore();
  // Same file, same size: only the time of change tells.
  const timespec times[2] = {{0, UTIME_OMIT}, {1000, 5}};
  folder_.Put("user.reg", std::string(kEmptyUserFile).replace(0, 4, "WINX"));
  ASSERT_EQ(::utimensat(AT_FDCWD, path().c_str(), times, 0), 0);
  EXPECT_EQ(Set(store, "v", "x").number(), kInvalidFileFormat);
  EXPECT_EQ(store.file().text(), kEmptyUserFile);
}

TEST_F(RegistryStoreTest, LeavesADamagedFileAlone) {
  RegistryStore store = LoadedStore();
  const std::string half = std::string(kEmptyUserFile) + "\n[Soft";
  folder_.Put("user.reg", half);
  EXPECT_EQ(Set(store, "v", "x").number(), kInvalidFileFormat);
  EXPECT_EQ(folder_.Get("user.reg"), half);
  EXPECT_EQ(store.file().text(), kEmptyUserFile);
}

TEST_F(RegistryStoreTest, WritersAtATimeLoseNothing) {
  constexpr int kValues = 40;
  const auto write = [&](const std::string& name) {
    RegistryStore store = LoadedStore();
    for (int i = 0; i < kValues; ++i) {
      if (!Set(store, name + std::to_string(i), "x").ok()) return 1;
    }
    return 0;
  };
  const pid_t child = ::fork();
  if (child == 0) {
    // Two in the child's family, so that three writers meet.
    const int other = RunInChild([&] { return write("b"); });
    ::_exit(other);
  }
  const pid_t second = ::fork();
  if (second == 0) ::_exit(write("c"));
  EXPECT_EQ(write("a"), 0);
  for (const pid_t writer : {child, second}) {
    int status = -1;
    ASSERT_EQ(::waitpid(writer, &status, 0), writer);
    EXPECT_EQ(status, 0);
  }
  const RegistryStore store = LoadedStore();
  const std::optional<KeyId> key = store.file().FindKey({"Korvo"});
  ASSERT_TRUE(key);
  for (int i = 0; i < kValues; ++i) {
    for (const char* name : {"a", "b", "c"}) {
      EXPECT_TRUE(store.file().FindValue(*key, name + std::to_string(i))) << name << i;
    }
  }
}

TEST_F(RegistryStoreTest, AFullDiskLeavesEverythingAsItWas) {
  RegistryStore store = LoadedStore();
  ASSERT_TRUE(Set(store, "v", "old").ok());
  const std::string before = folder_.Get("user.reg");
  const int result = RunInChild([&] {
    // A file may grow to half of what the save needs.
    const rlimit limit = {before.size() / 2, before.size() / 2};
    ::signal(SIGXFSZ, SIG_IGN);
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
    if (Set(store, "v", "new").number() != kDiskFull) return 2;
    return store.file().text() == before ? 0 : 3;
  });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(folder_.Get("user.reg"), before);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 1)
      << "no sibling is left";
}

TEST_F(RegistryStoreTest, AFolderWithoutPermissionLeavesEverythingAsItWas) {
  RegistryStore store = LoadedStore();
  ASSERT_EQ(::chmod(path().c_str(), 0666), 0);
  ASSERT_EQ(::chmod(folder_.path().c_str(), 0555), 0);
  const int result = RunInChild([&] {
    if (!testing::BecomeOrdinaryUser()) return 1;
    if (!store.CheckWritable().ok()) return 2;
    if (Set(store, "v", "x").number() != kPathFileAccess) return 3;
    return store.file().text() == kEmptyUserFile ? 0 : 4;
  });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(folder_.Get("user.reg"), kEmptyUserFile);
}

TEST_F(RegistryStoreTest, KnowsAFileThatNobodyMayWrite) {
  RegistryStore store = LoadedStore();
  EXPECT_TRUE(store.CheckWritable().ok());
  ASSERT_EQ(::chmod(path().c_str(), 0444), 0);
  EXPECT_EQ(store.CheckWritable().number(), kPathFileAccess);
  ASSERT_EQ(::chmod(path().c_str(), 0644), 0);
  EXPECT_TRUE(store.CheckWritable().ok());
  std::filesystem::remove(path());
  EXPECT_EQ(store.CheckWritable().number(), kFileNotFound);
}

TEST_F(RegistryStoreTest, KnowsAFileThatBelongsToAnother) {
  if (::geteuid() != 0) return;  // Only root can make another's file.
  RegistryStore store = LoadedStore();
  ASSERT_EQ(::chmod(folder_.path().c_str(), 0777), 0);
  EXPECT_EQ(RunInChild([&] {
              if (!testing::BecomeOrdinaryUser()) return 1;
              return store.CheckWritable().number() == kPathFileAccess ? 0 : 2;
            }),
            0);
}

TEST_F(RegistryStoreTest, AFileThatIsGoneIsNotMadeAnew) {
  RegistryStore store = LoadedStore();
  std::filesystem::remove(path());
  EXPECT_EQ(Set(store, "v", "x").number(), kFileNotFound);
  EXPECT_FALSE(std::filesystem::exists(path()));
}

TEST_F(RegistryStoreTest, HandsBackTheEditorsError) {
  RegistryStore store = LoadedStore();
  const Status refused = store.Save(
      [](const RegistryFile&) -> Result<RegistryEdit> { return StandardError(kFileNotFound); });
  EXPECT_EQ(refused.number(), kFileNotFound);
  EXPECT_EQ(folder_.Get("user.reg"), kEmptyUserFile);
}

}  // namespace
}  // namespace zent
