#include <fmt/format.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "platform/prefix/registry/RegistryMachines.h"

namespace zent {
namespace {

using namespace std::string_literals;
using testing::MachineFolder;
using testing::ReadData;
using testing::WriteText;

constexpr std::size_t kBigSize = 50'000'000;

/// A file of 50 MB in the manner of Wine's: many classes with few values each.
std::string BigFile() {
  std::string text(testing::kEmptySystemFile);
  text.reserve(kBigSize + 1000);
  for (unsigned i = 0; text.size() < kBigSize; ++i) {
    text += fmt::format(
        "\n[Software\\\\Classes\\\\CLSID\\\\{{{:08x}-7a1b-11d2-8000-00c04f79}}\\\\InProcServer32] "
        "1700000000\n#time=1da1747c7059687\n@=\"C:\\\\windows\\\\system32\\\\part{}.dll\"\n"
        "\"ThreadingModel\"=\"Both\"\n\"Data\"=hex:00,01,02,03,04,05,06,07,08,09,0a,0b,0c,0d,0e\n",
        i, i);
  }
  return text;
}

/// The resident memory of this process in bytes.
std::size_t ResidentMemory() {
  const std::string status = testing::ReadHostFile("/proc/self/statm");
  return std::stoul(status.substr(status.find(' '))) * 4096;
}

// Bounds far above what was measured (1 s and three times the size without sanitizers): they tell a
// growth with the square of the size, not a busy computer.
TEST(BigRegistryFile, LoadsAndSavesInTimeAndMemory) {
  const std::string big = BigFile();
  MachineFolder machine(big, testing::kEmptyUserFile);
  const std::size_t memory_before = ResidentMemory();
  const auto start = std::chrono::steady_clock::now();
  const auto registry = machine.Open();
  const auto loaded = std::chrono::steady_clock::now();
  EXPECT_LT(ResidentMemory() - memory_before, 12 * kBigSize);
  EXPECT_LT(loaded - start, std::chrono::seconds(60));

  const std::string some =
      R"(Software\Classes\CLSID\{00000400-7A1B-11D2-8000-00C04F79}\InProcServer32)";
  EXPECT_EQ(ReadData(*registry, KeyHandle::LocalMachine, some, ""),
            "C:\\windows\\system32\\part1024.dll\0"s);
  constexpr int kWrites = 4;
  for (int i = 0; i < kWrites; ++i) {
    EXPECT_TRUE(
        WriteText(*registry, KeyHandle::LocalMachine, some, "v" + std::to_string(i), "x").ok());
    EXPECT_TRUE(WriteText(*registry, KeyHandle::LocalMachine,
                          R"(Software\Korvo\New)" + std::to_string(i), "v", "x")
                    .ok());
  }
  const auto saved = std::chrono::steady_clock::now();
  EXPECT_LT(saved - loaded, std::chrono::seconds(120));
  RecordProperty("load_ms", std::to_string((loaded - start) / std::chrono::milliseconds(1)));
  RecordProperty("save_ms",
                 std::to_string((saved - loaded) / std::chrono::milliseconds(2 * kWrites)));
  EXPECT_EQ(machine.Get("system.reg").size(),
            big.size() + kWrites * ("\"v0\"=\"x\"\n"s.size() +
                                    "\n[Software\\\\Korvo\\\\New0] 1795253793\n"
                                    "#time=1dd799bcbb4dcc2\n\"v\"=\"x\"\n"s.size()));
}

}  // namespace
}  // namespace zent
