#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include "app/windows/ProgramRun.h"
#include "platform/win32/UniqueHandle.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

using ::testing::HasSubstr;

/// The application, installed for as long as this lives.
class InstalledKorvo {
 public:
  explicit InstalledKorvo(const TempFolder& folder) {
    const std::string program =
        folder.Put("Korvo/Korvo.exe", "no program").make_preferred().string();
    HKEY key = nullptr;
    EXPECT_EQ(RegCreateKeyA(HKEY_LOCAL_MACHINE, kKey, &key), ERROR_SUCCESS);
    RegSetValueExA(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(program.c_str()),
                   static_cast<DWORD>(program.size() + 1));
    RegCloseKey(key);
  }
  InstalledKorvo(const InstalledKorvo&) = delete;
  InstalledKorvo& operator=(const InstalledKorvo&) = delete;
  ~InstalledKorvo() { RegDeleteKeyA(HKEY_LOCAL_MACHINE, kKey); }

 private:
  static constexpr const char* kKey =
      R"(SOFTWARE\Microsoft\Windows\CurrentVersion\App Paths\Korvo.exe)";
};

/// A package that shows one message.
struct Package {
  Package() { PutList("msg,ran\r\n"); }
  void PutList(const std::string& list) const {
    folder.Put("package/ZentUpdate.ini", "[General]\r\nAppName=Korvo\r\n[setup]\r\n" + list);
  }
  ProgramEnd Run(const std::wstring& arguments) const {
    return RunProgramFile(BuiltProgram(), arguments, folder.path());
  }
  TempFolder folder;
};

struct EndCase {
  const char* what;
  const wchar_t* arguments;
  std::uint32_t exit_code;
  const char* told;
};

constexpr EndCase kEndsWithoutARun[] = {
    {"help", L"--help", 0, "Exit codes: 0 success; 3010 success, restart needed"},
    {"the version", L"--version", 0, "ZentUpdate "},
    {"a wrong line", L"--nosuch --unattended", 1639, "zentupdate: "},
    {"another machine", L"--machine C:\\m", 1639, "the machine is the one"},
    {"no such folder", L"missing --unattended", 1619, "no package folder: "},
    {"no list in the folder", L". --unattended", 1619, "ZentUpdate.ini: File not found"},
    {"no such answers", L"package --answers missing", 1639, "missing: File not found"},
    {"a log that cannot be", L"package --unattended --log no\\such\\log", 1639, "no\\such\\log"},
    {"a package in no letters of the system", L"\u4E2D --unattended", 1619, "no package folder: "},
};

TEST(ZentUpdate, TellsWhyItDoesNotRun) {
  const Package given;
  for (const EndCase& row : kEndsWithoutARun) {
    SCOPED_TRACE(row.what);
    const ProgramEnd end = given.Run(row.arguments);
    EXPECT_EQ(end.exit_code, row.exit_code);
    EXPECT_THAT(end.output, HasSubstr(row.told));
  }
}

struct RunCase {
  const char* what;
  const char* list;
  const wchar_t* options;
  std::uint32_t exit_code;
};

constexpr RunCase kRuns[] = {
    {"on the console", "msg,ran\r\n", L"--console", 0},
    {"in the window", "msg,ran\r\n", L"--window", 0},
    {"a failing command", "copy,missing.txt,$(apppath)\r\n", L"--console", 1603},
    {"a warning that counts", "nosuch,x\r\n", L"--console --detailed-exitcode", 10},
    {"a warning that does not", "nosuch,x\r\n", L"--console", 0},
    {"strict", "nosuch,x\r\n", L"--console --strict", 1625},
};

TEST(ZentUpdate, RunsAPackageUnattended) {
  const Package given;
  const InstalledKorvo korvo(given.folder);
  for (const RunCase& row : kRuns) {
    SCOPED_TRACE(row.what);
    given.PutList(row.list);
    const ProgramEnd end =
        given.Run(L"package --unattended --log log.txt " + std::wstring(row.options));
    EXPECT_EQ(end.exit_code, row.exit_code) << end.output;
  }
}

TEST(ZentUpdate, ShowsMessagesOnARedirectedOutput) {
  const Package given;
  const InstalledKorvo korvo(given.folder);
  given.PutList("msg,M\xFCller\r\n");
  const ProgramEnd end = given.Run(L"package --console --unattended --log log.txt");
  EXPECT_EQ(end.exit_code, 0U);
  EXPECT_THAT(end.output, HasSubstr("  M\xC3\xBCller\r\n"));
  EXPECT_THAT(given.folder.Get("log.txt"), HasSubstr("  M\xC3\xBCller\r\n"));
}

TEST(ZentUpdate, AMachineWithoutTheApplicationIs1642) {
  const Package given;
  EXPECT_EQ(given.Run(L"package --console --unattended").exit_code, 1642U);
}

TEST(ZentUpdate, TakesThePackageInItsOwnFolder) {
  const Package given;
  const InstalledKorvo korvo(given.folder);
  const auto program = given.folder.path() / "package/Setup.exe";
  std::filesystem::copy_file(BuiltProgram(), program);
  const ProgramEnd end = RunProgramFile(program, L"--console --unattended", given.folder.path());
  EXPECT_EQ(end.exit_code, 0U);
  EXPECT_THAT(end.output, HasSubstr("  ran\r\n"));
}

TEST(ZentUpdate, AnotherRunOnTheMachineIs1618) {
  const Package given;
  const UniqueHandle other(CreateMutexA(nullptr, FALSE, R"(Global\ZentUpdate run)"));
  const ProgramEnd end = given.Run(L"package --console --unattended");
  EXPECT_EQ(end.exit_code, 1618U);
  EXPECT_THAT(end.output, HasSubstr("another run is at work"));
}

}  // namespace
}  // namespace zent::testing
