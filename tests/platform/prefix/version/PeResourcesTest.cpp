#include <gtest/gtest.h>

#include <string>

#include "ProbeFile.h"
#include "contracts/PeBuilder.h"
#include "platform/prefix/version/PeResources.h"

namespace zent::testing {
namespace {

/// What the file at hand answers: its version resource, or "error" and the number.
std::string Answer(const std::string& file) {
  ProbeFile probe(file);
  const Result<std::string> resource = ReadVersionResource(probe);
  return resource.ok() ? resource.value() : "error " + std::to_string(resource.number());
}

PeResource Version(std::uint32_t language, std::string data) {
  return {.language = language, .data = std::move(data)};
}

struct ChoiceCase {
  const char* what;
  PeFile file;
  const char* answer;
};

const ChoiceCase kChoiceCases[] = {
    {"the only one", {.resources = {Version(0x0407, "de")}}, "de"},
    {"neutral before English",
     {.resources = {Version(0x0409, "en"), Version(0, "neutral")}},
     "neutral"},
    {"American English before German",
     {.resources = {Version(0x0407, "de"), Version(0x0409, "en")}},
     "en"},
    {"British English is not preferred",
     {.resources = {Version(0x0407, "de"), Version(0x0809, "gb")}},
     "de"},
    {"type 16 among others",
     {.resources = {{.type = 3, .data = "icon"}, Version(0, "v"), {.type = 24, .data = "m"}}},
     "v"},
    {"number 1 among others",
     {.resources = {{.number = 2, .data = "two"}, Version(0, "one"), {.number = 7, .data = "7"}}},
     "one"},
    {"named entries are passed over",
     {.named_entries = 3, .resources = {Version(0x0409, "v")}},
     "v"},
    {"32 bits", {.is_64_bit = false, .named_entries = 1, .resources = {Version(0x0409, "v")}}, "v"},
    {"a resource without data", {.resources = {Version(0x0409, "")}}, ""},
    {"no version among the resources", {.resources = {{.type = 10, .data = "x"}}}, "error 321"},
    {"no version of number 1", {.resources = {{.number = 2, .data = "x"}}}, "error 321"},
    {"no resources", {}, "error 321"},
};

TEST(ReadVersionResource, TakesTheVersionOfThePreferredLanguage) {
  for (const ChoiceCase& row : kChoiceCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Answer(BuildPe(row.file)), row.answer);
  }
}

TEST(ReadVersionResource, TakesNoMoreThanALengthCanSay) {
  const std::string huge(200'000, 'v');
  EXPECT_EQ(Answer(BuildLibrary(huge)), huge.substr(0, 0xFFFF));
}

struct PatchCase {
  const char* what;
  std::size_t at;
  std::string patch;
  std::string answer;
};

constexpr std::size_t kFirstEntry = 16;  // of a table
constexpr std::size_t kDirectoryCountAt = kOptionalHeaderAt + 108;
constexpr std::size_t kResourceDirectoryAt = kOptionalHeaderAt + 128;
constexpr std::size_t kSectionAddress = kResourceSectionRowAt + 12;
constexpr std::size_t kSectionStoredSize = kResourceSectionRowAt + 16;
constexpr std::size_t kSectionOffset = kResourceSectionRowAt + 20;

const PatchCase kHeaderCases[] = {
    {"not damaged", 0, "MZ", "version"},
    {"another DOS signature", 0, "ZM", "error 321"},
    {"a header behind the end of the file", 0x3C, U32(0x00100000), "error 321"},
    {"a header at the end of all addresses", 0x3C, U32(0xFFFFFFFF), "error 321"},
    {"the header is the DOS header", 0x3C, U32(0), "error 321"},
    {"a program for 16-bit Windows", kPeHeaderAt, "NE", "error 321"},
    {"a program for OS/2", kPeHeaderAt, "LX", "error 321"},
    {"no NUL behind the signature", kPeHeaderAt + 2, "x", "error 321"},
    {"an image of read-only memory", kOptionalHeaderAt, U16(0x107), "error 321"},
    {"32 bits told of a 64-bit header", kOptionalHeaderAt, U16(0x10B), "error 321"},
    {"no optional header", kPeHeaderAt + 20, U16(0), "error 321"},
    {"an optional header of one byte", kPeHeaderAt + 20, U16(1), "error 321"},
    {"an optional header that ends before the resources", kPeHeaderAt + 20, U16(135), "error 321"},
    {"an optional header larger than the file", kPeHeaderAt + 20, U16(0xFFFF), "error 321"},
    {"no sections", kPeHeaderAt + 6, U16(0), "error 321"},
    {"one section, not that of the resources", kPeHeaderAt + 6, U16(1), "error 321"},
    {"more sections than the file holds", kPeHeaderAt + 6, U16(0xFFFF), "error 321"},
    {"two directories, so none of resources", kDirectoryCountAt, U32(2), "error 321"},
    {"three directories", kDirectoryCountAt, U32(3), "version"},
    {"more directories than there can be", kDirectoryCountAt, U32(0xFFFFFFFF), "version"},
    {"no address of resources", kResourceDirectoryAt, U32(0), "error 321"},
    {"resources in no section", kResourceDirectoryAt, U32(0x9000), "error 321"},
    {"resources in the headers", kResourceDirectoryAt, U32(0x10), "error 321"},
    {"resources at the end of all addresses", kResourceDirectoryAt, U32(0xFFFFFFFF), "error 321"},
    {"resources at the end of their section", kResourceDirectoryAt, U32(0x21FF), "error 321"},
    {"the size of the directory is not looked at", kResourceDirectoryAt + 4, U32(1), "version"},
    {"a section behind the end of the file", kSectionOffset, U32(0x00100000), "error 321"},
    {"a section at the end of all addresses", kSectionOffset, U32(0xFFFFFFFF), "error 321"},
    {"a section that wraps around", kSectionAddress, U32(0xFFFFFFF0), "error 321"},
    {"a section that stores nothing", kSectionStoredSize, U32(0), "error 321"},
    {"a section that stores half a table", kSectionStoredSize, U32(20), "error 321"},
    {"a section that says it stores more", kSectionStoredSize, U32(0xFFFFFFFF), "version"},
};

const PatchCase kTreeCases[] = {
    {"the type leads back to the first table", kTypeTableAt + kFirstEntry + 4, U32(0x80000000),
     "error 321"},
    {"the number leads back to the first table", kNumberTableAt + kFirstEntry + 4, U32(0x80000000),
     "error 321"},
    {"the language leads back to its own table", kLanguageTableAt + kFirstEntry + 4,
     U32(0x80000000 + 48), "error 321"},
    {"a leaf in place of the numbers", kTypeTableAt + kFirstEntry + 4, U32(72), "error 321"},
    {"a leaf in place of the languages", kNumberTableAt + kFirstEntry + 4, U32(72), "error 321"},
    {"a table behind its section", kTypeTableAt + kFirstEntry + 4, U32(0x80010000), "error 321"},
    {"a table at the end of all offsets", kTypeTableAt + kFirstEntry + 4, U32(0xFFFFFFFF),
     "error 321"},
    {"a leaf at the end of all offsets", kLanguageTableAt + kFirstEntry + 4, U32(0x7FFFFFFF),
     "error 321"},
    {"no types", kTypeTableAt + 14, U16(0), "error 321"},
    {"no languages", kLanguageTableAt + 14, U16(0), "error 321"},
    {"more types than the section holds", kTypeTableAt + 14, U16(0xFFFF), "error 321"},
    {"more names than the section holds", kTypeTableAt + 12, U16(0xFFFF), "error 321"},
    {"the only type is a named one", kTypeTableAt + 12, U16(1) + U16(0), "error 321"},
    {"a name where a number should be", kTypeTableAt + kFirstEntry, U32(0x80000010), "error 321"},
    {"another type", kTypeTableAt + kFirstEntry, U32(15), "error 321"},
    {"a number of which 16 bits are those of the type", kTypeTableAt + kFirstEntry, U32(0x10010),
     "error 321"},
    {"a language of more than 16 bits", kLanguageTableAt + kFirstEntry, U32(0x12345), "version"},
    {"data behind the section", kLeafAt, U32(0x9000), "error 321"},
    {"data at the end of all addresses", kLeafAt, U32(0xFFFFFFFF), "error 321"},
    {"data that begins in the section and ends behind it", kLeafAt, U32(0x21FC), "error 321"},
    {"data in another section", kLeafAt, U32(0x1000), std::string("\xC3\0\0\0\0\0\0", 7)},
    {"data larger than the section", kLeafAt + 4, U32(0x200), "error 321"},
    {"data larger than anything", kLeafAt + 4, U32(0xFFFFFFFF), "error 321"},
    {"data of no length", kLeafAt + 4, U32(0), ""},
};

TEST(ReadVersionResource, TakesDamagedHeadersForNoProgram) {
  const std::string sound = BuildLibrary("version");
  for (const PatchCase& row : kHeaderCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Answer(Patched(sound, row.at, row.patch)), row.answer);
  }
}

TEST(ReadVersionResource, TakesADamagedTreeForNoVersion) {
  const std::string sound = BuildLibrary("version");
  for (const PatchCase& row : kTreeCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Answer(Patched(sound, row.at, row.patch)), row.answer);
  }
}

TEST(ReadVersionResource, NeedsTheFileUpToTheEndOfTheResource) {
  const std::string sound = BuildLibrary("version");
  const std::size_t needed = kDataAt + std::string_view("version").size();
  for (std::size_t size = 0; size <= sound.size(); ++size) {
    SCOPED_TRACE(size);
    EXPECT_EQ(Answer(sound.substr(0, size)), size < needed ? "error 321" : "version");
  }
}

TEST(ReadVersionResource, HandsBackAnErrorOfAnyRead) {
  const std::string sound = BuildLibrary("version");
  ProbeFile whole(sound);
  ASSERT_TRUE(ReadVersionResource(whole).ok());
  for (std::size_t nth = 1; nth <= whole.reads(); ++nth) {
    SCOPED_TRACE(nth);
    ProbeFile failing(sound);
    failing.FailRead(nth, StandardError(kDeviceIoError));
    EXPECT_EQ(ReadVersionResource(failing).number(), kDeviceIoError);
  }
}

TEST(ReadVersionResource, ReadsOnlyTheResourceOfALargeFile) {
  std::string large = BuildLibrary("version");
  large.resize(large.size() + 10'000'000);
  ProbeFile probe(large);
  EXPECT_EQ(ReadVersionResource(probe).value_or(""), "version");
  EXPECT_LE(probe.reads(), 12U);
  EXPECT_LE(probe.asked(), 1000U);
}

}  // namespace
}  // namespace zent::testing
