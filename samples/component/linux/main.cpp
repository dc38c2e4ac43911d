#include <algorithm>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

#include "app/jetdb/linux/LinuxHost.h"
#include "component/Customisation.h"

namespace {

/// The host's path of a path of the machine, whose names are spelled as on the disk.
std::string HostPath(const std::string& machine, std::string path) {
  if (path.size() < 2 || path[1] != ':') return path;  // a connect text: no file has that name
  std::replace(path.begin(), path.end(), '\\', '/');
  const char drive = static_cast<char>(path[0] | 0x20);
  return machine + "/dosdevices/" + drive + path.substr(1);
}

}  // namespace

int main(int argc, char** argv) {
  const char* const machine = std::getenv("WINEPREFIX");  // NOLINT(concurrency-mt-unsafe)
  if (argc != 4 || machine == nullptr) {
    std::cerr
        << "usage: ZentCustomize.exe DATABASE CUSTOMIZE_FOLDER TEMP_FOLDER, with WINEPREFIX\n";
    return zent::kComponentFailed;
  }
  try {
    zent::LinuxJetdbHost host;
    return zent::ApplyCustomisations(host, HostPath(machine, argv[1]), HostPath(machine, argv[2]));
  } catch (const std::exception& defect) {
    std::cerr << defect.what() << "\n";
    return zent::kComponentFailed;
  }
}
