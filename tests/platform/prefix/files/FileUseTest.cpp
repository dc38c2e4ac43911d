#include <fcntl.h>
#include <gtest/gtest.h>

#include "platform/prefix/files/FileUse.h"
#include "platform/prefix/files/TestMachine.h"
#include "support/posix/ChildProcess.h"

namespace zent {
namespace {

using testing::Hold;
using testing::HoldingProcess;
using testing::TestMachine;

class FileUseTest : public ::testing::Test {
 protected:
  FileUse Use(const std::string& name) const {
    const UniqueFd folder(::open(machine_.C("").c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    return UseOf(folder.get(), name);
  }
  /// A program of the host, put on drive C.
  std::filesystem::path PutProgram(const std::string& name) const {
    std::filesystem::copy_file("/bin/sleep", machine_.C(name));
    return machine_.C(name);
  }
  TestMachine machine_;
};

TEST_F(FileUseTest, TellsWhoHoldsAFile) {
  const std::filesystem::path file = machine_.Put("a.dll", "contents");
  EXPECT_EQ(Use("a.dll"), FileUse::None);
  {
    const HoldingProcess reader(file, Hold::Reading);
    EXPECT_EQ(Use("a.dll"), FileUse::Open);
  }
  {
    const HoldingProcess writer(file, Hold::Writing);
    EXPECT_EQ(Use("a.dll"), FileUse::Open);
  }
  {
    const HoldingProcess loader(file, Hold::Mapped);
    EXPECT_EQ(Use("a.dll"), FileUse::Loaded);
    const HoldingProcess reader(file, Hold::Reading);
    EXPECT_EQ(Use("a.dll"), FileUse::Open);
  }
  EXPECT_EQ(Use("a.dll"), FileUse::None);
}

TEST_F(FileUseTest, ARunningProgramIsLoaded) {
  const HoldingProcess running(PutProgram("run.exe"), Hold::Program);
  ASSERT_TRUE(running.ok());
  EXPECT_EQ(Use("run.exe"), FileUse::Loaded);
}

TEST_F(FileUseTest, OurOwnOpenFileCountsToo) {
  machine_.Put("a.txt", "contents");
  const auto open = machine_.Open().OpenForReading(R"(C:\a.txt)");
  ASSERT_TRUE(open.ok());
  EXPECT_EQ(Use("a.txt"), FileUse::Open);
}

TEST_F(FileUseTest, AReferenceToTheNameIsNoUse) {
  const std::filesystem::path file = machine_.Put("a.txt", "contents");
  const UniqueFd reference(::open(file.c_str(), O_PATH | O_CLOEXEC));
  EXPECT_EQ(Use("a.txt"), FileUse::None);
  const HoldingProcess loader(file, Hold::Mapped);
  EXPECT_EQ(Use("a.txt"), FileUse::Loaded);
}

TEST_F(FileUseTest, WhatIsNoFileIsNotInUse) {
  machine_.MakeFolder("dir");
  EXPECT_EQ(Use("dir"), FileUse::None);
  EXPECT_EQ(Use("missing"), FileUse::None);
}

TEST_F(FileUseTest, AForeignFileTellsOnlyWhetherItRuns) {
  const std::filesystem::path file = machine_.Put("a.txt", "contents");
  const HoldingProcess reader(file, Hold::Reading);
  const HoldingProcess running(PutProgram("run.exe"), Hold::Program);
  std::filesystem::permissions(machine_.C("run.exe"), std::filesystem::perms::all);
  const std::string uses = testing::RunAsOrdinaryUser([&] {
    return std::to_string(static_cast<int>(Use("a.txt"))) +
           std::to_string(static_cast<int>(Use("run.exe")));
  });
  if (::geteuid() == 0) {
    EXPECT_EQ(uses, "01");  // None, Loaded
  } else {
    EXPECT_EQ(uses, "21");  // ours: Open, Loaded
  }
}

}  // namespace
}  // namespace zent
