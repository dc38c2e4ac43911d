#include "app/jetdb/JetdbRun.h"
#include "app/windows/ProgramRun.h"
#include "platform/win32/WideText.h"

namespace zent::testing {

JetdbEnd RunBuiltJetdb(const std::vector<std::string>& arguments,
                       const std::filesystem::path& folder) {
  std::wstring line;
  for (const std::string& argument : arguments) line += L"\"" + WideOf(argument) + L"\" ";
  const ProgramEnd end = RunProgramFile(BuiltProgram(), line, folder);
  return {.exit_code = static_cast<int>(end.exit_code), .output = end.output};
}

}  // namespace zent::testing
