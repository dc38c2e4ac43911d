#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace zent {

struct CloseOwnFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

/// A file of the host that is this program's alone: a program that it starts does not get it, and
/// so does not keep it open after our end.
using OwnFile = std::unique_ptr<std::FILE, CloseOwnFile>;

/// Creates or empties the file `path` (UTF-8) to be written in bytes; null when that cannot be.
OwnFile CreateOwnFile(const std::string& path);

}  // namespace zent
