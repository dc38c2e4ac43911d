#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <memory>
#include <string>

#include "platform/prefix/registry/PrefixRegistry.h"
#include "platform/prefix/registry/RegistryMachines.h"

namespace zent {
namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::kEmptySystemFile;
using testing::kEmptyUserFile;
using testing::LockHolder;
using testing::MachineFolder;
using testing::ReadData;
using testing::WriteText;

constexpr KeyHandle kUser = KeyHandle::CurrentUser;
constexpr KeyHandle kMachine = KeyHandle::LocalMachine;
constexpr std::string_view kSid = "S-1-5-21-0-0-0-1000";

int OpenNumber(const MachineFolder& machine) {
  testing::StepClock clock;
  const auto opened = PrefixRegistry::Open(
      machine.path(), clock, [] { return testing::kNow; }, machine.temp());
  return opened.number();
}

TEST(PrefixRegistry, NeedsBothFilesOfTheMachine) {
  const MachineFolder machine;
  EXPECT_EQ(OpenNumber(machine), 0);
  std::filesystem::remove(machine.path() + "/userdef.reg");
  EXPECT_EQ(OpenNumber(machine), 0);
  for (const char* name : {"/system.reg", "/user.reg"}) {
    const MachineFolder without;
    std::filesystem::remove(without.path() + name);
    EXPECT_EQ(OpenNumber(without), kFileNotFound) << name;
  }
  testing::StepClock clock;
  EXPECT_EQ(PrefixRegistry::Open(machine.path() + "/missing", clock, SystemFileTime).number(),
            kPathNotFound);
}

TEST(PrefixRegistry, NamesTheDamagedFile) {
  const MachineFolder machine(kEmptySystemFile, std::string(kEmptyUserFile) + "[Half");
  testing::StepClock clock;
  const auto opened = PrefixRegistry::Open(machine.path(), clock, SystemFileTime, machine.temp());
  ASSERT_EQ(opened.number(), kInvalidFileFormat);
  EXPECT_THAT(opened.error().description, HasSubstr(machine.path() + "/user.reg, line 5"));
  EXPECT_EQ(machine.Get("user.reg"), std::string(kEmptyUserFile) + "[Half");
}

TEST(PrefixRegistry, KeepsEachRootInItsFile) {
  MachineFolder machine(kEmptySystemFile, kEmptyUserFile);
  const auto registry = machine.Open();
  ASSERT_TRUE(WriteText(*registry, kMachine, R"(Software\Korvo)", "v", "m").ok());
  ASSERT_TRUE(WriteText(*registry, kUser, R"(Software\Korvo)", "v", "u").ok());
  ASSERT_TRUE(WriteText(*registry, KeyHandle::ClassesRoot, ".korvo", "", "c").ok());
  const std::string times = " 1795253793\n#time=1dd799bcbb4dcc2\n";
  EXPECT_EQ(machine.Get("system.reg"),
            std::string(kEmptySystemFile) + "\n[Software\\\\Classes\\\\.korvo]" + times +
                "@=\"c\"\n\n[Software\\\\Korvo]" + times + "\"v\"=\"m\"\n");
  EXPECT_EQ(machine.Get("user.reg"),
            std::string(kEmptyUserFile) + "\n[Software\\\\Korvo]" + times + "\"v\"=\"u\"\n");
  EXPECT_THAT(machine.Names(), ElementsAre("system.reg", "user.reg"));
}

TEST(PrefixRegistry, ShowsTheUsersBelowTheirRoot) {
  MachineFolder machine;
  const auto registry = machine.Open();
  const std::string shell = R"(Software\Microsoft\Windows\CurrentVersion\Explorer\)";
  EXPECT_EQ(ReadData(*registry, KeyHandle::Users,
                     std::string(kSid) + "\\" + shell + "Shell Folders", "Desktop"),
            "C:\\users\\anna\\Desktop\0"s);
  EXPECT_EQ(ReadData(*registry, KeyHandle::Users, R"(.DEFAULT\)" + shell + "User Shell Folders",
                     "Desktop"),
            "%USERPROFILE%\\Desktop\0"s);
  EXPECT_TRUE(registry->OpenKey(KeyHandle::Users, ".Default").ok());
  EXPECT_TRUE(registry->OpenKey(KeyHandle::Users, kSid).ok());
  EXPECT_EQ(registry->OpenKey(KeyHandle::Users, "S-1-5-18").number(), kFileNotFound);
  EXPECT_EQ(registry->QueryValue(KeyHandle::Users, "v").number(), kFileNotFound);

  const Result<KeyHandle> users = registry->OpenKey(KeyHandle::Users, "");
  ASSERT_TRUE(users.ok());
  EXPECT_TRUE(registry->OpenKey(users.value(), ".default").ok());
  EXPECT_TRUE(registry->CloseKey(users.value()).ok());

  ASSERT_TRUE(
      WriteText(*registry, KeyHandle::Users, std::string(kSid) + R"(\Software\Z)", "v", "x").ok());
  EXPECT_EQ(ReadData(*registry, kUser, R"(Software\Z)", "v"), "x\0"s);
}

TEST(PrefixRegistry, MakesNothingWhereNoFileKeepsIt) {
  MachineFolder machine;
  const auto registry = machine.Open();
  const std::string before = machine.Get("userdef.reg");
  EXPECT_EQ(registry->CreateKey(KeyHandle::Users, "Top").number(), kPathFileAccess);
  EXPECT_EQ(registry->CreateKey(KeyHandle::Users, R"(Top\Deep)").number(), kPathFileAccess);
  EXPECT_EQ(registry->SetText(KeyHandle::Users, "v", "x").number(), kPathFileAccess);
  EXPECT_EQ(registry->CreateKey(KeyHandle::Users, R"(.Default\New)").number(), kPathFileAccess);
  const Result<KeyHandle> key = registry->CreateKey(KeyHandle::Users, R"(.Default\Software)");
  ASSERT_TRUE(key.ok()) << "it exists";
  EXPECT_EQ(registry->SetText(key.value(), "v", "x").number(), kPathFileAccess);
  EXPECT_EQ(machine.Get("userdef.reg"), before);
}

TEST(PrefixRegistry, ADefaultUserIsReadOnlyWhenAskedFor) {
  MachineFolder machine;
  std::filesystem::remove(machine.path() + "/userdef.reg");
  EXPECT_EQ(machine.Open()->OpenKey(KeyHandle::Users, ".Default").number(), kFileNotFound);
  machine.Put("userdef.reg", "half");
  const auto registry = machine.Open();
  EXPECT_EQ(registry->OpenKey(KeyHandle::Users, ".Default").number(), kInvalidFileFormat);
  EXPECT_TRUE(registry->OpenKey(KeyHandle::Users, kSid).ok());
}

std::string Link(const std::string& target) {
  std::string line = "#link\n\"SymbolicLinkValue\"=hex(6):";
  for (const char c : target) line += fmt::format("{:02x},00,", static_cast<unsigned char>(c));
  line.pop_back();
  return line + "\n";
}

struct LinkCase {
  const char* what;
  std::string lines;
  std::string path;
  std::string data;  ///< "(none)" for a link that leads nowhere
};

const LinkCase kLinks[] = {
    {"to a key", Link(R"(\Registry\Machine\Target)"), "Link", "found\0"s},
    {"to a key, in any case", Link(R"(\REGISTRY\machine\target)"), "Link", "found\0"s},
    {"above a key", Link(R"(\Registry\Machine)"), R"(Link\Target)", "found\0"s},
    {"to another link", Link(R"(\Registry\Machine\Link2)"), "Link", "found\0"s},
    {"to the user", Link(R"(\Registry\User\S-1-5-21-0-0-0-1000\Target)"), "Link", "user\0"s},
    {"to itself", Link(R"(\Registry\Machine\Link)"), "Link", "(none)"},
    {"to below itself", Link(R"(\Registry\Machine\Link\x)"), "Link", "(none)"},
    {"to a missing key", Link(R"(\Registry\Machine\Missing)"), "Link", "(none)"},
    {"to a missing user", Link(R"(\Registry\User\S-1)"), "Link", "(none)"},
    {"to another tree", Link(R"(\Registry\Other\Target)"), "Link", "(none)"},
    {"to another root", Link(R"(\Device\Machine\Target)"), "Link", "(none)"},
    {"to a relative path", Link(R"(Registry\Machine\Target)"), "Link", "(none)"},
    {"to too short a path", Link(R"(\Registry)"), "Link", "(none)"},
    {"without a target", "#link\n", "Link", "(none)"},
    {"with a target of another type", "#link\n\"SymbolicLinkValue\"=\"\\\\Registry\\\\Machine\"\n",
     R"(Link\Target)", "(none)"},
    {"without its mark it is a key", "\"SymbolicLinkValue\"=hex(6):5c,00\n@=\"own\"\n", "Link",
     "own\0"s},
};

TEST(PrefixRegistry, FollowsSymbolicLinks) {
  for (const LinkCase& row : kLinks) {
    SCOPED_TRACE(row.what);
    MachineFolder machine(std::string(kEmptySystemFile) + "\n[Link] 1\n" + row.lines +
                              "\n[Link2] 1\n" + Link(R"(\Registry\Machine\Target)") +
                              "\n[Target] 1\n@=\"found\"\n",
                          std::string(kEmptyUserFile) + "\n[Target] 1\n@=\"user\"\n");
    EXPECT_EQ(ReadData(*machine.Open(), kMachine, row.path, ""), row.data);
  }
}

TEST(PrefixRegistry, WritesThroughALink) {
  MachineFolder machine;
  const auto registry = machine.Open();
  ASSERT_TRUE(
      WriteText(*registry, kMachine, R"(System\CurrentControlSet\Services\K)", "v", "x").ok());
  EXPECT_EQ(ReadData(*registry, kMachine, R"(System\ControlSet001\services\k)", "v"), "x\0"s);
  EXPECT_THAT(machine.Get("system.reg"), HasSubstr(R"([System\\ControlSet001\\Services\\K])"));
}

TEST(PrefixRegistry, StoresANewKeyWithItsFirstValue) {
  MachineFolder machine;
  const std::string before = machine.Get("user.reg");
  const auto registry = machine.Open();
  const Result<KeyHandle> key = registry->CreateKey(kUser, R"(Software\New\Deep)");
  ASSERT_TRUE(key.ok());
  EXPECT_EQ(machine.Get("user.reg"), before) << "not yet";
  EXPECT_TRUE(registry->OpenKey(kUser, R"(Software\New)").ok()) << "but it is there to see";
  EXPECT_EQ(registry->QueryValue(key.value(), "v").number(), kFileNotFound);

  ASSERT_TRUE(registry->SetText(key.value(), "v", "x").ok());
  const std::string after = machine.Get("user.reg");
  EXPECT_THAT(after, HasSubstr("\n[Software\\\\New\\\\Deep] 1795253793\n"));
  EXPECT_TRUE(registry->CloseKey(key.value()).ok());
  EXPECT_EQ(machine.Get("user.reg"), after);
}

TEST(PrefixRegistry, StoresANewKeyWithoutValueOnClosing) {
  MachineFolder machine;
  const auto registry = machine.Open();
  const Result<KeyHandle> key = registry->CreateKey(kUser, R"(Software\New)");
  ASSERT_TRUE(key.ok());
  ASSERT_TRUE(registry->CloseKey(key.value()).ok());
  EXPECT_THAT(machine.Get("user.reg"),
              HasSubstr("\n[Software\\\\New] 1795253793\n#time=1dd799bcbb4dcc2\n\n"));
}

TEST(PrefixRegistry, ANewKeyThatIsNeverClosedIsNotStored) {
  MachineFolder machine;
  const std::string before = machine.Get("user.reg");
  ASSERT_TRUE(machine.Open()->CreateKey(kUser, R"(Software\New)").ok());
  EXPECT_EQ(machine.Get("user.reg"), before);
}

TEST(PrefixRegistry, TheSameTextChangesNoByte) {
  MachineFolder machine;
  const std::string before = machine.Get("user.reg");
  const auto registry = machine.Open();
  EXPECT_TRUE(WriteText(*registry, kUser, R"(Software\Probe\Types)", "SZ", "plain").ok());
  EXPECT_TRUE(WriteText(*registry, kUser, R"(Software\Probe\Types)", "", "default again").ok());
  EXPECT_TRUE(registry->CloseKey(registry->CreateKey(kUser, "SOFTWARE").value()).ok());
  EXPECT_EQ(machine.Get("user.reg"), before);
}

TEST(PrefixRegistry, TwoOfThemOnOneMachineLoseNothing) {
  MachineFolder machine;
  const auto first = machine.Open();
  const auto second = machine.Open();
  ASSERT_TRUE(WriteText(*first, kUser, R"(Software\K)", "a", "1").ok());
  ASSERT_TRUE(WriteText(*second, kUser, R"(Software\K)", "b", "2").ok());
  ASSERT_TRUE(WriteText(*first, kUser, R"(Software\K)", "a", "3").ok());
  const auto third = machine.Open();
  EXPECT_EQ(ReadData(*third, kUser, R"(Software\K)", "a"), "3\0"s);
  EXPECT_EQ(ReadData(*third, kUser, R"(Software\K)", "b"), "2\0"s);
}

TEST(PrefixRegistry, AKeyThatAnotherRemovedIsMissing) {
  MachineFolder machine;
  const auto registry = machine.Open();
  const Result<KeyHandle> key = registry->OpenKey(kUser, R"(Software\Probe\Types)");
  ASSERT_TRUE(key.ok());
  machine.Put("user.reg", kEmptyUserFile);
  EXPECT_EQ(registry->SetText(key.value(), "v", "x").number(), kFileNotFound);
  EXPECT_EQ(machine.Get("user.reg"), kEmptyUserFile);
}

TEST(PrefixRegistry, RefusesAFileThatNobodyMayWrite) {
  MachineFolder machine;
  const std::string before = machine.Get("user.reg");
  ASSERT_EQ(::chmod((machine.path() + "/user.reg").c_str(), 0444), 0);
  const auto registry = machine.Open();
  EXPECT_EQ(registry->CreateKey(kUser, R"(Software\New)").number(), kPathFileAccess);
  EXPECT_EQ(WriteText(*registry, kUser, R"(Software\Probe)", "v", "x").number(), kPathFileAccess);
  EXPECT_TRUE(WriteText(*registry, kMachine, R"(Software\New)", "v", "x").ok());
  EXPECT_TRUE(registry->OpenKey(kUser, R"(Software\Probe)").ok());
  EXPECT_EQ(machine.Get("user.reg"), before);
}

TEST(PrefixRegistry, WritesNothingWhileTheServerRuns) {
  MachineFolder machine;
  const std::string before = machine.Get("user.reg");
  const auto registry = machine.Open();
  const Result<KeyHandle> made = registry->CreateKey(kUser, R"(Software\New)");
  ASSERT_TRUE(made.ok());
  LockHolder server(machine.ServerFolder());
  EXPECT_EQ(WriteText(*registry, kUser, R"(Software\Probe)", "v", "x").number(), kPermissionDenied);
  EXPECT_EQ(registry->CreateKey(kUser, R"(Software\Other)").number(), kPermissionDenied);
  EXPECT_EQ(registry->SetText(made.value(), "v", "x").number(), kPermissionDenied);
  EXPECT_EQ(registry->HandOver().number(), kPermissionDenied) << "a new key waits to be stored";
  EXPECT_EQ(ReadData(*registry, kUser, R"(Software\Probe\Types)", "sz"), "plain\0"s);
  EXPECT_EQ(machine.Get("user.reg"), before);

  server.End();
  EXPECT_TRUE(registry->SetText(made.value(), "v", "x").ok()) << "the same key, on Retry";
}

TEST(PrefixRegistry, ReportsANewKeyThatCannotBeStoredOnClosing) {
  MachineFolder machine;
  const auto registry = machine.Open();
  const Result<KeyHandle> key = registry->CreateKey(kUser, R"(Software\New)");
  ASSERT_TRUE(key.ok());
  const LockHolder server(machine.ServerFolder());
  EXPECT_EQ(registry->CloseKey(key.value()).number(), kPermissionDenied);
  EXPECT_EQ(registry->CloseKey(key.value()).number(), kPathFileAccess) << "it is closed";
  EXPECT_EQ(registry->OpenKey(kUser, R"(Software\New)").number(), kFileNotFound);
}

TEST(PrefixRegistryHandOver, StoresNewKeysFirst) {
  MachineFolder machine;
  const auto registry = machine.Open();
  const Result<KeyHandle> key = registry->CreateKey(kUser, R"(Software\New)");
  ASSERT_TRUE(registry->HandOver().ok());
  EXPECT_THAT(machine.Get("user.reg"), HasSubstr("\n[Software\\\\New] "));
  EXPECT_TRUE(registry->CloseKey(key.value()).ok());
}

TEST(PrefixRegistryHandOver, WaitsForTheServerAndReadsAgain) {
  MachineFolder machine;
  const auto registry = machine.Open();
  const Result<KeyHandle> key = registry->OpenKey(kUser, R"(Software\Probe\Types)");
  ASSERT_TRUE(registry->HandOver().ok());
  LockHolder server(machine.ServerFolder());
  int sleeps = 0;
  machine.clock().on_sleep = [&] {
    if (++sleeps != 3) return;
    std::string text = machine.Get("user.reg");
    const std::string old = "\"sz\"=\"plain\"";
    machine.Put("user.reg", text.replace(text.find(old), old.size(), "\"sz\"=\"by wine\""));
    machine.Put("system.reg", std::string(kEmptySystemFile) + "\n[Made] 1\n");
    server.End();
  };
  const Result<RegistryValue> value = registry->QueryValue(key.value(), "sz");
  ASSERT_TRUE(value.ok());
  EXPECT_EQ(value.value().data, "by wine\0"s);
  EXPECT_EQ(sleeps, 3);
  EXPECT_TRUE(registry->OpenKey(kMachine, "Made").ok());
  EXPECT_TRUE(registry->SetText(key.value(), "v", "x").ok());
  EXPECT_THAT(machine.Get("user.reg"), HasSubstr("\"sz\"=\"by wine\""));
}

TEST(PrefixRegistryHandOver, WaitsNoLongerThanThirtySeconds) {
  MachineFolder machine;
  const auto registry = machine.Open();
  ASSERT_TRUE(registry->HandOver().ok());
  LockHolder server(machine.ServerFolder());
  const auto start = machine.clock().Ticks();
  EXPECT_EQ(registry->OpenKey(kUser, "Software").number(), kPermissionDenied);
  EXPECT_EQ(machine.clock().Ticks() - start, std::chrono::seconds(30));
  EXPECT_EQ(WriteText(*registry, kUser, "Software", "v", "x").number(), kPermissionDenied);
  server.End();
  EXPECT_TRUE(registry->OpenKey(kUser, "Software").ok());
}

TEST(PrefixRegistryHandOver, ReportsWhatTheProgramLeftDamaged) {
  MachineFolder machine;
  const auto registry = machine.Open();
  ASSERT_TRUE(registry->HandOver().ok());
  const std::string good = machine.Get("user.reg");
  machine.Put("user.reg", "half");
  EXPECT_EQ(registry->OpenKey(kUser, "Software").number(), kInvalidFileFormat);
  EXPECT_EQ(registry->SetText(kUser, "v", "x").number(), kInvalidFileFormat);
  EXPECT_EQ(machine.Get("user.reg"), "half");
  machine.Put("user.reg", good);
  EXPECT_TRUE(registry->OpenKey(kUser, "Software").ok());
}

TEST(PrefixRegistryHandOver, DoesNotWaitWithoutAServer) {
  MachineFolder machine;
  const auto registry = machine.Open();
  ASSERT_TRUE(registry->OpenKey(KeyHandle::Users, ".Default").ok());
  ASSERT_TRUE(registry->HandOver().ok());
  ASSERT_TRUE(registry->HandOver().ok());
  const auto start = machine.clock().Ticks();
  EXPECT_TRUE(registry->OpenKey(KeyHandle::Users, ".Default").ok());
  EXPECT_EQ(machine.clock().Ticks(), start);
}

}  // namespace
}  // namespace zent
