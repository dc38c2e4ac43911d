#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "base/CaseFold.h"
#include "platform/prefix/registry/PrefixSystemInfo.h"
#include "platform/prefix/registry/RegistryMachines.h"

namespace zent {
namespace {

using testing::kEmptySystemFile;
using testing::kEmptyUserFile;
using testing::MachineFolder;

/// A machine and what it says of its system.
struct System {
  System() : registry(machine.Open()), info(*registry) {}
  System(const std::string& system_keys, const std::string& user_keys)
      : machine(std::string(kEmptySystemFile) + system_keys,
                std::string(kEmptyUserFile) + user_keys),
        registry(machine.Open()),
        info(*registry) {}

  std::string Variable(std::string_view name) {
    return info.EnvironmentVariable(name).value_or("(none)");
  }

  MachineFolder machine;
  std::unique_ptr<PrefixRegistry> registry;
  PrefixSystemInfo info;
};

const std::string kNtKey = "\n[Software\\\\Microsoft\\\\Windows NT\\\\CurrentVersion] 1\n";
const std::string kMachineEnvironment =
    "\n[System\\\\CurrentControlSet\\\\Control\\\\Session Manager\\\\Environment] 1\n";
const std::string kUserEnvironment = "\n[Environment] 1\n";
const std::string kVolatileEnvironment = "\n[Volatile Environment] 1\n";

struct VersionCase {
  const char* what;
  std::string line;
  std::uint32_t major;
  std::uint32_t minor;
};

const VersionCase kVersions[] = {
    {"Vista", "\"CurrentVersion\"=\"6.0\"\n", 6, 0},
    {"Windows 7", "\"CurrentVersion\"=\"6.1\"\n", 6, 1},
    {"XP", "\"CurrentVersion\"=\"5.1\"\n", 5, 1},
    {"numbers of two digits", "\"CurrentVersion\"=\"10.12\"\n", 10, 12},
    {"missing", "\"Other\"=\"6.0\"\n", 5, 1},
    {"empty", "\"CurrentVersion\"=\"\"\n", 5, 1},
    {"no point", "\"CurrentVersion\"=\"6\"\n", 5, 1},
    {"no minor number", "\"CurrentVersion\"=\"6.\"\n", 5, 1},
    {"no major number", "\"CurrentVersion\"=\".1\"\n", 5, 1},
    {"three numbers", "\"CurrentVersion\"=\"6.0.1\"\n", 5, 1},
    {"letters", "\"CurrentVersion\"=\"six.0\"\n", 5, 1},
    {"a sign", "\"CurrentVersion\"=\"-6.0\"\n", 5, 1},
    {"too large", "\"CurrentVersion\"=\"99999999999.0\"\n", 5, 1},
    {"another type", "\"CurrentVersion\"=dword:00000006\n", 5, 1},
};

TEST(PrefixSystemInfo, TellsTheVersion) {
  for (const VersionCase& row : kVersions) {
    SCOPED_TRACE(row.what);
    System system(kNtKey + row.line, "");
    const OsVersion version = system.info.Version();
    EXPECT_EQ(version.platform, kPlatformNt);
    EXPECT_EQ(version.major, row.major);
    EXPECT_EQ(version.minor, row.minor);
  }
  System bare("", "");
  EXPECT_EQ(bare.info.Version().major, 5U);
}

struct FolderCase {
  const char* what;
  std::string line;
  const char* folder;
};

const FolderCase kFolders[] = {
    {"as the machine says", "\"SystemRoot\"=\"D:\\\\WINNT\"\n", R"(D:\WINNT)"},
    {"a trailing backslash", "\"SystemRoot\"=\"C:\\\\Windows\\\\\"\n", R"(C:\Windows)"},
    {"missing", "", R"(C:\windows)"},
    {"empty", "\"SystemRoot\"=\"\"\n", R"(C:\windows)"},
    {"no full path", "\"SystemRoot\"=\"windows\"\n", R"(C:\windows)"},
    {"no folder of a drive", "\"SystemRoot\"=\"\\\\\\\\server\\\\x\"\n", R"(C:\windows)"},
    {"in terms of itself", "\"SystemRoot\"=str(2):\"%SystemRoot%\"\n", R"(C:\windows)"},
};

TEST(PrefixSystemInfo, TellsTheFolders) {
  for (const FolderCase& row : kFolders) {
    SCOPED_TRACE(row.what);
    System system(kNtKey + row.line, "");
    EXPECT_EQ(system.info.WindowsFolder(), row.folder);
    EXPECT_EQ(system.info.SystemFolder(), row.folder + std::string(R"(\system32)"));
    EXPECT_EQ(system.Variable("windir"), row.folder);
    EXPECT_EQ(system.Variable("SystemDrive"), std::string(row.folder, 2));
  }
}

struct TempCase {
  const char* what;
  std::string lines;
  const char* folder;
};

const TempCase kTemps[] = {
    {"TMP first", "\"TEMP\"=\"C:\\\\e\"\n\"TMP\"=\"C:\\\\m\"\n\"USERPROFILE\"=\"C:\\\\u\"\n",
     R"(C:\m)"},
    {"then TEMP", "\"TEMP\"=\"C:\\\\e\"\n\"USERPROFILE\"=\"C:\\\\u\"\n", R"(C:\e)"},
    {"an empty one is passed over", "\"TEMP\"=\"C:\\\\e\"\n\"TMP\"=\"\"\n", R"(C:\e)"},
    {"then USERPROFILE", "\"USERPROFILE\"=\"C:\\\\u\"\n", R"(C:\u)"},
    {"then the Windows folder", "", R"(C:\windows)"},
    {"a trailing backslash", "\"TMP\"=\"C:\\\\m\\\\\"\n", R"(C:\m)"},
    {"expanded", "\"TMP\"=str(2):\"%SystemDrive%\\\\m\"\n", R"(C:\m)"},
};

TEST(PrefixSystemInfo, TellsTheTemporaryFolder) {
  for (const TempCase& row : kTemps) {
    SCOPED_TRACE(row.what);
    System system("", kUserEnvironment + row.lines);
    EXPECT_EQ(system.info.TempFolder(), row.folder);
  }
}

struct VariableCase {
  const char* name;
  const char* value;
};

// What a program of the prefix found in its environment.
constexpr VariableCase kEnvironment[] = {
    {"SystemRoot", R"(C:\windows)"},
    {"windir", R"(C:\windows)"},
    {"SystemDrive", "C:"},
    {"ProgramFiles", R"(C:\Program Files)"},
    {"ProgramFiles(x86)", R"(C:\Program Files (x86))"},
    {"ProgramW6432", R"(C:\Program Files)"},
    {"CommonProgramFiles", R"(C:\Program Files\Common Files)"},
    {"CommonProgramFiles(x86)", R"(C:\Program Files (x86)\Common Files)"},
    {"CommonProgramW6432", R"(C:\Program Files\Common Files)"},
    {"ALLUSERSPROFILE", R"(C:\ProgramData)"},
    {"ProgramData", R"(C:\ProgramData)"},
    {"PUBLIC", R"(C:\users\Public)"},
    {"USERPROFILE", R"(C:\users\anna)"},
    {"APPDATA", R"(C:\users\anna\AppData\Roaming)"},
    {"LOCALAPPDATA", R"(C:\users\anna\AppData\Local)"},
    {"HOMEDRIVE", "C:"},
    {"HOMEPATH", R"(\users\anna)"},
    {"USERNAME", "anna"},
    {"TEMP", R"(C:\users\anna\Temp)"},
    {"TMP", R"(C:\users\anna\Temp)"},
    {"PATH",
     R"(C:\windows\system32;C:\windows;C:\windows\system32\wbem;C:\windows\system32\WindowsPowershell\v1.0)"},
    {"PATHEXT", ".com;.exe;.bat;.cmd;.vbs;.vbe;.js;.jse;.wsf;.wsh"},
    {"ComSpec", R"(C:\windows\system32\cmd.exe)"},
    {"OS", "Windows_NT"},
    {"PROCESSOR_ARCHITECTURE", "AMD64"},
};

TEST(PrefixSystemInfo, KnowsTheEnvironmentOfTheSample) {
  System system;
  for (const VariableCase& row : kEnvironment) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(system.Variable(row.name), row.value);
    EXPECT_EQ(system.Variable(FoldName(row.name)), row.value);
  }
  EXPECT_EQ(system.Variable("HOMESHARE"), "");
  EXPECT_EQ(system.info.TempFolder(), R"(C:\users\anna\Temp)");
  EXPECT_EQ(system.info.Version().major, 6U);
  EXPECT_EQ(system.info.Version().minor, 0U);
  EXPECT_EQ(system.info.SystemFolder(), R"(C:\windows\system32)");
}

TEST(PrefixSystemInfo, KnowsNoOtherVariables) {
  System system;
  EXPECT_FALSE(system.info.EnvironmentVariable("nope"));
  EXPECT_FALSE(system.info.EnvironmentVariable(""));
  System bare("", "");
  EXPECT_FALSE(bare.info.EnvironmentVariable("ProgramFiles"));
  EXPECT_FALSE(bare.info.EnvironmentVariable("USERPROFILE"));
  EXPECT_EQ(bare.Variable("ProgramData"), R"(C:\ProgramData)");
  EXPECT_EQ(bare.Variable("ALLUSERSPROFILE"), R"(C:\ProgramData)");
  EXPECT_EQ(bare.Variable("PUBLIC"), R"(C:\users\Public)");
  EXPECT_EQ(bare.Variable("SystemRoot"), R"(C:\windows)");
}

TEST(PrefixSystemInfo, LooksInTheUsersPlacesFirst) {
  System system(kMachineEnvironment + "\"A\"=\"machine\"\n\"B\"=\"machine\"\n\"C\"=\"machine\"\n",
                kUserEnvironment + "\"A\"=\"user\"\n\"B\"=\"user\"\n" + kVolatileEnvironment +
                    "\"A\"=\"volatile\"\n\"D\"=dword:00000001\n");
  EXPECT_EQ(system.Variable("A"), "volatile");
  EXPECT_EQ(system.Variable("B"), "user");
  EXPECT_EQ(system.Variable("C"), "machine");
  EXPECT_EQ(system.Variable("D"), "(none)") << "a number is no variable";
}

struct NestedCase {
  const char* what;
  std::string user_lines;
  const char* value;  ///< of the variable A
};

const NestedCase kNested[] = {
    {"a text is not expanded", "\"A\"=\"%B%\"\n\"B\"=\"b\"\n", "%B%"},
    {"one level", "\"A\"=str(2):\"<%B%>\"\n\"B\"=\"b\"\n", "<b>"},
    {"several levels", "\"A\"=str(2):\"<%B%>\"\n\"B\"=str(2):\"(%C%)\"\n\"C\"=\"c\"\n", "<(c)>"},
    {"an unknown name", "\"A\"=str(2):\"%nope%\"\n", "%nope%"},
    {"itself alone", "\"A\"=str(2):\"%A%;x\"\n", "%A%;x"},
    {"itself, further down", "\"S\"=\"s\"\n\"A\"=str(2):\"%PATH%;%S%\"\n", "machine;s"},
    {"each other", "\"A\"=str(2):\"a%B%\"\n\"B\"=str(2):\"b%A%\"\n", "ab%A%"},
    {"up to its first NUL", "\"A\"=str(2):\"a\\0b\"\n", "a"},
};

TEST(PrefixSystemInfo, ExpandsVariablesInVariables) {
  for (const NestedCase& row : kNested) {
    SCOPED_TRACE(row.what);
    System system(kMachineEnvironment + "\"PATH\"=\"machine\"\n",
                  kUserEnvironment + row.user_lines);
    EXPECT_EQ(system.Variable("A"), row.value);
  }
  System path(kMachineEnvironment + "\"PATH\"=str(2):\"%SystemRoot%\"\n",
              kUserEnvironment + "\"PATH\"=str(2):\"%PATH%;C:\\\\K\"\n");
  EXPECT_EQ(path.Variable("PATH"), R"(C:\windows;C:\K)");
}

TEST(PrefixSystemInfo, EndsWithHostileVariables) {
  // Each names the next many times over: followed blindly, 40 to the power of 40 lookups.
  std::string lines;
  for (int i = 0; i < 40; ++i) {
    lines += "\"V" + std::to_string(i) + "\"=str(2):\"";
    for (int k = 0; k < 40; ++k) lines += "%V" + std::to_string(i + 1) + "%";
    lines += "\"\n";
  }
  System system("", kUserEnvironment + lines);
  EXPECT_LT(system.Variable("V0").size(), 1000000U);
  EXPECT_EQ(system.Variable("V39").substr(0, 10), "%V40%%V40%") << "a new question starts anew";
}

TEST(PrefixSystemInfo, HasTheWesternCodePage) {
  System system;
  EXPECT_EQ(system.info.ToAnsi("a\xC3\xBC\xE2\x82\xAC\xD0\x96"), "a\xFC\x80?");
  EXPECT_EQ(system.info.FromAnsi("a\xFC\x80\x81"), "a\xC3\xBC\xE2\x82\xAC\xC2\x81");
}

struct ExpandCase {
  const char* text;
  const char* expanded;
};

// As ExpandEnvironmentStrings answered. Left out: a buffer that is too small, which only tells the
// size needed.
constexpr ExpandCase kExpand[] = {
    {R"(%SystemRoot%\x)", R"(C:\windows\x)"},
    {"%systemroot%", R"(C:\windows)"},
    {R"(%nope%\x)", R"(%nope%\x)"},
    {"100%", "100%"},
    {"%%", "%%"},
    {"%SystemRoot", "%SystemRoot"},
    {"a%SystemDrive%b%SystemDrive%c", "aC:bC:c"},
    {"%SystemRoot%%nope%%SystemDrive%", R"(C:\windows%nope%C:)"},
    {"", ""},
    {"50% of %nope% and %SystemDrive%", "50% of %nope% and C:"},
};

TEST(ExpandEnvironment, ReplacesTheVariablesThatAreSet) {
  System system;
  for (const ExpandCase& row : kExpand) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(ExpandEnvironment(system.info, row.text), row.expanded);
  }
}

}  // namespace
}  // namespace zent
