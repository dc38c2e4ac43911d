#include "platform/win32/session/StartedProgram.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "platform/win32/UniqueHandle.h"

namespace zent::testing {
namespace {

/// A path of plain chars would be taken as text of the C locale.
std::filesystem::path OfUtf8(const std::string& text) {
  return std::u8string(text.begin(), text.end());
}

constexpr DWORD kLongestWait = 10000;  // milliseconds

}  // namespace

std::string PutBeside(const char* program_name, const TempFolder& folder, const std::string& name) {
  char self[MAX_PATH] = {};
  GetModuleFileNameA(nullptr, self, MAX_PATH);
  const auto program = std::filesystem::path(self).parent_path() / program_name;
  std::filesystem::path target = folder.path() / OfUtf8(name);
  std::filesystem::create_directories(target.parent_path());
  std::filesystem::copy_file(program, target);
  const std::u8string path = target.make_preferred().u8string();
  return {path.begin(), path.end()};
}

std::string PutOtherProgram(const TempFolder& folder, const std::string& name) {
  return PutBeside("other_program.exe", folder, name);
}

std::optional<std::uint32_t> WaitForExit(std::uint32_t process_id) {
  const UniqueHandle process(
      OpenProcess(SYNCHRONIZE | PROCESS_QUERY_INFORMATION, FALSE, process_id));
  if (!process.ok()) return std::nullopt;
  if (WaitForSingleObject(process.get(), kLongestWait) != WAIT_OBJECT_0) return std::nullopt;
  DWORD code = 0;
  EXPECT_NE(GetExitCodeProcess(process.get(), &code), FALSE);
  return code;
}

std::string RecordOf(const std::string& program) {
  return ReadHostFile(OfUtf8(program + ".record"));
}

}  // namespace zent::testing
