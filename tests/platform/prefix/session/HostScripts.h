#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "support/TempFolder.h"

namespace zent::testing {

/// Puts a shell script with execute permission into `folder`.
std::filesystem::path PutScript(const TempFolder& folder, const std::filesystem::path& name,
                                std::string_view commands);

/// Puts a script that records how it was started into the file `record` of `folder`, with the lines
/// of its environment and arguments that follow: WINEPREFIX=..., MARK=..., pwd=..., then each
/// argument in <>. The file appears at once with all its lines.
std::filesystem::path PutRecorder(const TempFolder& folder, const std::filesystem::path& name,
                                  const std::string& record);

/// Waits (10 seconds at most) until a program has written the file; its contents, or a failed
/// expectation.
std::string WaitForFile(const std::filesystem::path& path);

/// True when this process has a child, running or ended.
bool HasChildren();

}  // namespace zent::testing
