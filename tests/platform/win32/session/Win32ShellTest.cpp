#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <functional>

#include "platform/win32/session/StartedProgram.h"
#include "platform/win32/session/Win32Processes.h"
#include "platform/win32/session/Win32Shell.h"

namespace zent {
namespace {

using ::testing::Optional;
using testing::PutOtherProgram;
using testing::RecordOf;
using testing::TempFolder;
using testing::WaitForExit;

bool WaitUntil(const std::function<bool()>& holds) {
  for (int tries = 0; tries < 400; ++tries) {
    if (holds()) return true;
    Sleep(25);
  }
  return false;
}

TEST(Win32Shell, ClosesTheWindowOfAnotherProgram) {
  const TempFolder folder;
  const std::string program = PutOtherProgram(folder, "other.exe");
  Win32Shell shell;
  ASSERT_EQ(shell.FindWindowByTitle("Korvo - M\xC3\xBCller"), WindowHandle::None);
  const auto started = Win32Processes().Start({program, "window Korvo - M\xC3\xBCller", program});
  ASSERT_TRUE(started.ok());

  ASSERT_TRUE(WaitUntil(
      [&] { return shell.FindWindowByTitle("Korvo - M\xC3\xBCller") != WindowHandle::None; }));
  const WindowHandle window = shell.FindWindowByTitle("korvo - m\xC3\xBCLLER");
  EXPECT_NE(window, WindowHandle::None) << "a title matches in any case";
  EXPECT_EQ(shell.FindWindowByTitle("Korvo"), WindowHandle::None) << "a part is not the title";
  EXPECT_EQ(shell.FindWindowByTitle("\xE4\xB8\xAD"), WindowHandle::None);
  EXPECT_TRUE(shell.PostClose(window).ok());

  EXPECT_THAT(WaitForExit(started.value()), Optional(7U));
  EXPECT_EQ(shell.FindWindowByTitle("Korvo - M\xC3\xBCller"), WindowHandle::None);
  EXPECT_EQ(shell.PostClose(window).number(), kInvalidProcedureCall) << "the window has gone";
}

TEST(Win32Shell, NoWindowCannotBeClosed) {
  EXPECT_EQ(Win32Shell().PostClose(WindowHandle::None).number(), kInvalidProcedureCall);
}

/// A program that web addresses are opened with, for as long as this lives.
class Browser {
 public:
  explicit Browser(const std::string& program) {
    command_ = "\"" + program + "\" <%1>";
    Set(kHttp, command_, before_http_);
    Set(kHttps, command_, before_https_);
  }
  Browser(const Browser&) = delete;
  Browser& operator=(const Browser&) = delete;
  ~Browser() {
    std::string unused;
    Set(kHttp, before_http_, unused);
    Set(kHttps, before_https_, unused);
  }

 private:
  static constexpr const char* kHttp = R"(http\shell\open\command)";
  static constexpr const char* kHttps = R"(https\shell\open\command)";

  static void Set(const char* path, const std::string& command, std::string& before) {
    char old[1024] = {};
    LONG size = sizeof(old) - 1;
    if (RegQueryValueA(HKEY_CLASSES_ROOT, path, old, &size) == ERROR_SUCCESS) before = old;
    EXPECT_EQ(RegSetValueA(HKEY_CLASSES_ROOT, path, REG_SZ, command.c_str(),
                           static_cast<DWORD>(command.size())),
              ERROR_SUCCESS);
  }

  std::string command_;
  std::string before_http_;
  std::string before_https_;
};

constexpr const char* kWebAddresses[] = {
    "http://www.zentware.example/download/KorvoSP%203.6.0.exe",
    "https://a.example/?a=b&c=d",
};

TEST(Win32Shell, OpensWebAddressesInTheBrowser) {
  const TempFolder folder;
  const std::string program = PutOtherProgram(folder, "browser.exe");
  const Browser browser(program);
  for (const char* address : kWebAddresses) {
    SCOPED_TRACE(address);
    EXPECT_TRUE(Win32Shell().OpenAddress(address).ok());
    ASSERT_TRUE(WaitUntil([&] { return std::filesystem::exists(program + ".record"); }));
    EXPECT_THAT(RecordOf(program), ::testing::HasSubstr(std::string("<") + address + ">"));
    EXPECT_TRUE(WaitUntil([&] { return DeleteFileA((program + ".record").c_str()) != FALSE; }));
  }
}

constexpr const char* kOtherAddresses[] = {
    "",           "ftp://a.example/", R"(C:\windows\notepad.exe)", "notepad.exe",
    "http://a b", "file:///C:/a.exe", "javascript:alert(1)",
};

TEST(Win32Shell, RefusesEveryOtherAddress) {
  for (const char* address : kOtherAddresses) {
    SCOPED_TRACE(address);
    EXPECT_EQ(Win32Shell().OpenAddress(address).number(), kInvalidProcedureCall);
  }
}

bool HoldsShutdownPrivilege() {
  HANDLE token = nullptr;
  OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token);
  LUID wanted = {};
  LookupPrivilegeValueA(nullptr, "SeShutdownPrivilege", &wanted);
  alignas(TOKEN_PRIVILEGES) char buffer[4096] = {};
  DWORD size = 0;
  GetTokenInformation(token, TokenPrivileges, buffer, sizeof(buffer), &size);
  CloseHandle(token);
  const auto* const held = reinterpret_cast<const TOKEN_PRIVILEGES*>(buffer);
  for (DWORD i = 0; i < held->PrivilegeCount; ++i) {
    const LUID_AND_ATTRIBUTES& row = held->Privileges[i];
    if (row.Luid.LowPart == wanted.LowPart && row.Luid.HighPart == wanted.HighPart) {
      return (row.Attributes & SE_PRIVILEGE_ENABLED) != 0;
    }
  }
  return false;
}

TEST(Win32Shell, AcquiresTheRightToShutDown) {
  EXPECT_TRUE(Win32Shell().AcquireShutdownPrivilege());
  EXPECT_TRUE(HoldsShutdownPrivilege());
}

TEST(Win32Shell, EndsTheSessionByKnownActionsOnly) {
  for (const std::uint32_t action : {0U, kForce, 3U, 4U, kRestart | 32U, 0xFFFFFFFFU}) {
    EXPECT_EQ(Win32Shell().EndSession(action).number(), kInvalidProcedureCall) << action;
  }
}

}  // namespace
}  // namespace zent
