#include "contracts/LinkSamples.h"

#include <gtest/gtest.h>

#include <fstream>

namespace zent::testing {
namespace {

std::string FromHex(const std::string& hex) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
    bytes.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

void TakeField(LinkSample& sample, const std::string& field, const std::string& value) {
  if (field == "target") sample.target = value;
  if (field == "working") sample.working_folder = value;
  if (field == "arguments") sample.arguments = value;
  if (field == "description") sample.description = value;
  if (field == "bytes") sample.bytes += FromHex(value);
}

}  // namespace

std::vector<LinkSample> LoadLinkSamples(const std::filesystem::path& path) {
  std::vector<LinkSample> samples;
  std::ifstream file(path);
  EXPECT_TRUE(file.good()) << path;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line.front() == '#') continue;
    const std::size_t blank = line.find(' ');
    const std::string field = line.substr(0, blank);
    const std::string value = line.substr(blank + 1);
    if (field == "link") {
      const std::size_t kind = value.find(" folder");
      samples.push_back(
          {.name = value.substr(0, kind), .folder = kind != std::string::npos, .target = {}});
    } else {
      TakeField(samples.back(), field, value);
    }
  }
  return samples;
}

}  // namespace zent::testing
