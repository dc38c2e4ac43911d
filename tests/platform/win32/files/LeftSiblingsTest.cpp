#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include "platform/win32/files/HoldingProcess.h"
#include "platform/win32/files/SiblingName.h"
#include "platform/win32/files/TestFolder.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using testing::TestFolder;

// No process has so high a number.
constexpr char kLeft[] = ".zent-2147483644-0.tmp";

struct PutCase {
  const char* what;
  Status (*put)(FileSystem& files);
  bool clears;  ///< the folder "to"
};

constexpr PutCase kPuts[] = {
    {"a file written", [](FileSystem& files) { return files.Write(R"(to\a)", "new"); }, true},
    {"a file copied", [](FileSystem& files) { return files.Copy("source", R"(to\a)"); }, true},
    {"a file renamed needs no sibling",
     [](FileSystem& files) { return files.Move("source", R"(to\a)"); }, false},
    {"a folder made", [](FileSystem& files) { return files.CreateFolder(R"(to\a)"); }, false},
};

TEST(LeftSiblings, GoFromTheFolderThatAFileIsPutInto) {
  for (const PutCase& row : kPuts) {
    SCOPED_TRACE(row.what);
    TestFolder given;
    given.Put("source", "new");
    for (const char* folder : {"to/", "elsewhere/"}) given.Put(folder + std::string(kLeft));

    EXPECT_TRUE(row.put(given.files()).ok());

    EXPECT_EQ(std::filesystem::exists(given.path() / "to" / kLeft), !row.clears);
    EXPECT_TRUE(std::filesystem::exists(given.path() / "elsewhere" / kLeft));
  }
}

TEST(LeftSiblings, GoWhateverTheirAttributes) {
  TestFolder given;
  const auto left = given.Put(kLeft);
  SetFileAttributesW(left.c_str(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
  EXPECT_TRUE(given.files().Write("a", "new").ok());
  EXPECT_THAT(given.Names(), ElementsAre("a"));
}

TEST(LeftSiblings, StayWhenTheFileIsRefused) {
  TestFolder given;
  given.Put("folder/b");
  given.Put(kLeft);
  EXPECT_FALSE(given.files().Write("folder", "new").ok());
  EXPECT_FALSE(given.files().Copy("none", "a").ok());
  EXPECT_TRUE(std::filesystem::exists(given.path() / kLeft));
}

TEST(LeftSiblings, OfARunThatIsAtWorkStay) {
  TestFolder given;
  const auto file = given.Put("held");
  const testing::HoldingProcess other(file, "r7");
  ASSERT_TRUE(other.ok());
  const std::string at_work = SiblingName(other.id(), 0);
  given.Put(at_work);
  EXPECT_TRUE(given.files().Write("a", "new").ok());
  EXPECT_TRUE(std::filesystem::exists(given.path() / at_work));
}

TEST(LeftSiblings, OfOurOwnNumberAreOfAnOlderRun) {
  TestFolder given;
  given.Put(SiblingName(GetCurrentProcessId(), 0), "half");
  EXPECT_TRUE(given.files().Write("a", "new").ok());
  EXPECT_THAT(given.Names(), ElementsAre("a"));
}

TEST(LeftSiblings, AreSearchedOncePerFolder) {
  TestFolder given;
  EXPECT_TRUE(given.files().Write("a", "new").ok());
  given.Put(kLeft);
  EXPECT_TRUE(given.files().Write("A", "newer").ok());
  EXPECT_THAT(given.Names(), ElementsAre(kLeft, "a"));
}

TEST(LeftSiblings, OtherNamesStay) {
  TestFolder given;
  for (const char* name : {".zent-x-0.tmp", ".zent-0-0.tmp", ".zent-2147483644-.tmp",
                           ".zent-2147483644-0.tmp.bak", "a.tmp"}) {
    given.Put(name);
  }
  EXPECT_TRUE(given.files().Write("a", "new").ok());
  EXPECT_EQ(given.Names().size(), 6U);
}

TEST(SiblingName, TellsItsMaker) {
  EXPECT_EQ(SiblingName(1234, 5), ".zent-1234-5.tmp");
  EXPECT_EQ(MakerOfSibling(".zent-1234-5.tmp"), 1234U);
  EXPECT_EQ(MakerOfSibling(".zent-4294967292-99.tmp"), 4294967292U);
  for (const char* name : {"", "a.tmp", ".zent-.tmp", ".zent-1.tmp", ".zent-1-.tmp",
                           ".zent-0-1.tmp", ".zent--1-1.tmp", ".zent-1--1.tmp", ".zent-1-1.tmpx",
                           ".zent-1-1", ".zent-99999999999-1.tmp", "x.zent-1-1.tmp"}) {
    EXPECT_EQ(MakerOfSibling(name), std::nullopt) << name;
  }
}

}  // namespace
}  // namespace zent
