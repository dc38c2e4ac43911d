#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "contracts/ProcessesContract.h"
#include "platform/prefix/session/HostScripts.h"
#include "platform/prefix/session/PrefixProcesses.h"

namespace zent {
namespace {

using testing::HasChildren;
using ::testing::HasSubstr;
using testing::ProcessesContract;
using testing::ProcessesSubject;
using testing::ProgramBehaviour;
using testing::PutRecorder;
using testing::PutScript;
using testing::TempFolder;
using testing::WaitForFile;

/// A C: drive in a folder, names matched as they are.
class DriveLocator : public ProgramLocator {
 public:
  explicit DriveLocator(std::filesystem::path drive) : drive_(std::move(drive)) {}
  Result<std::filesystem::path> HostPath(std::string_view windows_path) override {
    std::string name(windows_path.substr(3));
    std::replace(name.begin(), name.end(), '\\', '/');
    const std::filesystem::path path = drive_ / name;
    if (std::filesystem::exists(path)) return path;
    return StandardError(std::filesystem::exists(path.parent_path()) ? kFileNotFound
                                                                     : kPathNotFound);
  }

 private:
  std::filesystem::path drive_;
};

/// A machine, a PATH of the host, and the processes over both.
class PrefixProcessesTest : public ::testing::Test {
 protected:
  Result<std::uint32_t> Start(const std::string& program, const std::string& arguments = "") {
    DriveLocator programs(Drive());
    const Wine wine = HostWine();
    return PrefixProcesses(programs, wine).Start({program, arguments, program + " " + arguments});
  }
  /// The end of a program that was waited for, or why it was not started.
  Result<ProgramEnd> Run(const std::string& program, const std::string& arguments = "") {
    DriveLocator programs(Drive());
    const Wine wine = HostWine();
    const auto started = PrefixProcesses(programs, wine).StartWaited({program, arguments, program});
    if (!started.ok()) return started.error();
    const auto ended = started.value()->Wait(std::chrono::seconds(30));
    if (!ended.ok()) return ended.error();
    if (!ended.value()) return StandardError(kDeviceIoError, "it runs on and on");
    return *ended.value();
  }

  Wine HostWine() {
    return Wine((host_.path() / "bin").string(), host_.path() / "machine",
                [this]() -> Status {
                  ++hand_overs_;
                  return hand_over_;
                },
                host_.path() / "usual/wine64");
  }

  std::filesystem::path Drive() const { return host_.path() / "machine/drive_c"; }
  std::string Record() const { return WaitForFile(host_.path() / "record"); }

  TempFolder host_;
  Status hand_over_;
  int hand_overs_ = 0;
};

TEST_F(PrefixProcessesTest, RunsAScriptOfTheMachineInItsOwnFolder) {
  PutRecorder(host_, "machine/drive_c/Korvo Files/run me", "record");

  const auto started = Start(R"(C:\Korvo Files\run me)", R"(/s "a b" $(id) \"x)");

  ASSERT_TRUE(started.ok());
  EXPECT_GT(started.value(), 0U);
  EXPECT_THAT(Record(), HasSubstr("pwd=" + (Drive() / "Korvo Files").string() +
                                  "\n</s>\n<a b>\n<$(id)>\n<\"x>\n"));
  EXPECT_EQ(hand_overs_, 0);
  EXPECT_FALSE(HasChildren());
}

TEST_F(PrefixProcessesTest, RunsAWindowsProgramThroughWine) {
  PutRecorder(host_, "bin/wine", "record");
  const auto program = host_.Put("machine/drive_c/Korvo Files/Korvo.exe", "MZ");

  ASSERT_TRUE(Start(R"(C:\Korvo Files\Korvo.exe)", R"(/s "C:\a b\c.dll" $(id) )").ok());

  const std::string record = Record();
  EXPECT_THAT(record, HasSubstr("WINEPREFIX=" + (host_.path() / "machine").string() + "\n"));
  EXPECT_THAT(record, HasSubstr("pwd=" + (Drive() / "Korvo Files").string() + "\n<" +
                                program.string() + ">\n</s>\n<C:\\a b\\c.dll>\n<$(id)>\n"));
  EXPECT_EQ(hand_overs_, 1);
}

TEST_F(PrefixProcessesTest, HandsTheMachineOverBeforeWineStarts) {
  PutRecorder(host_, "bin/wine", "record");
  host_.Put("machine/drive_c/a.exe", "MZ");
  hand_over_ = StandardError(kDiskFull);

  EXPECT_EQ(Start(R"(C:\a.exe)").number(), kDiskFull);

  EXPECT_EQ(hand_overs_, 1);
  EXPECT_FALSE(std::filesystem::exists(host_.path() / "record")) << "nothing was started";
}

/// Where Wine may be, and which of the loaders is taken.
struct LoaderCase {
  const char* what;
  std::vector<const char*> loaders;
  const char* taken;  ///< nullptr: no Wine
};

TEST_F(PrefixProcessesTest, FindsTheLoader) {
  const LoaderCase rows[] = {
      {"wine comes first", {"bin/wine", "bin/wine64", "usual/wine64"}, "bin/wine"},
      {"then wine64", {"bin/wine64", "usual/wine64"}, "bin/wine64"},
      {"then the usual place", {"usual/wine64"}, "usual/wine64"},
      {"another program there is none", {"usual/wine", "bin/wineserver"}, nullptr},
  };
  host_.Put("machine/drive_c/a.exe", "MZ");
  for (const LoaderCase& row : rows) {
    SCOPED_TRACE(row.what);
    for (const char* loader : row.loaders) {
      const std::string taken = (host_.path() / "taken").string();
      PutScript(host_, loader,
                fmt::format("echo {0} >'{1}.new'; mv '{1}.new' '{1}'", loader, taken));
    }
    const auto started = Start(R"(C:\a.exe)");
    if (row.taken == nullptr) {
      EXPECT_EQ(started.number(), kFileNotFound);
    } else {
      EXPECT_TRUE(started.ok());
      EXPECT_EQ(WaitForFile(host_.path() / "taken"), std::string(row.taken) + "\n");
    }
    std::filesystem::remove(host_.path() / "taken");
    std::filesystem::remove_all(host_.path() / "bin");
    std::filesystem::remove_all(host_.path() / "usual");
  }
}

TEST_F(PrefixProcessesTest, AddsExeWhenOnlyThatExists) {
  PutRecorder(host_, "machine/drive_c/one.exe", "record");
  std::filesystem::create_directory(Drive() / "one");

  EXPECT_TRUE(Start(R"(C:\one)", "added").ok()) << "a folder of the name is no program";

  EXPECT_THAT(Record(), HasSubstr("<added>"));
}

TEST_F(PrefixProcessesTest, PrefersTheExactName) {
  PutRecorder(host_, "machine/drive_c/two", "record");
  PutScript(host_, "machine/drive_c/two.exe", "exit 1");

  EXPECT_TRUE(Start(R"(C:\two)", "exact").ok());

  EXPECT_THAT(Record(), HasSubstr("<exact>"));
}

struct RefusalCase {
  const char* what;
  const char* program;
  int error;
};

constexpr RefusalCase kRefusalCases[] = {
    {"a missing program", R"(C:\missing.exe)", kFileNotFound},
    {"a missing folder", R"(C:\none\a.exe)", kPathNotFound},
    {"no program at all", "", kFileNotFound},
    {"a script without execute permission", R"(C:\script)", kFileNotFound},
    {"a text file", R"(C:\text.txt)", kFileNotFound},
    {"a folder", R"(C:\folder)", kFileNotFound},
    {"a folder with a backslash behind it", R"(C:\folder\)", kFileNotFound},
    {"a Windows program without Wine", R"(C:\windows.exe)", kFileNotFound},
    {"one that is only on the PATH", R"(C:\tool)", kFileNotFound},
    {"a script without its interpreter", R"(C:\orphan)", kFileNotFound},
};

TEST_F(PrefixProcessesTest, RefusesWhatCannotRun) {
  host_.Put("machine/drive_c/script", "#!/bin/sh\n");
  host_.Put("machine/drive_c/text.txt", "text");
  host_.Put("machine/drive_c/folder/.exe", "MZ");
  host_.Put("machine/drive_c/windows.exe", "MZ");
  std::filesystem::permissions(host_.Put("machine/drive_c/orphan", "#!/no/such/thing\n"),
                               std::filesystem::perms::owner_all);
  PutScript(host_, "bin/tool", "");
  for (const RefusalCase& row : kRefusalCases) {
    SCOPED_TRACE(row.what);
    const auto started = Start(row.program);
    EXPECT_EQ(started.number(), row.error);
  }
  EXPECT_EQ(hand_overs_, 0) << "nothing was handed over for nothing";
  EXPECT_FALSE(HasChildren());
}

TEST_F(PrefixProcessesTest, WaitedForAScriptKnowsItsMachine) {
  PutRecorder(host_, "machine/drive_c/Korvo Files/run me", "record");

  const auto end = Run(R"(C:\Korvo Files\run me)", R"("C:\a b\c.mdb" "x\"y")");

  ASSERT_TRUE(end.ok()) << end.error().description;
  EXPECT_EQ(end.value().exit_code, 0U);
  const std::string record = Record();
  EXPECT_THAT(record, HasSubstr("WINEPREFIX=" + (host_.path() / "machine").string() + "\n"));
  EXPECT_THAT(record, HasSubstr("pwd=" + (Drive() / "Korvo Files").string() +
                                "\n<C:\\a b\\c.mdb>\n<x\"y>\n"));
  EXPECT_EQ(hand_overs_, 0);
  EXPECT_FALSE(HasChildren());
}

TEST_F(PrefixProcessesTest, WaitsForAWindowsProgramInASilentWine) {
  PutScript(host_, "bin/wine", "echo $WINEPREFIX $WINEDEBUG \"$@\" >&2\nexit 2");
  const auto program = host_.Put("machine/drive_c/a b.exe", "MZ");

  const auto end = Run(R"(C:\a b)", "x");

  ASSERT_TRUE(end.ok()) << end.error().description;
  EXPECT_EQ(end.value().exit_code, 2U);
  EXPECT_EQ(end.value().error_text,
            (host_.path() / "machine").string() + " -all " + program.string() + " x\n");
  EXPECT_EQ(hand_overs_, 1);
}

TEST_F(PrefixProcessesTest, WaitedForOrNotItRefusesTheSame) {
  host_.Put("machine/drive_c/text.txt", "text");
  host_.Put("machine/drive_c/windows.exe", "MZ");
  for (const char* program : {R"(C:\missing.exe)", R"(C:\text.txt)", R"(C:\windows.exe)", ""}) {
    SCOPED_TRACE(program);
    EXPECT_EQ(Run(program).number(), kFileNotFound);
  }
  EXPECT_EQ(Run(R"(C:\none\a.exe)").number(), kPathNotFound);
  EXPECT_FALSE(HasChildren());
}

/// Programs are scripts of the host; one that waits does so for a file beside it.
class PrefixSubject : public ProcessesSubject {
 public:
  Processes& processes() override { return processes_; }
  std::string Put(const std::string& name, const ProgramBehaviour& behaviour) override {
    std::string path = name;
    std::replace(path.begin(), path.end(), '\\', '/');
    const std::string text = host_.Put(path + ".text", behaviour.error_text).string();
    std::string commands = fmt::format("cat '{}' >&2\nexit {}", text, behaviour.exit_code);
    if (behaviour.waits) {
      commands = fmt::format("while [ ! -e '{}.go' ]; do sleep 0.01; done\n",
                             (host_.path() / path).string()) +
                 commands;
    }
    PutScript(host_, path, commands);
    return R"(C:\)" + name;
  }
  std::string Missing() override { return R"(C:\missing.exe)"; }
  void Release(const std::string& program) override { host_.Put(program.substr(3) + ".go", ""); }

 private:
  TempFolder host_;
  DriveLocator programs_{host_.path()};
  Wine wine_{"", host_.path(), {}, "/no/wine"};
  PrefixProcesses processes_{programs_, wine_};
};

INSTANTIATE_TEST_SUITE_P(Prefix, ProcessesContract, ::testing::Values([] {
                           return std::unique_ptr<ProcessesSubject>(new PrefixSubject);
                         }));

}  // namespace
}  // namespace zent
