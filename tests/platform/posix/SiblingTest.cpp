#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <iterator>

#include "platform/posix/ReplaceFile.h"
#include "platform/posix/Sibling.h"
#include "support/TempFolder.h"

namespace zent {
namespace {

class SiblingTest : public ::testing::Test {
 protected:
  int fd() const { return folder_fd_.get(); }
  std::ptrdiff_t CountOfNames() const {
    return std::distance(std::filesystem::directory_iterator(folder_.path()), {});
  }
  testing::TempFolder folder_;

 private:
  UniqueFd folder_fd_{::open(folder_.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)};
};

TEST_F(SiblingTest, TakesThePlaceOfTheOldFile) {
  folder_.Put("a.txt", "old");
  Result<Sibling> sibling = Sibling::Create(fd(), 0644);
  ASSERT_TRUE(sibling.ok());
  EXPECT_TRUE(IsSiblingName(sibling.value().name()));
  EXPECT_EQ(WriteAll(sibling.value().fd(), "new"), 0);
  EXPECT_EQ(folder_.Get("a.txt"), "old");

  EXPECT_TRUE(sibling.value().PutInPlace("a.txt").ok());

  EXPECT_EQ(folder_.Get("a.txt"), "new");
  EXPECT_EQ(CountOfNames(), 1);
}

TEST_F(SiblingTest, OneThatIsNotPutInPlaceGoes) {
  {
    const Result<Sibling> sibling = Sibling::Create(fd(), 0644);
    EXPECT_EQ(CountOfNames(), 1);
  }
  EXPECT_EQ(CountOfNames(), 0);
}

TEST_F(SiblingTest, TwoAtATimeHaveTwoNames) {
  const Result<Sibling> one = Sibling::Create(fd(), 0644);
  const Result<Sibling> two = Sibling::Create(fd(), 0644);
  EXPECT_NE(one.value().name(), two.value().name());
}

TEST_F(SiblingTest, KeepsTheOldFileWhenToldTo) {
  folder_.Put("a.txt", "old");
  {
    Result<Sibling> sibling = Sibling::Create(fd(), 0644);
    EXPECT_EQ(sibling.value().PutInPlace("a.txt", OldFile::Keep).number(), kFileAlreadyExists);
  }
  EXPECT_EQ(folder_.Get("a.txt"), "old");
  EXPECT_EQ(CountOfNames(), 1);
}

TEST_F(SiblingTest, RenameToAFreeNameOnly) {
  folder_.Put("a", "a");
  folder_.Put("b", "b");
  EXPECT_EQ(RenameToFreeName(fd(), "a", fd(), "b"), EEXIST);
  EXPECT_EQ(RenameToFreeName(fd(), "a", fd(), "c"), 0);
  EXPECT_EQ(RenameToFreeName(fd(), "a", fd(), "d"), ENOENT);
  EXPECT_EQ(folder_.Get("b"), "b");
  EXPECT_EQ(folder_.Get("c"), "a");
}

TEST_F(SiblingTest, ReplaceFileAtKeepsTheModeAndLeavesNothingBeside) {
  const std::filesystem::path file = folder_.Put("a.txt", "old");
  ::chmod(file.c_str(), 0640);

  EXPECT_TRUE(ReplaceFileAt(fd(), "a.txt", "new").ok());

  struct stat info = {};
  ::stat(file.c_str(), &info);
  EXPECT_EQ(info.st_mode & 0777U, 0640U);
  EXPECT_EQ(folder_.Get("a.txt"), "new");
  EXPECT_EQ(CountOfNames(), 1);
}

TEST_F(SiblingTest, RemoveLeftSiblingsLeavesAllOtherNames) {
  folder_.Put(".zent-1-0.tmp", "left by a killed run");
  folder_.Put(".zent-.tmp", "no sibling: no number");
  folder_.Put("zent-1-0.tmp", "no sibling: no dot");
  RemoveLeftSiblings(fd());
  EXPECT_EQ(CountOfNames(), 2);
}

}  // namespace
}  // namespace zent
