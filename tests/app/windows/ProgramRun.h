#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace zent::testing {

struct ProgramEnd {
  std::uint32_t exit_code = 0;
  std::string output;  ///< what both outputs hold, UTF-8
};

/// The built ZentUpdate.exe.
std::filesystem::path BuiltProgram();

/// Runs the program with these arguments, its outputs redirected and its input empty, in the
/// folder, and waits for its end (20 seconds at most).
ProgramEnd RunProgramFile(const std::filesystem::path& program, const std::wstring& arguments,
                          const std::filesystem::path& folder);

}  // namespace zent::testing
