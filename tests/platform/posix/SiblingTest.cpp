#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <iterator>
#include <string>

#include "platform/posix/ReplaceFile.h"
#include "platform/posix/Sibling.h"
#include "support/TempFolder.h"
#include "support/posix/ChildProcess.h"

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

struct NameCase {
  const char* what;
  const char* name;
  pid_t maker;  ///< 0: no sibling
};

constexpr NameCase kNames[] = {
    {"as it is made", ".zent-123-0.tmp", 123},
    {"any further number", ".zent-123-99.tmp", 123},
    {"the highest process number", ".zent-2147483647-0.tmp", 2147483647},
    {"too high a process number", ".zent-2147483648-0.tmp", 0},
    {"process 0 is none", ".zent-0-0.tmp", 0},
    {"a sign", ".zent--1-0.tmp", 0},
    {"no number", ".zent-.tmp", 0},
    {"one number", ".zent-123.tmp", 0},
    {"no second number", ".zent-123-.tmp", 0},
    {"letters for the process", ".zent-12a-0.tmp", 0},
    {"letters for the number", ".zent-123-a.tmp", 0},
    {"no dot", "zent-123-0.tmp", 0},
    {"another end", ".zent-123-0.tmp~", 0},
    {"start and end share the dash", ".zent-123-tmp", 0},
    {"nothing", "", 0},
};

TEST(SiblingName, TellsTheProcessThatMadeIt) {
  for (const NameCase& row : kNames) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(MakerOfSibling(row.name).value_or(0), row.maker);
    EXPECT_EQ(IsSiblingName(row.name), row.maker != 0);
  }
}

/// The number of a process that has ended.
pid_t EndedProcess() {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(0);
  ::waitpid(child, nullptr, 0);
  return child;
}

std::string NameOfSibling(pid_t maker) { return ".zent-" + std::to_string(maker) + "-0.tmp"; }

TEST_F(SiblingTest, RemoveLeftSiblingsTakesThoseOfEndedProcesses) {
  folder_.Put(NameOfSibling(EndedProcess()), "left by a killed run");
  RemoveLeftSiblings(fd());
  EXPECT_EQ(CountOfNames(), 0);
}

TEST_F(SiblingTest, RemoveLeftSiblingsTakesThoseOfAProcessThatHadOurNumber) {
  folder_.Put(NameOfSibling(::getpid()), "left by a killed run");
  RemoveLeftSiblings(fd());
  EXPECT_EQ(CountOfNames(), 0);
}

TEST_F(SiblingTest, RemoveLeftSiblingsLeavesThoseOfAProcessAtWork) {
  folder_.Put(NameOfSibling(::getppid()), "being written");
  RemoveLeftSiblings(fd());
  EXPECT_EQ(folder_.Get(NameOfSibling(::getppid())), "being written");
}

TEST_F(SiblingTest, RemoveLeftSiblingsLeavesThoseOfAnotherUsersProcess) {
  folder_.Put(NameOfSibling(1), "being written");
  testing::GiveToOrdinaryUser(folder_.path());
  const std::string done = testing::RunAsOrdinaryUser([&] {
    RemoveLeftSiblings(fd());
    return std::string("done");
  });
  EXPECT_EQ(done, "done");
  EXPECT_EQ(CountOfNames(), 1);
}

TEST_F(SiblingTest, RemoveLeftSiblingsLeavesAllOtherNames) {
  const std::string left = NameOfSibling(EndedProcess());
  folder_.Put(left, "left by a killed run");
  folder_.Put(".zent-.tmp", "no sibling: no number");
  folder_.Put(left.substr(1), "no sibling: no dot");
  RemoveLeftSiblings(fd());
  EXPECT_EQ(CountOfNames(), 2);
}

}  // namespace
}  // namespace zent
