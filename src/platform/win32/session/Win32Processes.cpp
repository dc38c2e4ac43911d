#include "platform/win32/session/Win32Processes.h"

#include <windows.h>

#include <string>
#include <utility>

#include "platform/win32/AnsiText.h"
#include "platform/win32/UniqueHandle.h"
#include "platform/win32/Win32Errors.h"
#include "platform/win32/session/WaitedProgram.h"

namespace zent {
namespace {

constexpr DWORD kElevationRequired = 740;  // ERROR_ELEVATION_REQUIRED, of Vista and later

RuntimeError StartError(DWORD code) {
  switch (code) {
    case ERROR_BAD_FORMAT:
    case ERROR_BAD_EXE_FORMAT:
    case ERROR_INVALID_EXE_SIGNATURE:
    case ERROR_EXE_MARKED_INVALID:
    case ERROR_EXE_MACHINE_TYPE_MISMATCH:
      return StandardError(kInvalidProcedureCall);
    case ERROR_ACCESS_DENIED:
    case kElevationRequired:
      return StandardError(kPermissionDenied);
    default:
      return ErrorOfWin32(code);
  }
}

bool IsFile(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return false;
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) return true;
  SetLastError(ERROR_FILE_NOT_FOUND);
  return false;
}

/// The full path of the program's file, in ANSI. A folder of the very name does not hide
/// "NAME.exe".
Result<std::string> FindProgram(std::string_view program) {
  // A quote would end the quoted path of the command line; no name holds one.
  if (program.empty() || program.find('"') != std::string::npos || program.back() == '\\' ||
      program.back() == '/') {
    return StandardError(kFileNotFound);
  }
  const Result<std::string> ansi = AnsiOf(program);
  if (!ansi.ok()) return ansi.error();
  char full[MAX_PATH] = {};
  const DWORD length = GetFullPathNameA(ansi.value().c_str(), MAX_PATH, full, nullptr);
  if (length == 0 || length >= MAX_PATH) return StandardError(kFileNotFound);
  std::string path = full;
  if (IsFile(path)) return path;
  const RuntimeError missing = LastError();
  if (IsFile(path + ".exe")) return path + ".exe";
  return missing;
}

/// The folder of a full path, both in ANSI, with the backslash that a drive's root needs. It is
/// looked for in the text: where letters take two bytes, the second may be that of a backslash.
std::string FolderOf(const std::string& path) {
  const std::string text = TextOfAnsi(path);
  return ShownAnsiOf(text.substr(0, text.rfind('\\') + 1));
}

/// A process that has been created.
struct Created {
  UniqueHandle process;
  std::uint32_t id = 0;
};

/// `streams` are null for a program that is not waited for.
Result<Created> Create(const Launch& launch, const WaitedStreams* streams) {
  const Result<std::string> found = FindProgram(launch.program);
  if (!found.ok()) return found.error();
  const Result<std::string> arguments = AnsiOf(launch.arguments);
  if (!arguments.ok()) return StandardError(kInvalidProcedureCall);
  const std::string& path = found.value();
  std::string command_line = "\"" + path + "\"";
  if (!launch.arguments.empty()) command_line += " " + arguments.value();

  STARTUPINFOA startup = {};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = SW_SHOWMINIMIZED;  // with the focus
  if (streams != nullptr) streams->GiveTo(startup);
  PROCESS_INFORMATION process = {};
  // Named by its full path as well, so that the system does not search; no handle of ours but the
  // streams, which would keep files and pipes open, is handed down.
  if (CreateProcessA(path.c_str(), command_line.data(), nullptr, nullptr,
                     streams == nullptr ? FALSE : TRUE, CREATE_NEW_CONSOLE, nullptr,
                     FolderOf(path).c_str(), &startup, &process) == FALSE) {
    return StartError(GetLastError());
  }
  const UniqueHandle thread(process.hThread);
  return Created{.process = UniqueHandle(process.hProcess), .id = process.dwProcessId};
}

}  // namespace

Result<std::uint32_t> Win32Processes::Start(const Launch& launch) {
  const Result<Created> created = Create(launch, nullptr);
  if (!created.ok()) return created.error();
  return created.value().id;
}

Result<std::unique_ptr<RunningProgram>> Win32Processes::StartWaited(const Launch& launch) {
  Result<WaitedStreams> streams = WaitedStreams::Open();
  if (!streams.ok()) return streams.error();
  Result<Created> created = Create(launch, &streams.value());
  if (!created.ok()) return created.error();
  // Wine starts a program of its host, too, but without a handle that could be waited on.
  if (!created.value().process.ok()) return StandardError(kInvalidProcedureCall);
  // The program's ends close with `streams`: only the program holds them now.
  return WaitFor(std::move(created.value().process), std::move(streams.value().reader));
}

}  // namespace zent
