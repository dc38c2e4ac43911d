#include "app/windows/ProgramRun.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "platform/win32/UniqueHandle.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

constexpr DWORD kLongestRun = 20000;  // milliseconds

UniqueHandle OpenShared(const std::wstring& name, DWORD access, DWORD creation) {
  SECURITY_ATTRIBUTES inherited = {};
  inherited.nLength = sizeof(inherited);
  inherited.bInheritHandle = TRUE;
  UniqueHandle file(CreateFileW(name.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                &inherited, creation, 0, nullptr));
  EXPECT_TRUE(file.ok());
  return file;
}

}  // namespace

std::filesystem::path BuiltProgram() {
  wchar_t self[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, self, MAX_PATH);
  return (std::filesystem::path(self).parent_path() / ZENT_PROGRAM).lexically_normal();
}

ProgramEnd RunProgramFile(const std::filesystem::path& program, const std::wstring& arguments,
                          const std::filesystem::path& folder) {
  const TempFolder place;
  const std::filesystem::path record = place.path() / "output";
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESTDHANDLES;
  PROCESS_INFORMATION process = {};
  ProgramEnd end;
  {
    const UniqueHandle output = OpenShared(record.native(), FILE_APPEND_DATA, CREATE_NEW);
    const UniqueHandle input = OpenShared(L"NUL", GENERIC_READ, OPEN_EXISTING);
    startup.hStdInput = input.get();
    startup.hStdOutput = output.get();
    startup.hStdError = output.get();
    std::wstring line = L"\"" + program.native() + L"\" " + arguments;
    EXPECT_NE(CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                             folder.c_str(), &startup, &process),
              FALSE);
  }
  const UniqueHandle thread(process.hThread);
  const UniqueHandle owner(process.hProcess);
  if (WaitForSingleObject(owner.get(), kLongestRun) != WAIT_OBJECT_0) {
    ADD_FAILURE() << "the program does not end";
    TerminateProcess(owner.get(), 1);
  }
  DWORD code = 0;
  GetExitCodeProcess(owner.get(), &code);
  end.exit_code = code;
  end.output = ReadHostFile(record);
  return end;
}

}  // namespace zent::testing
