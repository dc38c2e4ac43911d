#include "platform/win32/files/HoldingProcess.h"

#include <windows.h>

#include <cstdlib>
#include <utility>

namespace zent::testing {
namespace {

struct Pipe {
  UniqueHandle read;
  UniqueHandle write;
};

Pipe MakePipe() {
  SECURITY_ATTRIBUTES inherited = {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  HANDLE read = nullptr;
  HANDLE write = nullptr;
  CreatePipe(&read, &write, &inherited, 0);
  return {UniqueHandle(read), UniqueHandle(write)};
}

std::string Quoted(const std::filesystem::path& path) { return '"' + path.string() + '"'; }

}  // namespace

std::filesystem::path HoldProgram() {
  std::string path(MAX_PATH, '\0');
  path.resize(GetModuleFileNameA(nullptr, path.data(), MAX_PATH));
  return std::filesystem::path(path).replace_filename("hold_file.exe");
}

HoldingProcess::HoldingProcess(const std::filesystem::path& file, const std::string& mode) {
  Pipe input = MakePipe();
  Pipe output = MakePipe();
  SetHandleInformation(input.write.get(), HANDLE_FLAG_INHERIT, 0);
  STARTUPINFOA start = {};
  start.cb = sizeof(start);
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = input.read.get();
  start.hStdOutput = output.write.get();
  start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  const std::filesystem::path program = mode == "run" ? file : HoldProgram();
  std::string command = Quoted(program) + ' ' + mode + ' ' + Quoted(file);
  PROCESS_INFORMATION made = {};
  if (!CreateProcessA(program.string().c_str(), command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                      nullptr, &start, &made)) {
    return;
  }
  CloseHandle(made.hThread);
  process_ = UniqueHandle(made.hProcess);
  id_ = made.dwProcessId;
  input_ = std::move(input.write);
  output.write.Close();  // so that the end of the process ends the read
  char held = 0;
  DWORD read = 0;
  ok_ = ReadFile(output.read.get(), &held, 1, &read, nullptr) && read == 1;
}

void HoldingProcess::Kill() {
  TerminateProcess(process_.get(), EXIT_FAILURE);
  WaitForSingleObject(process_.get(), INFINITE);
}

HoldingProcess::~HoldingProcess() {
  input_.Close();
  if (process_.ok()) WaitForSingleObject(process_.get(), INFINITE);
}

}  // namespace zent::testing
