#include <gtest/gtest.h>

#include <string>

#include "platform/win32/settings/Win32SettingsFiles.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

class Win32SettingsLength : public ::testing::Test {
 protected:
  std::string Put(const std::string& bytes) const { return folder_.Put("a.ini", bytes).string(); }
  std::string Get() const { return folder_.Get("a.ini"); }
  std::string Read(const std::string& path, std::size_t buffer_size) {
    return settings_.Read(path, "S", "A", "D", buffer_size).text;
  }
  Win32SettingsFiles& settings() { return settings_; }

 private:
  TempFolder folder_;
  Win32SettingsFiles settings_;
};

TEST_F(Win32SettingsLength, AValueOfAnyLengthIsCutToTheBuffer) {
  for (const std::size_t length : {1U, 253U, 254U, 255U, 4093U, 4094U, 4095U, 4096U, 70'000U}) {
    SCOPED_TRACE(length);
    const std::string value(length, 'x');
    const std::string path = Put("[S]\r\nA=" + value + "\r\n");
    EXPECT_EQ(Read(path, 255), value.substr(0, 254));
    EXPECT_EQ(Read(path, length), value.substr(0, length - 1));
    EXPECT_EQ(Read(path, length + 1), value);
    EXPECT_EQ(Read(path, 11'000'000), value);
    EXPECT_EQ(Read(path, 1), "");
    EXPECT_EQ(Read(path, 0), "");
  }
}

TEST_F(Win32SettingsLength, QuotesTakeNoRoom) {
  const std::string path = Put("[S]\r\nA=\"abcdef\"\r\n");
  EXPECT_EQ(Read(path, 7), "abcdef");
  EXPECT_EQ(Read(path, 4), "abc");
}

TEST_F(Win32SettingsLength, TheBufferCountsCharacters) {
  const std::string path = Put("[S]\r\nA=\xE4\xF6\xFC\r\n");
  EXPECT_EQ(Read(path, 3), "\xC3\xA4\xC3\xB6");
  EXPECT_EQ(settings().Read(path, "S", "B", "\xC3\xA4\xC3\xB6\xC3\xBC", 3).text,
            "\xC3\xA4\xC3\xB6");
}

TEST_F(Win32SettingsLength, AListOfAnyLengthIsCutToTheBuffer) {
  std::string bytes = "[S]\r\n";
  std::string names;
  for (int i = 0; i < 3000; ++i) {
    const std::string name = "Key" + std::to_string(i);
    bytes.append(name).append("=1\r\n");
    names.append(name).push_back('\0');
  }
  const std::string path = Put(bytes);
  for (const std::size_t buffer_size : {2U, 3U, 12U, 4096U, 30'000U, 60'000U}) {
    SCOPED_TRACE(buffer_size);
    EXPECT_EQ(settings().Read(path, "S", std::nullopt, "", buffer_size).text,
              names.substr(0, buffer_size - 2));
  }
  EXPECT_EQ(settings().Read(path, "S", std::nullopt, "D", 1).text, "");
  EXPECT_EQ(settings().Read(path, std::nullopt, std::nullopt, "D", 255).text,
            std::string("S\0", 2));
}

TEST_F(Win32SettingsLength, WhatTheSystemWouldCutIsRefused) {
  const std::string path = Put("[S]\r\nA=1\r\n");
  const std::string longest(32766, 'x');
  EXPECT_TRUE(settings().Write(path, "S", "B", longest).ok());
  EXPECT_EQ(settings().Read(path, "S", "B", "D", 40'000).text, longest);
  const std::string before = Get();

  const std::string longer = longest + 'x';
  EXPECT_EQ(settings().Write(path, "S", "A", longer).number(), kOutOfStringSpace);
  EXPECT_EQ(settings().Write(path, "S", longer, "1").number(), kOutOfStringSpace);
  EXPECT_EQ(settings().Write(path, longer, "A", "1").number(), kOutOfStringSpace);
  EXPECT_EQ(settings().Write(path, longer, std::nullopt, std::nullopt).number(), kOutOfStringSpace);
  EXPECT_EQ(Get(), before);
  EXPECT_EQ(settings().Read(path, longer, "A", "D", 255).text, "D");
  EXPECT_EQ(settings().Read(path, "S", std::string(70'000, 'x'), "D", 255).text, "D");
}

TEST_F(Win32SettingsLength, AFileOf10MegabytesIsReadAndWritten) {
  std::string bytes = "[S]\r\nA=1\r\n";
  while (bytes.size() < 10'000'000) bytes += "Key=a value of the usual length\r\n";
  const std::string path = Put(bytes + "[Last]\r\nA=2\r\n");
  EXPECT_EQ(settings().Read(path, "Last", "A", "D", 255).text, "2");
  EXPECT_TRUE(settings().Write(path, "Last", "A", "3").ok());
  EXPECT_EQ(settings().Read(path, "Last", "A", "D", 255).text, "3");
  EXPECT_EQ(Get().size(), bytes.size() + 13);
}

}  // namespace
}  // namespace zent::testing
