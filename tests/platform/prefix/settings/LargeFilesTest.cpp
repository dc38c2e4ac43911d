#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "SettingsMachine.h"

namespace zent {
namespace {

using testing::SettingsMachine;

constexpr std::string_view kPath = R"(C:\Korvo\large.ini)";
constexpr std::size_t kMegabyte = std::size_t{1} << 20U;

/// About `size` bytes of sections with keys, the last section being [Last] with A=1 and B=2.
std::string LargeFile(std::size_t size, std::string_view line_end) {
  std::string text;
  text.reserve(size + 200);
  for (std::size_t number = 0; text.size() < size; ++number) {
    if (number % 1000 == 0) text.append("[Section").append(std::to_string(number)).append("]");
    text.append(line_end).append("Key").append(std::to_string(number));
    text.append("=a value of the usual length, with a blank or two").append(line_end);
  }
  text.append("[Last]").append(line_end).append("A=1").append(line_end);
  return text.append("B=2").append(line_end);
}

/// Reads the first and the last section, and changes one value, of a file that holds `text`.
void ReadAndWrite(std::string text) {
  SettingsMachine machine;
  machine.files.PutFile(kPath, text);

  EXPECT_EQ(machine.settings.Read(kPath, "Section0", "Key1", "D", 8).text, "a value");
  EXPECT_EQ(machine.settings.Read(kPath, "Last", "B", "D", 255).text, "2");
  EXPECT_EQ(machine.settings.Read(kPath, "Missing", "B", "D", 255).text, "D");
  EXPECT_TRUE(machine.settings.Write(kPath, "Last", "A", "9").ok());

  text[text.rfind("A=1") + 2] = '9';
  // Not EXPECT_EQ, which would print both.
  EXPECT_TRUE(machine.files.Contents(kPath) == text);
}

TEST(LargeFiles, OneOf100MegabytesIsReadAndWritten) {
  ReadAndWrite(LargeFile(100 * kMegabyte, "\r\n"));
}

TEST(LargeFiles, OneThatEndsItsLinesWithCrIsReadInOnePass) {
  ReadAndWrite(LargeFile(20 * kMegabyte, "\r"));
}

TEST(LargeFiles, ALineOf10MegabytesIsCutToTheBufferAndReplaced) {
  SettingsMachine machine;
  machine.files.PutFile(kPath, "[S]\nA=" + std::string(10 * kMegabyte, 'x') + "\nB=2\n");

  EXPECT_EQ(machine.settings.Read(kPath, "S", "A", "D", 255).text, std::string(254, 'x'));
  EXPECT_EQ(machine.settings.Read(kPath, "S", "A", "D", 11 * kMegabyte).text.size(),
            10 * kMegabyte);
  EXPECT_EQ(machine.settings.Read(kPath, "S", "B", "D", 255).text, "2");
  EXPECT_TRUE(machine.settings.Write(kPath, "S", "A", "1").ok());
  EXPECT_EQ(machine.files.Contents(kPath), "[S]\nA=1\nB=2\n");
}

TEST(LargeFiles, ALineOf10MegabytesWithoutAnEndIsLeftAlone) {
  const std::string line(10 * kMegabyte, '=');
  SettingsMachine machine;
  machine.files.PutFile(kPath, line);
  EXPECT_TRUE(machine.settings.Write(kPath, "S", "A", "1").ok());
  EXPECT_TRUE(machine.files.Contents(kPath) == line + "\r\n[S]\r\nA=1\r\n");
  EXPECT_EQ(machine.settings.Read(kPath, "S", "A", "D", 255).text, "1");
}

TEST(LargeFiles, NulBytesAloneAreOneBlankLine) {
  const std::string nuls(20 * kMegabyte, '\0');
  SettingsMachine machine;
  machine.files.PutFile(kPath, nuls);
  EXPECT_EQ(machine.settings.Read(kPath, "S", "A", "D", 255).text, "D");
  EXPECT_TRUE(machine.settings.Write(kPath, "S", "A", "1").ok());
  EXPECT_TRUE(machine.files.Contents(kPath) == "[S]\r\nA=1\r\n" + nuls);
}

TEST(LargeFiles, AUtf16FileOf20MegabytesIsReadAndWritten) {
  std::string text = "\xFF\xFE";
  for (const char c : LargeFile(10 * kMegabyte, "\r\n")) text.append({c, '\0'});
  SettingsMachine machine;
  machine.files.PutFile(kPath, text);

  EXPECT_EQ(machine.settings.Read(kPath, "Last", "A", "D", 255).text, "1");
  EXPECT_TRUE(machine.settings.Write(kPath, "Last", "A", "9").ok());

  text[text.rfind('1')] = '9';
  EXPECT_TRUE(machine.files.Contents(kPath) == text);
}

}  // namespace
}  // namespace zent
