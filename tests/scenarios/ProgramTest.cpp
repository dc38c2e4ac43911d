#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "platform/posix/UniqueFd.h"
#include "scenarios/HostProgram.h"
#include "scenarios/MachineTree.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;

/// A sample machine and a package, and the real program to run over them.
struct Program {
  Program() {
    fs::copy(ZENT_SAMPLE_MACHINE, machine, fs::copy_options::recursive);
    folder.Put("package/ZentUpdate.ini", "[General]\r\nAppName=Korvo\r\n[setup]\r\nmsg,ran\r\n");
  }
  ProgramEnd Run(std::vector<std::string> more = {}) {
    more.insert(more.begin(), {ZENT_PROGRAM, (folder.path() / "package").string(), "--machine",
                               machine.string(), "--console", "--unattended"});
    return RunHostProgram(more, folder.path().string());
  }
  void PutList(std::string_view list) { folder.Put("package/ZentUpdate.ini", list); }

  TempFolder folder;
  fs::path machine = folder.path() / "machine";
};

TEST(Program, RunsAPackage) {
  Program given;
  const ProgramEnd end = given.Run();
  EXPECT_EQ(end.exit_code, 0);
  EXPECT_THAT(end.output, HasSubstr("  ran\n"));
}

TEST(Program, TakesThePackageOfTheCurrentFolder) {
  Program given;
  const ProgramEnd end = RunHostProgram(
      {ZENT_PROGRAM, "--machine", given.machine.string(), "--console", "--unattended"},
      (given.folder.path() / "package").string());
  EXPECT_EQ(end.exit_code, 0);
}

TEST(Program, APackageThatIsMissingIs66) {
  Program given;
  fs::remove(given.folder.path() / "package/ZentUpdate.ini");
  EXPECT_EQ(given.Run().exit_code, 66);
  fs::remove_all(given.folder.path() / "package");
  EXPECT_EQ(given.Run().exit_code, 66);
}

TEST(Program, TheListsNameIsFoundInAnyCase) {
  Program given;
  fs::rename(given.folder.path() / "package/ZentUpdate.ini",
             given.folder.path() / "package/ZENTUPDATE.INI");
  EXPECT_EQ(given.Run().exit_code, 0);
}

TEST(Program, AMachineThatIsMissingIs64) {
  Program given;
  fs::remove_all(given.machine);
  const ProgramEnd end = given.Run();
  EXPECT_EQ(end.exit_code, 64);
  EXPECT_THAT(end.output, HasSubstr("machine: Path not found"));
}

TEST(Program, AFolderThatIsNoMachineIs64) {
  Program given;
  fs::remove(given.machine / "system.reg");
  EXPECT_EQ(given.Run().exit_code, 64);
}

TEST(Program, HalfARegistryFileIsRefusedAndKept) {
  Program given;
  const std::string whole = ReadHostFile(given.machine / "system.reg");
  const std::string half = whole.substr(0, whole.find("ProgramFilesDir") + 3);
  std::ofstream(given.machine / "system.reg", std::ios::binary) << half;
  const ProgramEnd end = given.Run();
  EXPECT_EQ(end.exit_code, 1);
  EXPECT_THAT(end.output, HasSubstr("system.reg"));
  EXPECT_EQ(ReadHostFile(given.machine / "system.reg"), half);
}

TEST(Program, AnotherRunAtWorkOnTheMachineIs75) {
  Program given;
  const UniqueFd other(::open(given.machine.c_str(), O_RDONLY | O_DIRECTORY));
  ASSERT_EQ(::flock(other.get(), LOCK_EX), 0);
  const ProgramEnd end = given.Run();
  EXPECT_EQ(end.exit_code, 75);
  EXPECT_THAT(end.output, HasSubstr("another run is at work"));
}

TEST(Program, ARunningWineServerIs75) {
  Program given;
  struct stat info = {};
  ASSERT_EQ(::stat(given.machine.c_str(), &info), 0);
  std::ostringstream name;
  name << "/tmp/.wine-" << info.st_uid << "/server-" << std::hex << info.st_dev << "-"
       << info.st_ino;
  const fs::path server = name.str();
  fs::create_directories(server);
  const UniqueFd lock(::open((server / "lock").c_str(), O_RDWR | O_CREAT, 0600));
  struct flock held = {};
  held.l_type = F_WRLCK;
  held.l_len = 1;
  ASSERT_EQ(::fcntl(lock.get(), F_SETLK, &held), 0);

  const ProgramEnd end = given.Run();
  fs::remove_all(server);

  EXPECT_EQ(end.exit_code, 75);
  EXPECT_THAT(end.output, HasSubstr("Wine is running"));
}

TEST(Program, LeavesAMachineAloneThatItOnlyReads) {
  Program given;
  const MachineTree before = ReadTree(given.machine);
  given.Run();
  EXPECT_EQ(CompareTrees(before, ReadTree(given.machine)), "");
}

TEST(Program, RemovesWhatAKilledRunLeftBesideTheRegistry) {
  Program given;
  // No process has so high a number.
  given.folder.Put("machine/.zent-2147483647-0.tmp", "half a file");
  given.Run();
  EXPECT_FALSE(fs::exists(given.machine / ".zent-2147483647-0.tmp"));
}

TEST(Program, ALinkThatLeadsOutsideIsNotFollowed) {
  Program given;
  given.folder.Put("outside/secret.ini", "[S]\r\nK=old\r\n");
  fs::create_symlink(given.folder.path() / "outside", given.machine / "drive_c/door");
  given.PutList(
      "[General]\nAppName=Korvo\n[setup]\nwrttoini,C:\\door\\secret.ini,S,K,new\n"
      "wrttoini,C:\\..\\..\\outside\\secret.ini,S,K,new\n");
  const ProgramEnd end = given.Run({"--detailed-exitcode"});
  EXPECT_EQ(end.exit_code, 10);
  EXPECT_EQ(given.folder.Get("outside/secret.ini"), "[S]\r\nK=old\r\n");
}

TEST(Program, SaysWhenNothingNamesAMachine) {
  Program given;
  const ProgramEnd end = RunHostProgram({"/usr/bin/env", "-i", ZENT_PROGRAM, "--console"},
                                        given.folder.path().string());
  EXPECT_EQ(end.exit_code, 64);
  EXPECT_THAT(end.output, HasSubstr("no machine: use --machine"));
}

TEST(Program, WrongArgumentsAre64) {
  Program given;
  EXPECT_EQ(given.Run({"--nosuch"}).exit_code, 64);
  EXPECT_EQ(given.Run({"--answers", "/nosuch"}).exit_code, 64);
  given.folder.Put("answers", "yes\nperhaps\n");
  const ProgramEnd end = given.Run({"--answers", (given.folder.path() / "answers").string()});
  EXPECT_EQ(end.exit_code, 64);
  EXPECT_THAT(end.output, HasSubstr("2"));
  EXPECT_EQ(given.Run({"--log", "/nosuch/log"}).exit_code, 64);
}

// Whether the server is not found or there is nothing to reach servers by: the open has begun, and
// has ended with an error.
TEST(Program, TracesTheOpenOfAServer) {
  Program given;
  given.folder.Put("machine/drive_c/users/anna/AppData/Roaming/Zent/Korvo.ini",
                   "[General]\r\nDataPath=\r\nDataBase=DSN=Nowhere;UID=anna;PWD=Geheim7;\r\n");
  given.folder.Put("package/Items.txt", "City,Ulm\r\n");
  given.PutList("[General]\nAppName=Korvo\n[setup]\nimportlookup,Items.txt\n");

  const ProgramEnd end = given.Run({"--trace", "trace"});

  EXPECT_THAT(given.folder.Get("trace"),
              MatchesRegex("\r\n[-0-9]+ [:0-9]+\tBegin: KVOOpenSQLServerDB\t0\r\n"
                           "[-0-9]+ [:0-9]+\tEnd: KVOOpenSQLServerDB\t-?[1-9][0-9]*\r\n"));
  EXPECT_THAT(given.folder.Get("trace") + end.output, Not(HasSubstr("PWD")));
  EXPECT_THAT(end.output, Not(HasSubstr("Geheim7")));
}

TEST(Program, TellsABoxThatNobodySees) {
  Program given;
  given.PutList("[General]\nAppName=Korvo\n[setup]\nmsg\n");
  const ProgramEnd end = given.Run();
  EXPECT_EQ(end.exit_code, 1);
  EXPECT_THAT(end.output, HasSubstr("Description: Subscript out of range\nNumber: 9\n-> ok\n"));
}

}  // namespace
}  // namespace zent::testing
