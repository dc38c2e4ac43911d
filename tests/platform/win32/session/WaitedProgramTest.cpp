#include <gtest/gtest.h>
#include <windows.h>

#include "contracts/ProcessesContract.h"
#include "platform/win32/session/StartedProgram.h"
#include "platform/win32/session/Win32Processes.h"

namespace zent {
namespace {

using testing::ProcessesContract;
using testing::ProcessesSubject;
using testing::ProgramBehaviour;
using testing::PutBeside;
using testing::TempFolder;

constexpr const char* kProgram = "ending_program.exe";

class Win32Subject : public ProcessesSubject {
 public:
  Processes& processes() override { return processes_; }
  std::string Put(const std::string& name, const ProgramBehaviour& behaviour) override {
    std::string program = PutBeside(kProgram, folder_, name);
    folder_.Put(name + ".text", behaviour.error_text);
    folder_.Put(name + ".code", std::to_string(behaviour.exit_code));
    if (behaviour.waits) folder_.Put(name + ".hold", "");
    return program;
  }
  std::string Missing() override { return folder_.path().string() + R"(\missing.exe)"; }
  void Release(const std::string& program) override {
    EXPECT_TRUE(std::filesystem::remove(program + ".hold"));
  }

 private:
  TempFolder folder_;
  Win32Processes processes_;
};

INSTANTIATE_TEST_SUITE_P(Win32, ProcessesContract, ::testing::Values([] {
                           return std::unique_ptr<ProcessesSubject>(new Win32Subject);
                         }));

/// How a program ends that needs no release; exit code 251 when it does not.
ProgramEnd RunToEnd(const std::string& program, const std::string& arguments) {
  const auto started = Win32Processes().StartWaited({program, arguments, program});
  if (!started.ok()) return {251, started.error().description};
  const auto ended = started.value()->Wait(std::chrono::seconds(30));
  return ended.ok() && ended.value() ? *ended.value() : ProgramEnd{251, "it runs on and on"};
}

TEST(Win32StartWaited, GivesTheArgumentsAsTheyAreInItsOwnFolder) {
  const TempFolder folder;
  const std::string program = PutBeside(kProgram, folder, R"(Korvo Files\the program.exe)");
  const ProgramEnd end =
      RunToEnd(program, R"(arguments "C:\a b\Korvo.mdb" "C:\Data\\" "x\"y" "" 100% &)");
  EXPECT_EQ(end.exit_code, 0U);
  std::string text = end.error_text;
  std::erase(text, '\r');
  EXPECT_EQ(text, "<arguments>\n<C:\\a b\\Korvo.mdb>\n<C:\\Data\\>\n<x\"y>\n<>\n<100%>\n<&>\n" +
                      folder.path().string() + "\\Korvo Files\n");
}

TEST(Win32StartWaited, AnsiBecomesText) {
  const TempFolder folder;
  const std::string program = PutBeside(kProgram, folder, "a.exe");
  folder.Put("a.exe.text", "M\xFCller");
  EXPECT_EQ(RunToEnd(program, "").error_text, "M\xC3\xBCller");
}

TEST(Win32StartWaited, AnExitCodeHasItsThirtyTwoBits) {
  const TempFolder folder;
  const std::string program = PutBeside(kProgram, folder, "a.exe");
  folder.Put("a.exe.code", "-1073741819");
  EXPECT_EQ(RunToEnd(program, "").exit_code, 0xC0000005U);
}

TEST(Win32StartWaited, LetsGoOfAProgramThatRunsOn) {
  const TempFolder folder;
  const std::string program = PutBeside(kProgram, folder, "a.exe");
  folder.Put("a.exe.hold", "");
  {
    const auto started = Win32Processes().StartWaited({program, "", program});
    ASSERT_TRUE(started.ok());
    EXPECT_FALSE(started.value()->Wait(std::chrono::milliseconds(0)).value().has_value());
  }
  EXPECT_EQ(DeleteFileA(program.c_str()), FALSE) << "a running program cannot be deleted";
  std::filesystem::remove(program + ".hold");
  for (int round = 0; round < 1000 && DeleteFileA(program.c_str()) == FALSE; ++round) Sleep(10);
  EXPECT_FALSE(std::filesystem::exists(program)) << "it has ended by itself";
}

TEST(Win32StartWaited, RefusesWhatStartRefuses) {
  const TempFolder folder;
  folder.Put("text.txt", "Hello");
  const std::string base = folder.path().string();
  struct Row {
    const char* what;
    std::string program;
    std::string arguments;
    int number;
  };
  const Row rows[] = {
      {"a missing folder", base + R"(\none\a.exe)", "", kPathNotFound},
      {"a text", base + R"(\text.txt)", "", kInvalidProcedureCall},
      {"no program", "", "", kFileNotFound},
      {"a NUL in the arguments", PutBeside(kProgram, folder, "a.exe"), std::string("a\0b", 3),
       kInvalidProcedureCall},
      {"a letter that the code page lacks", PutBeside(kProgram, folder, "b.exe"), "\xE4\xB8\xAD",
       kInvalidProcedureCall},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Win32Processes().StartWaited({row.program, row.arguments, ""}).number(), row.number);
  }
}

}  // namespace
}  // namespace zent
