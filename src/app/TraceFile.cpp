#include "app/TraceFile.h"

#include <fstream>

#include "app/HostPath.h"

namespace zent {
namespace {

std::ofstream OpenToAppend(const std::string& path) {
  return std::ofstream(HostPath(path), std::ios::binary | std::ios::app);
}

}  // namespace

bool TraceFile::CanAppend() const { return OpenToAppend(path_).is_open(); }

void TraceFile::Append(std::string_view text) { OpenToAppend(path_) << text; }

}  // namespace zent
