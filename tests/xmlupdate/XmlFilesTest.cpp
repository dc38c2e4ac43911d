#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "xmlupdate/XmlFiles.h"
#include "xmlupdate/XmlMachine.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::RunBuilder;
using ::testing::StartsWith;
using testing::XmlMachine;

constexpr const char* kPath = R"(D:\Data\a.xml)";

TEST(LoadXmlFile, AMissingFileIsShownAndKept) {
  RunBuilder given;
  EXPECT_FALSE(LoadXmlFile(given.run, kPath).has_value());
  EXPECT_THAT(given.messages(), ElementsAre(R"(File not found - D:\Data\a.xml)"));
  EXPECT_TRUE(given.run.state.xml_load_failed);
  EXPECT_FALSE(given.run.state.ErrorOccurred) << "that is for the command to say";
}

TEST(LoadXmlFile, HiddenAndReadOnlyFilesAreThere) {
  RunBuilder given;
  given.machine.files.PutFile(kPath, "<a/>", kAttributeHidden | kAttributeReadOnly);
  EXPECT_TRUE(LoadXmlFile(given.run, kPath).has_value());
  EXPECT_THAT(given.messages(), IsEmpty());
  EXPECT_FALSE(given.run.state.xml_load_failed);
}

std::vector<std::string> LinesOf(std::string_view text) {
  std::vector<std::string> lines(1);
  for (const char c : text) {
    if (c == '\n') {
      lines.emplace_back();
    } else if (c != '\r') {
      lines.back() += c;
    }
  }
  return lines;
}

/// The number that stands alone behind `label`; 0 for anything else.
int NumberBehind(const std::string& label, const std::string& line) {
  if (line.rfind(label, 0) != 0) return 0;
  const std::string digits = line.substr(label.size());
  const int number = std::atoi(digits.c_str());
  return std::to_string(number) == digits ? number : 0;
}

TEST(LoadXmlFile, AFileThatDoesNotParseIsShownInFiveLines) {
  RunBuilder given;
  given.machine.files.PutFile(kPath, "<a>\n  <b></c>\n</a>");
  EXPECT_FALSE(LoadXmlFile(given.run, kPath).has_value());
  ASSERT_EQ(given.messages().size(), 1U) << "one message";
  const std::vector<std::string> lines = LinesOf(given.messages()[0]);
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(lines[0], R"(Error Parsing: D:\Data\a.xml)");
  EXPECT_NE(NumberBehind("Error Number: ", lines[1]), 0);
  EXPECT_THAT(lines[2], StartsWith("Error Description: "));
  EXPECT_GT(lines[2].size(), std::string_view("Error Description: ").size());
  EXPECT_EQ(lines[3], "Line: 2");
  EXPECT_GT(NumberBehind("Column: ", lines[4]), 0);
  EXPECT_TRUE(given.run.state.xml_load_failed);
}

TEST(LoadXmlFile, AFileAboveTheLimitIsRefusedBeforeParsing) {
  /// A file that only says how large it is.
  class HugeFile final : public File {
   public:
    Result<std::uint64_t> Size() override { return (std::uint64_t{256} << 20U) + 1; }
    Result<std::size_t> ReadAt(std::uint64_t, std::span<char>) override {
      ADD_FAILURE() << "read";
      return StandardError(kDeviceIoError);
    }
  };
  class HugeFiles final : public testing::MemoryFileSystem {
   public:
    Result<std::unique_ptr<File>> OpenForReading(std::string_view) override {
      return std::unique_ptr<File>(std::make_unique<HugeFile>());
    }
  };
  RunBuilder given;
  HugeFiles files;
  files.PutFile(kPath, "<a/>");
  const testing::MemoryMachine& machine = given.machine;
  const Platform platform{files,
                          machine.platform.registry,
                          machine.platform.settings,
                          machine.platform.system,
                          machine.platform.processes,
                          machine.platform.shell,
                          machine.platform.clock,
                          machine.platform.versions,
                          machine.platform.links};
  UpdateRun run(platform, given.window, given.observer, {});
  EXPECT_FALSE(LoadXmlFile(run, kPath).has_value());
  EXPECT_THAT(
      given.messages(),
      ElementsAre("Error Parsing: D:\\Data\\a.xml\r\nError Number: 14\r\n"
                  "Error Description: Out of string space: the file is larger than 256 MB\r\n"
                  "Line: 0\r\nColumn: 0"));
  EXPECT_TRUE(run.state.xml_load_failed);
}

TEST(LoadXmlFile, TheEventNamesTheFileAndTheReason) {
  RunBuilder given;
  LoadXmlFile(given.run, kPath);
  ASSERT_EQ(given.observer.xml.size(), 1U);
  EXPECT_EQ(given.observer.xml[0].file, kPath);
  EXPECT_EQ(given.observer.xml[0].action, XmlAction::Load);
  EXPECT_EQ(given.observer.xml[0].outcome, XmlOutcome::Failed);
  EXPECT_EQ(given.observer.xml[0].reason, "File not found");
}

// --- Selection ---

TEST(SelectElement, OnlyElementsWillDo) {
  const xml::LoadResult loaded = xml::Document::Load("<a x='1'>t<!--c--><b/></a>", "a.xml");
  ASSERT_TRUE(loaded.ok());
  const xml::Node document = loaded.value().node();
  EXPECT_TRUE(SelectElement(document, "/a/b").ok());
  EXPECT_FALSE(SelectElement(document, "/a/c").value()) << "nothing is no error";
  for (const char* xpath : {"/a/@x", "/a/text()", "/a/comment()", "/"}) {
    EXPECT_EQ(SelectElement(document, xpath).number(), kTypeMismatch) << xpath;
  }
}

TEST(RequireElement, WhatIsMissingIsNamed) {
  const xml::LoadResult loaded = xml::Document::Load("<a/>", "a.xml");
  ASSERT_TRUE(loaded.ok());
  const Result<xml::Node> found = RequireElement(loaded.value().node(), "/a/b", "the part b");
  EXPECT_EQ(found.number(), kObjectNotSet);
  EXPECT_THAT(found.error().description, HasSubstr("the part b is missing"));
}

TEST(RequireAttribute, AnEmptyOneIsThere) {
  const xml::LoadResult loaded = xml::Document::Load("<a x=''/>", "a.xml");
  ASSERT_TRUE(loaded.ok());
  EXPECT_EQ(RequireAttribute(loaded.value().root(), "x").value_or("-"), "");
  EXPECT_EQ(RequireAttribute(loaded.value().root(), "X").number(), kObjectNotSet);
}

TEST(ChildElement, TheFirstOfThatNameCounts) {
  const xml::LoadResult loaded =
      xml::Document::Load("<a><c><b>0</b></c>t<?b x?><b>1</b><b>2</b></a>", "a.xml");
  ASSERT_TRUE(loaded.ok());
  EXPECT_EQ(ChildElement(loaded.value().root(), "b").Text(), "1");
  EXPECT_FALSE(ChildElement(loaded.value().root(), "B"));
  EXPECT_FALSE(ChildElement({}, "b"));
}

}  // namespace
}  // namespace zent
