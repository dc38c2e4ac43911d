#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "contracts/LinkReader.h"
#include "contracts/LinkSamples.h"
#include "platform/prefix/links/LinkFormat.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using testing::LinkFile;
using testing::LinkItem;
using testing::LinkSample;
using testing::ReadLink;

constexpr std::uint32_t kPathFlag = 0x02;
constexpr std::uint32_t kDescriptionFlag = 0x04;
constexpr std::uint32_t kIconFlag = 0x40;

std::vector<LinkSample> Samples() {
  return testing::LoadLinkSamples(ZENT_TEST_DATA "/links/recorded.txt");
}

ShellLink LinkOf(const LinkSample& sample) {
  return {.target = sample.target,
          .arguments = sample.arguments,
          .working_folder = sample.working_folder};
}

LinkFile Written(const ShellLink& link, bool target_is_folder = false) {
  const Result<std::string> bytes = FormatShellLink(link, target_is_folder);
  EXPECT_TRUE(bytes.ok());
  const std::optional<LinkFile> read = ReadLink(bytes.value_or(""));
  EXPECT_TRUE(read.has_value());
  return read.value_or(LinkFile{});
}

TEST(LinkReader, ReadsWhatTheSystemWrote) {
  const std::vector<LinkSample> samples = Samples();
  ASSERT_EQ(samples.size(), 5U);
  for (const LinkSample& sample : samples) {
    SCOPED_TRACE(sample.name);
    const std::optional<LinkFile> link = ReadLink(sample.bytes);
    ASSERT_TRUE(link.has_value());
    EXPECT_EQ(link->path, sample.target);
    EXPECT_EQ(link->PathOfItems(), sample.target);
    EXPECT_EQ(link->arguments, sample.arguments);
    EXPECT_EQ(link->working_folder, sample.working_folder);
    EXPECT_EQ(link->description, sample.description);
  }
}

TEST(LinkReader, RefusesAFileThatIsCutAnywhere) {
  const std::string bytes = Samples().back().bytes;
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_FALSE(ReadLink(bytes.substr(0, size)).has_value()) << size;
  }
}

TEST(FormatShellLink, SaysWhatTheSystemSaysOfTheSameTarget) {
  for (const LinkSample& sample : Samples()) {
    SCOPED_TRACE(sample.name);
    const LinkFile recorded = ReadLink(sample.bytes).value();
    const LinkFile ours = Written(LinkOf(sample), sample.folder);
    EXPECT_EQ(ours.path, recorded.path);
    EXPECT_EQ(ours.arguments, recorded.arguments);
    EXPECT_EQ(ours.working_folder, recorded.working_folder);
    // A description and an icon are nothing that a shortcut of the updater has.
    EXPECT_EQ(ours.flags, recorded.flags & ~(kDescriptionFlag | kIconFlag));
    ASSERT_EQ(ours.items.size(), recorded.items.size());
    EXPECT_EQ(ours.items[0], recorded.items[0]);
    // The kind of a drive differs: 0x23 was recorded where Windows itself has 0x2F.
    EXPECT_EQ(ours.items[1].kind, 0x2F);
    EXPECT_EQ(ours.items[1].ansi_name, recorded.items[1].ansi_name);
    for (std::size_t i = 2; i < ours.items.size(); ++i) {
      EXPECT_EQ(ours.items[i].ansi_name, recorded.items[i].ansi_name);
      EXPECT_EQ(ours.items[i].name, recorded.items[i].name);
      // A folder that is the target was recorded as a file; Windows itself calls it a folder.
      const bool is_folder_target = sample.folder && i + 1 == ours.items.size();
      EXPECT_EQ(ours.items[i].kind, is_folder_target ? 0x31 : recorded.items[i].kind);
    }
  }
}

struct TargetCase {
  const char* what;
  const char* target;
  bool folder;
  const char* path;
  const char* path_of_items;
  const char* last_ansi_name;
};

constexpr TargetCase kTargetCases[] = {
    {"a program", R"(C:\Korvo\Korvo.exe)", false, R"(C:\Korvo\Korvo.exe)", R"(C:\Korvo\Korvo.exe)",
     "Korvo.exe"},
    {"another drive", R"(d:\Korvo.exe)", false, R"(d:\Korvo.exe)", R"(d:\Korvo.exe)", "Korvo.exe"},
    {"a folder", R"(C:\Korvo\Data)", true, R"(C:\Korvo\Data)", R"(C:\Korvo\Data)", "Data"},
    {"a folder with its backslash", R"(C:\Korvo\Data\)", true, R"(C:\Korvo\Data\)",
     R"(C:\Korvo\Data)", "Data"},
    {"a drive", R"(C:\)", true, R"(C:\)", R"(C:\)", R"(C:\)"},
    {"letters of the code page", R"(C:\Büro\Café.exe)", false, R"(C:\Büro\Café.exe)",
     R"(C:\Büro\Café.exe)", "Café.exe"},
    {"letters of another code page", R"(C:\Бюро\Корво.exe)", false, "", R"(C:\Бюро\Корво.exe)",
     "?????.exe"},
    {"a character of two UTF-16 units", "C:\\\xF0\x9F\x98\x80.exe", false, "",
     "C:\\\xF0\x9F\x98\x80.exe", "?.exe"},
};

TEST(FormatShellLink, NamesTheTargetByItemsAndWhereItCanByPath) {
  for (const TargetCase& row : kTargetCases) {
    SCOPED_TRACE(row.what);
    const LinkFile link = Written({.target = row.target}, row.folder);
    EXPECT_EQ(link.path, row.path);
    EXPECT_EQ((link.flags & kPathFlag) != 0, *row.path != '\0');
    EXPECT_EQ(link.PathOfItems(), row.path_of_items);
    EXPECT_EQ(link.items.back().ansi_name, row.last_ansi_name);
  }
}

TEST(FormatShellLink, OnlyTheLastItemMayBeAFile) {
  std::vector<int> kinds;
  for (const LinkItem& item : Written({.target = R"(C:\A\B\Korvo.exe)"}).items) {
    kinds.push_back(item.kind);
  }
  EXPECT_THAT(kinds, ElementsAre(0x1F, 0x2F, 0x31, 0x31, 0x32));
  EXPECT_EQ(Written({.target = R"(C:\A\B)"}, true).items.back().kind, 0x31);
}

TEST(FormatShellLink, TextsAreCountedWithoutANulBehindThem) {
  const Result<std::string> bytes =
      FormatShellLink({.target = R"(C:\a.exe)", .arguments = "/x"}, false);
  const std::string end("\x02\0/\0x\0\0\0\0\0", 10);
  EXPECT_TRUE(bytes.value().ends_with(end));
}

TEST(FormatShellLink, EmptyTextsLeaveTheirFlagsOff) {
  EXPECT_EQ(Written({.target = R"(C:\a.exe)"}).flags, 0x83U);
  EXPECT_EQ(Written({.target = R"(C:\a.exe)", .arguments = "/x"}).flags, 0xA3U);
  EXPECT_EQ(Written({.target = R"(C:\a.exe)", .working_folder = R"(C:\)"}).flags, 0x93U);
}

TEST(FormatShellLink, RefusesWhatALinkCannotHold) {
  const std::string long_text(70000, 'x');
  std::string deep_path = "C:";
  for (int i = 0; i < 1000; ++i) deep_path += "\\a folder of a rather long name";
  const std::vector<std::pair<const char*, ShellLink>> rows = {
      {"no target", {.target = ""}},
      {"a relative target", {.target = "Korvo.exe"}},
      {"a target relative on its drive", {.target = "C:Korvo.exe"}},
      {"a target of a network", {.target = R"(\\server\share\Korvo.exe)"}},
      {"a target of no drive letter", {.target = R"(1:\Korvo.exe)"}},
      {"a target that is too long", {.target = "C:\\" + long_text}},
      {"more items than the list can count", {.target = deep_path}},
      {"arguments that are too long", {.target = R"(C:\a.exe)", .arguments = long_text}},
      {"a working folder that is too long", {.target = R"(C:\a.exe)", .working_folder = long_text}},
  };
  for (const auto& [what, link] : rows) {
    SCOPED_TRACE(what);
    EXPECT_EQ(FormatShellLink(link, false).number(), kBadFileName);
  }
}

}  // namespace
}  // namespace zent
