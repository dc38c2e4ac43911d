#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/CodePage.h"
#include "contracts/IniVectors.h"
#include "platform/SettingsFiles.h"

/// What every adapter of SettingsFiles must keep. Compared are sections, keys and values alone: how
/// a file is laid out after a write differs between systems. An adapter's test includes this file
/// once, makes a SettingsFilesSubject and instantiates the suite SettingsFilesContract.
namespace zent::testing {

/// An adapter with a folder of the machine for its files.
class SettingsFilesSubject {
 public:
  virtual ~SettingsFilesSubject() = default;
  virtual SettingsFiles& settings() = 0;
  /// Full path of an existing folder, without a trailing backslash.
  virtual std::string folder() = 0;
  /// Makes a file of that folder.
  virtual void PutFile(std::string_view name, std::string_view bytes) = 0;
};

using SettingsFilesFactory = std::unique_ptr<SettingsFilesSubject> (*)();

class SettingsFilesContract : public ::testing::TestWithParam<SettingsFilesFactory> {
 protected:
  static constexpr std::size_t kLargeBuffer = 60000;

  void SetUp() override { subject_ = GetParam()(); }

  SettingsFiles& settings() { return subject_->settings(); }
  std::string PathOf(const std::string& name) { return subject_->folder() + '\\' + name; }
  void Put(std::string_view name, std::string_view bytes) { subject_->PutFile(name, bytes); }

  /// A read with ANSI texts.
  std::string Read(const std::string& name, const std::optional<std::string>& section,
                   const std::optional<std::string>& key, const std::string& default_text,
                   std::size_t buffer_size) {
    const std::optional<std::string> utf8_section = Utf8(section);
    const std::optional<std::string> utf8_key = Utf8(key);
    return ToAnsi(settings()
                      .Read(PathOf(name), View(utf8_section), View(utf8_key),
                            FromAnsi(default_text), buffer_size)
                      .text);
  }

  /// A write with ANSI texts.
  Status Write(const std::string& name, const std::string& section,
               const std::optional<std::string>& key, const std::optional<std::string>& value) {
    const std::optional<std::string> utf8_key = Utf8(key);
    const std::optional<std::string> utf8_value = Utf8(value);
    return settings().Write(PathOf(name), FromAnsi(section), View(utf8_key), View(utf8_value));
  }

  std::vector<std::string> Names(const std::string& name,
                                 const std::optional<std::string>& section) {
    const std::string list = Read(name, section, std::nullopt, "", kLargeBuffer);
    std::vector<std::string> names;
    for (std::size_t at = 0; at < list.size();) {
      const std::size_t end = std::min(list.find('\0', at), list.size());
      names.push_back(list.substr(at, end - at));
      at = end + 1;
    }
    return names;
  }

  using Sections = std::vector<std::pair<std::string, std::vector<std::string>>>;

  /// Every section with its keys and values, as "key=value", in the file's order.
  Sections AllOf(const std::string& name) {
    Sections all;
    for (const std::string& section : Names(name, std::nullopt)) {
      std::vector<std::string> entries;
      for (const std::string& key : Names(name, section)) {
        entries.push_back(key + '=' + Read(name, section, key, "", kLargeBuffer));
      }
      all.emplace_back(section, entries);
    }
    return all;
  }

  void Replay(const IniCase& row) {
    const std::string name = "case.ini";
    if (row.file) Put(name, *row.file);
    for (const IniCall& call : row.calls) {
      SCOPED_TRACE(call.line);
      if (!call.is_write) {
        EXPECT_EQ(Read(name, call.section, call.key, call.value.value_or(""), call.buffer_size),
                  call.result);
        continue;
      }
      EXPECT_EQ(Write(name, call.section.value_or(""), call.key, call.value).number(), 0);
      if (!call.result) continue;
      // A name of its own each time: a system may keep what it read of a file for a while.
      const std::string expected = "expected" + std::to_string(++expected_files_) + ".ini";
      Put(expected, *call.result);
      EXPECT_EQ(AllOf(name), AllOf(expected));
    }
  }

  void ReplayAll(const std::string& file) {
    for (const IniCase& row : LoadIniCases(std::string(ZENT_TEST_DATA "/ini/") + file)) {
      if (row.own) continue;
      SCOPED_TRACE(row.name);
      subject_ = GetParam()();
      Replay(row);
    }
  }

 private:
  static std::optional<std::string> Utf8(const std::optional<std::string>& ansi) {
    if (!ansi) return std::nullopt;
    return FromAnsi(*ansi);
  }
  static std::optional<std::string_view> View(const std::optional<std::string>& text) {
    if (!text) return std::nullopt;
    return *text;
  }

  std::unique_ptr<SettingsFilesSubject> subject_;
  int expected_files_ = 0;
};

TEST_P(SettingsFilesContract, ReadsAsRecorded) { ReplayAll("reads.txt"); }

TEST_P(SettingsFilesContract, WritesAsRecorded) { ReplayAll("writes.txt"); }

TEST_P(SettingsFilesContract, SaysWhyAMissingFileCouldNotBeRead) {
  const SettingsText read = settings().Read(PathOf("missing.ini"), "S", "A", "D", 255);
  EXPECT_EQ(read.text, "D");
  EXPECT_EQ(read.file.number(), kFileNotFound);
}

TEST_P(SettingsFilesContract, AReadFileIsOkEvenWithoutTheKey) {
  Put("a.ini", "[S]\r\nA=1\r\n");
  EXPECT_TRUE(settings().Read(PathOf("a.ini"), "S", "A", "D", 255).file.ok());
  EXPECT_TRUE(settings().Read(PathOf("a.ini"), "S", "B", "D", 255).file.ok());
}

TEST_P(SettingsFilesContract, AMissingFolderIsPathNotFoundAndIsNotMade) {
  EXPECT_EQ(settings().Write(PathOf("none\\a.ini"), "S", "A", "1").number(), kPathNotFound);
  EXPECT_FALSE(settings().Read(PathOf("none\\a.ini"), "S", "A", "D", 255).file.ok());
}

TEST_P(SettingsFilesContract, AFileNameMatchesInAnyCaseAndWithSlashes) {
  Put("Mixed.ini", "[S]\r\nA=1\r\n");
  EXPECT_EQ(settings().Read(PathOf("mIXED.INI"), "S", "A", "D", 255).text, "1");
  std::string slashed = PathOf("Mixed.ini");
  for (char& c : slashed) c = c == '\\' ? '/' : c;
  EXPECT_EQ(settings().Read(slashed, "S", "A", "D", 255).text, "1");
}

TEST_P(SettingsFilesContract, WhatIsWrittenIsReadAgain) {
  for (const char* const value : {"1", "a b", "x=y", "[T]", ";c", "C:\\Korvo\\", "\xE4\x80\xFF"}) {
    SCOPED_TRACE(value);
    ASSERT_TRUE(Write("new.ini", "General", "Value", value).ok());
    EXPECT_EQ(Read("new.ini", "General", "Value", "D", 255), value);
  }
}

}  // namespace zent::testing
