#include <gtest/gtest.h>

#include "SettingsMachine.h"
#include "base/CodePage.h"
#include "contracts/IniVectors.h"

namespace zent {
namespace {

using testing::IniCall;
using testing::IniCase;
using testing::SettingsMachine;

constexpr std::string_view kPath = R"(C:\Korvo\a.ini)";

std::optional<std::string> Utf8(const std::optional<std::string>& ansi) {
  if (!ansi) return std::nullopt;
  return FromAnsi(*ansi);
}

std::optional<std::string_view> View(const std::optional<std::string>& text) {
  if (!text) return std::nullopt;
  return *text;
}

/// Every case of a file, settled ones too; after a write every byte of the file counts.
void ReplayAll(const std::string& file) {
  for (const IniCase& row : testing::LoadIniCases(std::string(ZENT_TEST_DATA "/ini/") + file)) {
    SCOPED_TRACE(row.name);
    SettingsMachine machine;
    if (row.file) machine.files.PutFile(kPath, *row.file);
    for (const IniCall& call : row.calls) {
      SCOPED_TRACE(call.line);
      const std::optional<std::string> section = Utf8(call.section);
      const std::optional<std::string> key = Utf8(call.key);
      const std::optional<std::string> value = Utf8(call.value);
      if (call.is_write) {
        EXPECT_TRUE(
            machine.settings.Write(kPath, section.value_or(""), View(key), View(value)).ok());
        EXPECT_EQ(machine.files.Contents(kPath), call.result);
      } else {
        const SettingsText read = machine.settings.Read(kPath, View(section), View(key),
                                                        value.value_or(""), call.buffer_size);
        EXPECT_EQ(ToAnsi(read.text), call.result);
        EXPECT_EQ(read.file.number(), row.file ? 0 : kFileNotFound);
      }
    }
  }
}

TEST(IniVectors, EveryReadGivesTheTextAsStated) { ReplayAll("reads.txt"); }

TEST(IniVectors, EveryWriteLeavesTheBytesAsStated) { ReplayAll("writes.txt"); }

}  // namespace
}  // namespace zent
