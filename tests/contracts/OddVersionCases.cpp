#include <iterator>

#include "contracts/PeBuilder.h"
#include "contracts/VersionCases.h"

// Version resources that no usual tool makes, or that old tools made wrongly.

namespace zent::testing {

std::vector<VersionCase> OddVersionCases();

namespace {

const std::string kEnglish = U16(0x0409) + U16(0x04B0);

/// A library with these blocks in its American English table.
std::string EnglishLibrary(std::vector<VersionNode> texts) {
  return BuildLibrary(BuildVersion(
      Root({StringFileInfo({Table("040904B0", std::move(texts))}), VarFileInfo(kEnglish)})));
}

VersionNode OneText(std::string_view file_version = "1.2.3.4") {
  return StringFileInfo({Table("040904B0", {Text("FileVersion", file_version)})});
}

/// A text whose value has another length than the one that is right.
VersionNode TextOfLength(std::string_view key, std::string_view text, std::uint16_t length) {
  VersionNode node = Text(key, text);
  node.value_length = length;
  return node;
}

VersionNode TextWithoutNul(std::string_view key, std::string_view text) {
  VersionNode node = Text(key, text);
  node.ends_with_nul = false;
  return node;
}

VersionNode Zeros(std::size_t count) { return {.raw = std::string(count, '\0')}; }

std::string RootOfLength(std::uint16_t length) {
  VersionNode root = Root({OneText(), VarFileInfo(kEnglish)});
  root.length = length;
  return BuildVersion(root);
}

std::string WithoutFixed() {
  VersionNode root = Root({OneText(), VarFileInfo(kEnglish)});
  root.bytes.clear();
  return BuildVersion(root);
}

std::string WithTail() {
  return BuildVersion(Root({OneText(), VarFileInfo(kEnglish)})) + std::string(40, '\0');
}

std::string SixteenBit() {
  return BuildVersion(Root({StringFileInfo({Table("040904E4", {Text("FileVersion", "1.6"),
                                                               Text("CompanyName", "Oldä")})}),
                            VarFileInfo(U16(0x0409) + U16(0x04E4))}),
                      VersionForm::Ansi);
}

const VersionCase kBlockCases[] = {
    {.what = "a resource made block by block",
     .name = "raw_plain.dll",
     .file = EnglishLibrary({Text("FileVersion", "1.2.3.4"), Text("CompanyName", "Zent")}),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = {{"CompanyName", "Zent"}, {"FileVersion", "1.2.3.4"}}},
    {.what = "the 16-bit form in a 64-bit library",
     .name = "raw_16bit_block.dll",
     .file = BuildLibrary(SixteenBit()),
     .fixed = FixedVersion(),
     .translation = U16(0x0409) + U16(0x04E4),
     .texts = {{"CompanyName", "Oldä"}, {"FileVersion", "1.6"}}},
    {.what = "a resource of 0 bytes",
     .name = "raw_empty.dll",
     .file = BuildLibrary(""),
     .own = true},
    {.what = "zeros behind the block",
     .name = "raw_extra_tail.dll",
     .file = BuildLibrary(WithTail()),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = {{"FileVersion", "1.2.3.4"}}},
    {.what = "no fixed part",
     .name = "raw_no_fixed.dll",
     .file = BuildLibrary(WithoutFixed()),
     .fixed = "",
     .translation = kEnglish,
     .texts = {{"FileVersion", "1.2.3.4"}}},
    {.what = "the translation before the texts",
     .name = "raw_var_first.dll",
     .file = BuildLibrary(BuildVersion(Root({VarFileInfo(kEnglish), OneText()}))),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = {{"FileVersion", "1.2.3.4"}}},
    {.what = "of two blocks of texts only the first is searched",
     .name = "raw_two_sfi.dll",
     .file = BuildLibrary(
         BuildVersion(Root({StringFileInfo({Table("040704B0", {Text("FileVersion", "7.0")})}),
                            OneText("9.0"), VarFileInfo(kEnglish)}))),
     .fixed = FixedVersion(),
     .translation = kEnglish},
    {.what = "the name of the table in small letters",
     .name = "raw_lower_table.dll",
     .file = BuildLibrary(
         BuildVersion(Root({StringFileInfo({Table("040904b0", {Text("FileVersion", "1.2.3.4")})}),
                            VarFileInfo(kEnglish)}))),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = {{"FileVersion", "1.2.3.4"}}},
    {.what = "a translation without data is there, but holds nothing",
     .name = "raw_empty_translation.dll",
     .file = BuildLibrary(BuildVersion(Root({OneText(), VarFileInfo("")}))),
     .fixed = FixedVersion(),
     .translation = "",
     .own = true},
    {.what = "a translation of two bytes",
     .name = "raw_short_translation.dll",
     .file = BuildLibrary(BuildVersion(Root({OneText(), VarFileInfo(U16(0x0409))}))),
     .fixed = FixedVersion(),
     .translation = U16(0x0409)},
    {.what = "an outer length that is too large",
     .name = "raw_total_too_long.dll",
     .file = BuildLibrary(RootOfLength(4000)),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = {{"FileVersion", "1.2.3.4"}}},
    {.what = "an outer length that ends before the translation",
     .name = "raw_total_too_short.dll",
     .file = BuildLibrary(RootOfLength(0x78)),
     .fixed = FixedVersion()},
    {.what = "a resource that ends before the translation",
     .name = "raw_truncated.dll",
     .file = BuildLibrary(BuildVersion(Root({OneText(), VarFileInfo(kEnglish)})).substr(0, 0xC8)),
     .fixed = FixedVersion()},
};

const VersionCase kTextCases[] = {
    {.what = "of two equal keys the first",
     .name = "raw_duplicate_key.dll",
     .file = EnglishLibrary({Text("FileVersion", "1.0"), Text("FileVersion", "2.0")}),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = {{"FileVersion", "1.0"}}},
    {.what = "lengths of texts in bytes, as some old tools wrote them",
     .name = "raw_length_in_bytes.dll",
     .file = EnglishLibrary({TextOfLength("FileVersion", "1.2.3.4", 16),
                             TextOfLength("CompanyName", "Zent", 10),
                             TextOfLength("ProductName", "P", 4)}),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = {{"CompanyName", "Zent"}, {"FileVersion", "1.2.3.4"}, {"ProductName", "P"}}},
    {.what = "a length of 0 hides the text that follows",
     .name = "raw_length_zero.dll",
     .file =
         EnglishLibrary({TextOfLength("FileVersion", "1.2.3.4", 0), Text("CompanyName", "Zent")}),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = {{"CompanyName", "Zent"}, {"FileVersion", ""}},
     .own = true},
    {.what = "texts without their NUL",
     .name = "raw_no_nul.dll",
     .file = EnglishLibrary({TextWithoutNul("FileVersion", "1.2.3.4"),
                             TextWithoutNul("CompanyName", "Zent"), Text("ProductName", "After")}),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = {{"CompanyName", "Zent"}, {"FileVersion", "1.2.3.4"}, {"ProductName", "After"}}},
    {.what = "zeros between two texts end the search",
     .name = "raw_table_extra_padding.dll",
     .file = EnglishLibrary(
         {Text("FileVersion", "1.2.3"), Zeros(8), Text("CompanyName", "After the padding")}),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = {{"FileVersion", "1.2.3"}},
     .own = true},
    {.what = "a block of length 0 ends the search",
     .name = "raw_zero_length_child.dll",
     .file = EnglishLibrary({Zeros(8), Text("FileVersion", "1.2.3")}),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .own = true},
    {.what = "a text marked as bytes ends at its first zero byte",
     .name = "raw_type_binary_strings.dll",
     .file = EnglishLibrary({{.key = "FileVersion",
                              .bytes = std::string("1\0.\0002\0.\0003\0.\0004\0\0\0", 16),
                              .is_text = false}}),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = {{"FileVersion", "1"}}},
    {.what = "what the code page lacks becomes a question mark",
     .name = "raw_wide_value.dll",
     .file = EnglishLibrary({Text("FileVersion", "1.Ж.3"), Text("CompanyName", "€Š–")}),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = {{"CompanyName", "€Š–"}, {"FileVersion", "1.?.3"}}},
};

}  // namespace

std::vector<VersionCase> OddVersionCases() {
  std::vector<VersionCase> cases(std::begin(kBlockCases), std::end(kBlockCases));
  cases.insert(cases.end(), std::begin(kTextCases), std::end(kTextCases));
  return cases;
}

}  // namespace zent::testing
