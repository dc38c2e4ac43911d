// Reading and writing one value at the end of a settings file of 20 MB, against a plain look at
// every byte of it.
#include <algorithm>
#include <string>

#include "Ratio.h"
#include "fakes/FakeSystemInfo.h"
#include "fakes/MemoryFileSystem.h"
#include "platform/prefix/settings/PrefixSettingsFiles.h"

namespace {

constexpr std::string_view kFile = R"(C:\big.ini)";
constexpr int kSections = 20'000;
constexpr int kKeys = 50;

std::string BigFile() {
  std::string text;
  for (int section = 0; section < kSections; ++section) {
    text += "[Section" + std::to_string(section) + "]\r\n";
    for (int key = 0; key < kKeys; ++key) text += "Key" + std::to_string(key) + "=some value\r\n";
  }
  return text;
}

}  // namespace

int main() {
  const std::string text = BigFile();
  zent::testing::MemoryFileSystem files;
  zent::testing::FakeSystemInfo system;
  zent::PrefixSettingsFiles settings(files, system);
  files.PutFile(kFile, text);

  std::ptrdiff_t lines = 0;
  const double look = zent::bench::BestTime([&] {
    const std::string copy = text;
    lines += std::count(copy.begin(), copy.end(), '\n');
  });
  const double read = zent::bench::BestTime([&] {
    lines += static_cast<std::ptrdiff_t>(
        settings.Read(kFile, "Section19999", "Key49", "", 255).text.size());
  });
  int value = 0;
  const double write = zent::bench::BestTime([&] {
    lines += settings.Write(kFile, "Section19999", "Key49", std::to_string(++value)).ok() ? 1 : 0;
  });
  zent::bench::PrintRatio("settings file of 20 MB: read of its last key against one look",
                          read / look, "a few is fine");
  zent::bench::PrintRatio("settings file of 20 MB: write of its last key against one look",
                          write / look, "a few is fine");
  return lines == 0 ? 1 : 0;
}
