#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "support/TempFolder.h"

namespace zent::testing {

/// Puts a program that lies beside this test program into the folder under a name of the test's
/// choice; returns its full path. Texts are UTF-8.
std::string PutBeside(const char* program_name, const TempFolder& folder, const std::string& name);
/// As PutBeside, for other_program.exe.
std::string PutOtherProgram(const TempFolder& folder, const std::string& name);

/// Waits for the process to end and returns its exit code; nothing when it takes ten seconds.
std::optional<std::uint32_t> WaitForExit(std::uint32_t process_id);

/// What the program at this path has written beside itself.
std::string RecordOf(const std::string& program);

}  // namespace zent::testing
