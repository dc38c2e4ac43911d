#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/posix/UniqueFd.h"
#include "platform/prefix/files/LeftSiblings.h"
#include "platform/prefix/files/TestMachine.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using testing::TestMachine;

// No process has so high a number.
constexpr char kLeft[] = ".zent-2147483647-0.tmp";

/// A machine with a drive E: beside C:, and what a killed run left in some folders.
struct LeftBehind {
  LeftBehind() {
    std::filesystem::create_symlink(other.path(), machine.path() / "dosdevices/e:");
    machine.Put("source.txt", "new");
    for (const char* folder : {"to/", "elsewhere/"}) machine.Put(folder + std::string(kLeft));
    other.Put(kLeft, "half");
  }

  TestMachine machine;
  testing::TempFolder other;
};

struct PutCase {
  const char* what;
  Status (*put)(FileSystem& files);
  bool clears_to;     ///< the folder C:\to
  bool clears_other;  ///< the drive E:
};

constexpr PutCase kPuts[] = {
    {"a file written", [](FileSystem& files) { return files.Write(R"(C:\to\a)", "new"); }, true,
     false},
    {"a file copied",
     [](FileSystem& files) { return files.Copy(R"(C:\source.txt)", R"(C:\to\a)"); }, true, false},
    {"a file moved from another drive",
     [](FileSystem& files) { return files.Move(R"(C:\source.txt)", R"(E:\a)"); }, false, true},
    {"a file renamed needs no sibling",
     [](FileSystem& files) { return files.Move(R"(C:\source.txt)", R"(C:\to\a)"); }, false, false},
    {"a folder made", [](FileSystem& files) { return files.CreateFolder(R"(C:\to\a)"); }, false,
     false},
};

TEST(LeftSiblings, GoFromTheFolderThatAFileIsPutInto) {
  for (const PutCase& row : kPuts) {
    SCOPED_TRACE(row.what);
    LeftBehind given;
    FileSystem& files = given.machine.Open();

    EXPECT_TRUE(row.put(files).ok());

    EXPECT_EQ(std::filesystem::exists(given.machine.C("to") / kLeft), !row.clears_to);
    EXPECT_EQ(std::filesystem::exists(given.other.path() / kLeft), !row.clears_other);
    EXPECT_TRUE(std::filesystem::exists(given.machine.C("elsewhere") / kLeft));
  }
}

TEST(LeftSiblings, StayWhenTheFileIsRefused) {
  TestMachine machine;
  machine.Put("to/folder/b");
  machine.Put(std::string("to/") + kLeft);
  FileSystem& files = machine.Open();
  EXPECT_FALSE(files.Write(R"(C:\to\folder)", "new").ok());
  EXPECT_FALSE(files.Copy(R"(C:\none)", R"(C:\to\a)").ok());
  EXPECT_THAT(machine.NamesIn("to"), ElementsAre(kLeft, "folder"));
}

TEST(LeftSiblings, AreLookedForOncePerFolder) {
  const testing::TempFolder one;
  const testing::TempFolder two;
  const auto open = [](const testing::TempFolder& folder) {
    return UniqueFd(::open(folder.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  };
  LeftSiblings left;
  left.RemoveFrom(open(one).get());
  one.Put(kLeft, "");
  two.Put(kLeft, "");

  left.RemoveFrom(open(one).get());  // the same folder by another descriptor
  left.RemoveFrom(open(two).get());

  EXPECT_TRUE(std::filesystem::exists(one.path() / kLeft));
  EXPECT_FALSE(std::filesystem::exists(two.path() / kLeft));
}

}  // namespace
}  // namespace zent
