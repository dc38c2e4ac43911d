#include "jet/samples/SamplePaths.h"

#include <algorithm>
#include <cctype>

namespace zent::jet::testing {

namespace fs = std::filesystem;

std::vector<fs::path> SamplePaths() {
  std::vector<fs::path> paths;
  for (const auto& file : fs::recursive_directory_iterator(ZENT_SAMPLES)) {
    if (file.path().extension() == ".mdb") paths.push_back(file.path());
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

fs::path ExpectedDumpOf(const fs::path& sample) {
  return fs::path(ZENT_SAMPLES).parent_path() / "expected" /
         sample.filename().replace_extension(".json");
}

std::string TestNameOf(const fs::path& sample) {
  std::string name = sample.stem().string();
  std::erase_if(name, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; });
  return name;
}

}  // namespace zent::jet::testing
