#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <vector>

#include "base/Text.h"
#include "contracts/PeBuilder.h"
#include "contracts/VersionCases.h"
#include "fakes/MemoryFileSystem.h"
#include "lib/modGetFileVersion.h"
#include "platform/prefix/version/PrefixVersionResources.h"

namespace zent::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kLibrary = R"(C:\Korvo\Korvo.dll)";

/// A machine whose only program is Korvo.dll.
struct Machine {
  explicit Machine(const std::string& library) { files.PutFile(kLibrary, library); }

  FileVersionRecord Read() {
    FileVersionRecord record;
    EXPECT_TRUE(ReadVersionInfo(resources, kLibrary, record));
    return record;
  }

  MemoryFileSystem files;
  PrefixVersionResources resources{files};
};

std::string Library(std::string_view table, std::vector<VersionNode> texts,
                    std::string_view translation) {
  return BuildLibrary(BuildVersion(
      Root({StringFileInfo({Table(table, std::move(texts))}), VarFileInfo(translation)})));
}

/// The record that a case expects: its texts, each cut to 255 characters.
FileVersionRecord RecordOf(const VersionCase& row) {
  std::string texts[std::size(kRecordKeys)];
  for (const auto& [key, text] : row.texts) {
    for (std::size_t at = 0; at < std::size(kRecordKeys); ++at) {
      if (key == kRecordKeys[at]) texts[at] = FirstCharacters(text, 255);
    }
  }
  return {texts[0], texts[1], texts[2], texts[3], texts[4], texts[5], texts[6], texts[7]};
}

TEST(ReadVersionInfo, FillsTheRecordOfEveryKindOfFile) {
  MemoryFileSystem files;
  const PrefixVersionResources resources(files);
  for (const VersionCase& row : AllVersionCases()) {
    SCOPED_TRACE(row.name + ": " + row.what);
    const std::string path = R"(C:\Korvo\)" + row.name;
    if (row.file) files.PutFile(path, *row.file);

    FileVersionRecord record{.company_name = "left over", .product_version = "left over"};
    const bool filled = ReadVersionInfo(resources, path, record);

    EXPECT_EQ(filled, row.translation && row.translation->size() >= 4);
    EXPECT_EQ(record, RecordOf(row));
    EXPECT_EQ(GetFileVersionText(resources, path), RecordOf(row).file_version);
  }
}

TEST(ReadVersionInfo, FillsEachFieldFromItsKey) {
  Machine given(
      Library("040904B0",
              {Text("ProductVersion", "8"), Text("ProductName", "7"), Text("OriginalFileName", "6"),
               Text("LegalCopyright", "5"), Text("InternalName", "4"), Text("FileVersion", "3"),
               Text("FileDescription", "2"), Text("CompanyName", "1")},
              "\x09\x04\xB0\x04"));
  const FileVersionRecord record = given.Read();
  EXPECT_EQ(record.company_name, "1");
  EXPECT_EQ(record.file_description, "2");
  EXPECT_EQ(record.file_version, "3");
  EXPECT_EQ(record.internal_name, "4");
  EXPECT_EQ(record.legal_notice, "5");
  EXPECT_EQ(record.build_file_name, "6");
  EXPECT_EQ(record.product_name, "7");
  EXPECT_EQ(record.product_version, "8");
}

struct TableCase {
  const char* what;
  std::string translation;
  const char* table;
};

const TableCase kTableCases[] = {
    {"American English, Unicode", "\x09\x04\xB0\x04", "040904B0"},
    {"American English, ANSI", "\x09\x04\xE4\x04", "040904E4"},
    {"digits are in upper case", "\xCD\xAB\xEF\xFE", "ABCDFEEF"},
    {"eight digits, however small the number", std::string("\0\0\x01\0", 4), "00000001"},
    {"the whole range", "\xFF\xFF\xFF\xFF", "FFFFFFFF"},
    {"the first of several", "\x07\x04\xE4\x04\x09\x04\xB0\x04", "040704E4"},
    {"one and a half translations", "\x07\x04\xE4\x04\x09\x04", "040704E4"},
};

TEST(ReadVersionInfo, ReadsTheTableOfTheFirstTranslation) {
  for (const TableCase& row : kTableCases) {
    SCOPED_TRACE(row.what);
    Machine given(Library(row.table, {Text("FileVersion", "3.6.0")}, row.translation));
    EXPECT_EQ(given.Read().file_version, "3.6.0");
  }
}

TEST(ReadVersionInfo, ReadsNoOtherTable) {
  Machine given(Library("040904B0", {Text("FileVersion", "3.6.0")}, "\x09\x04\xE4\x04"));
  EXPECT_EQ(given.Read(), FileVersionRecord());
}

TEST(ReadVersionInfo, LeavesOnlyAMissingTextEmpty) {
  Machine given(Library("040904B0", {Text("CompanyName", "a"), Text("ProductVersion", "b")},
                        "\x09\x04\xB0\x04"));
  const FileVersionRecord expected{.company_name = "a", .product_version = "b"};
  EXPECT_EQ(given.Read(), expected);
}

struct LengthCase {
  const char* what;
  std::string text;
  std::string kept;
};

const LengthCase kLengthCases[] = {
    {"254 characters", std::string(254, 'x'), std::string(254, 'x')},
    {"255 characters", std::string(255, 'x'), std::string(255, 'x')},
    {"256 characters", std::string(256, 'x'), std::string(255, 'x')},
    {"what is behind a NUL does not count", std::string("3.6\0", 4) + std::string(300, 'x'), "3.6"},
    {"a NUL behind the cut", std::string(300, 'x') + std::string("\0y", 2), std::string(255, 'x')},
};

TEST(ReadVersionInfo, CutsTextsAt255Characters) {
  for (const LengthCase& row : kLengthCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Machine(LibraryOfVersion(row.text)).Read().file_version, row.kept);
  }
}

TEST(ReadVersionInfo, CountsCharactersNotBytes) {
  std::string marks;
  for (int i = 0; i < 300; ++i) marks += "ä";
  EXPECT_EQ(Machine(LibraryOfVersion(marks)).Read().file_version, FirstCharacters(marks, 255));
}

TEST(ReadVersionInfo, ClearsTheRecordOfAFileThatCannotBeRead) {
  Machine given(LibraryOfVersion("3.6.0"));
  given.files.HoldOpen(kLibrary, false);
  FileVersionRecord record{.file_version = "left over"};
  EXPECT_FALSE(ReadVersionInfo(given.resources, kLibrary, record));
  EXPECT_EQ(record, FileVersionRecord());
}

// The fixed part says 3.6.0.12.
TEST(GetFileVersionText, IsTheTextNotTheFixedPart) {
  Machine given(LibraryOfVersion("4.1"));
  EXPECT_EQ(GetFileVersionText(given.resources, kLibrary), "4.1");
  Machine without(Library("040904B0", {Text("ProductVersion", "4.1")}, "\x09\x04\xB0\x04"));
  EXPECT_EQ(GetFileVersionText(without.resources, kLibrary), "");
}

TEST(GetFileVersionText, IsEmptyForABlankPathWithoutALookAtTheDisk) {
  Machine given(LibraryOfVersion("4.1"));
  for (const char* path : {"", " ", "    "}) {
    SCOPED_TRACE(path);
    EXPECT_EQ(GetFileVersionText(given.resources, path), "");
  }
  EXPECT_THAT(given.files.log().calls(), IsEmpty());
  GetFileVersionText(given.resources, R"(C:\a.dll)");
  EXPECT_THAT(given.files.log().calls(), ElementsAre(R"(OpenForReading C:\a.dll)"));
}

enum class Order { Below, Equal, Above };

struct CompareCase {
  const char* what;
  std::string a;
  std::string b;
  Order order;  ///< of a to b
};

const CompareCase kCompareCases[] = {
    {"two empty texts", "", "", Order::Equal},
    {"an empty text is 0.0.0", "", "0.0.0", Order::Equal},
    {"an empty text is below any version", "", "0.0.1", Order::Below},
    {"the same", "3.6.0", "3.6.0", Order::Equal},
    {"the first number", "3.6.0", "4.0.0", Order::Below},
    {"the second number", "3.6.9", "3.7.0", Order::Below},
    {"the third number", "3.6.1", "3.6.0", Order::Above},
    {"missing numbers are 0", "3.6", "3.6.0", Order::Equal},
    {"one number", "3", "3.0.0", Order::Equal},
    {"a missing number is below 1", "3.6", "3.6.1", Order::Below},
    {"the fourth number does not count", "3.6.0.1", "3.6.0.99", Order::Equal},
    {"nor does it against none", "3.6", "3.6.0.500", Order::Equal},
    {"nor a fifth", "3.6.0.1.2", "3.6.0", Order::Equal},
    {"numbers, not digits", "3.10.0", "3.9.0", Order::Above},
    {"zeros in front", "3.06", "3.6", Order::Equal},
    {"many zeros in front", "3.0000000006.0000", "3.6.0", Order::Equal},
    {"the forms of one version", "3.06.0012", "3.6.12", Order::Equal},
    {"letters behind a number", "3.12beta.0", "3.12.0", Order::Equal},
    {"letters behind a number do not raise it", "3.12beta", "3.13", Order::Below},
    {"letters alone are 0", "3.beta.1", "3.0.1", Order::Equal},
    {"a number behind letters is none", "v3.6", "0.6", Order::Equal},
    {"a question mark is 0", "1.?.3", "1.0.3", Order::Equal},
    {"blanks in front of a number", "  3.  6", "3.6", Order::Equal},
    {"blanks behind a number", "3 .6 ", "3.6", Order::Equal},
    {"a part of blanks is 0", "3.  .1", "3.0.1", Order::Equal},
    {"no number between two dots", "3..1", "3.0.1", Order::Equal},
    {"dots alone", "...", "", Order::Equal},
    {"a dot in front", ".3.6", "0.3.6", Order::Equal},
    {"a dot at the end", "3.6.", "3.6", Order::Equal},
    {"commas are no dots", "3, 06, 0, 12", "3.0.0", Order::Equal},
    {"the largest part of six digits", "3.999999", "4.0", Order::Below},
    {"seven digits stick out to the left", "1000000", "2", Order::Above},
    {"seven digits push the next piece on", "0.1000000.0", "0.100000.1", Order::Below},
    {"a longer number can be below a shorter one", "1000000", "999999", Order::Below},
    {"two numbers of seven digits", "1000001", "1000000", Order::Above},
    {"eight digits against seven", "10000000", "2000000", Order::Below},
    {"two versions of one key", "100000.1000000", "1000001", Order::Equal},
    {"a very long number", "99999999999999999999", "1", Order::Above},
    {"a negative number is below 0", "-1", "0", Order::Below},
    {"a half goes to the even number, down", "5e-1", "0", Order::Equal},
    {"a half goes to the even number, up", "15e-1", "2", Order::Equal},
    {"two and a half", "25e-1", "2", Order::Equal},
    {"less than nothing rounds to 0", "-4e-1", "0", Order::Equal},
};

TEST(VersionOrder, ComparesTheFirstThreeNumbers) {
  for (const CompareCase& row : kCompareCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(IsVersionOlder(row.a, row.b), row.order == Order::Below);
    EXPECT_EQ(IsVersionNotNewer(row.a, row.b), row.order != Order::Above);
    EXPECT_EQ(IsVersionOlder(row.b, row.a), row.order == Order::Above);
    EXPECT_EQ(IsVersionNotNewer(row.b, row.a), row.order != Order::Below);
  }
}

TEST(VersionOrder, PutsAFileWithoutVersionBelowAnyOther) {
  Machine given(BuildPe({}));
  const std::string none = GetFileVersionText(given.resources, kLibrary);
  EXPECT_TRUE(IsVersionOlder(none, "0.0.1"));
  EXPECT_FALSE(IsVersionOlder(none, ""));
}

}  // namespace
}  // namespace zent::testing
