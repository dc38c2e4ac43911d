#include "app/jetdb/JetdbRun.h"
#include "scenarios/HostProgram.h"

namespace zent::testing {

JetdbEnd RunBuiltJetdb(const std::vector<std::string>& arguments,
                       const std::filesystem::path& folder) {
  std::vector<std::string> line = {ZENT_PROGRAM};
  line.insert(line.end(), arguments.begin(), arguments.end());
  const ProgramEnd end = RunHostProgram(line, folder.string());
  return {.exit_code = end.exit_code, .output = end.output};
}

}  // namespace zent::testing
