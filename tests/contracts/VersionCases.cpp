#include "contracts/VersionCases.h"

#include <iterator>

#include "contracts/PeBuilder.h"

namespace zent::testing {
namespace {

std::string Translation(std::uint16_t language, std::uint16_t code_page) {
  return U16(language) + U16(code_page);
}

const std::string kEnglish = Translation(0x0409, 0x04B0);
const std::string kEnglishAnsi = Translation(0x0409, 0x04E4);

/// A library with these texts in one table, and one translation.
std::string Library(std::string_view table, std::vector<VersionNode> texts,
                    const std::string& translation) {
  return BuildLibrary(BuildVersion(
      Root({StringFileInfo({Table(table, std::move(texts))}), VarFileInfo(translation)})));
}

/// A library with these blocks in its American English table.
std::string EnglishLibrary(std::vector<VersionNode> texts) {
  return Library("040904B0", std::move(texts), kEnglish);
}

const std::vector<std::pair<std::string, std::string>> kPlainTexts = {
    {"CompanyName", "Zentware"},        {"FileDescription", "Korvo add-in"},
    {"FileVersion", "3.06.0012"},       {"InternalName", "kvo"},
    {"LegalCopyright", "(c) Zentware"}, {"OriginalFileName", "kvo.dll"},
    {"ProductName", "Korvo"},           {"ProductVersion", "3.06"},
};

VersionNode PlainTable(std::string_view name) {
  VersionNode table = Table(name, {});
  for (const auto& [key, text] : kPlainTexts) table.children.push_back(Text(key, text));
  return table;
}

std::string PlainVersion(std::string_view table = "040904B0",
                         const std::string& translation = kEnglish) {
  return BuildVersion(Root({StringFileInfo({PlainTable(table)}), VarFileInfo(translation)}));
}

/// `length` digits that tell their own place.
std::string Digits(std::size_t length) {
  std::string digits;
  while (digits.size() < length) digits += "0123456789";
  digits.resize(length);
  return digits;
}

/// The version resource of one of several languages; its only text says which.
PeResource InLanguage(std::uint16_t language, std::string_view file_version) {
  return {.language = language,
          .data = BuildVersion(
              Root({StringFileInfo({Table(TableOfTranslation(Translation(language, 0x04B0)),
                                          {Text("FileVersion", file_version)})}),
                    VarFileInfo(Translation(language, 0x04B0))}))};
}

const VersionCase kSoundCases[] = {
    {.what = "all eight texts of a 64-bit library",
     .name = "plain.dll",
     .file = BuildLibrary(PlainVersion()),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = kPlainTexts},
    {.what = "a 32-bit library",
     .name = "plain32.dll",
     .file = BuildPe({.is_64_bit = false, .resources = {{.data = PlainVersion()}}}),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = kPlainTexts},
    {.what = "a program",
     .name = "plain_exe.exe",
     .file = BuildPe({.is_library = false, .resources = {{.data = PlainVersion()}}}),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = kPlainTexts},
    {.what = "the ANSI code page in the name of the table",
     .name = "ansi_cp.dll",
     .file = BuildLibrary(PlainVersion("040904E4", kEnglishAnsi)),
     .fixed = FixedVersion(),
     .translation = kEnglishAnsi,
     .texts = kPlainTexts},
    {.what = "empty texts are found, missing ones are not",
     .name = "empty_values.dll",
     .file = EnglishLibrary(
         {Text("FileVersion", ""), Text("ProductVersion", ""), Text("CompanyName", "x")}),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = {{"CompanyName", "x"}, {"FileVersion", ""}, {"ProductVersion", ""}}},
    {.what = "the first translation counts, though its table is the second one",
     .name = "first_translation_second_table.dll",
     .file = BuildLibrary(
         BuildVersion(Root({StringFileInfo({Table("040704E4", {Text("FileVersion", "7.0.0")}),
                                            Table("040904E4", {Text("FileVersion", "9.0.0")})}),
                            VarFileInfo(kEnglishAnsi + Translation(0x0407, 0x04E4))}))),
     .fixed = FixedVersion(),
     .translation = kEnglishAnsi + Translation(0x0407, 0x04E4),
     .texts = {{"FileVersion", "9.0.0"}}},
    {.what = "the first translation counts, though another one is English",
     .name = "two_tables.dll",
     .file = BuildLibrary(BuildVersion(Root(
         {StringFileInfo(
              {Table("040704E4", {Text("FileVersion", "7.0.0"), Text("CompanyName", "deutsch")}),
               Table("040904E4", {Text("FileVersion", "9.0.0")})}),
          VarFileInfo(Translation(0x0407, 0x04E4) + kEnglishAnsi)}))),
     .fixed = FixedVersion(),
     .translation = Translation(0x0407, 0x04E4) + kEnglishAnsi,
     .texts = {{"CompanyName", "deutsch"}, {"FileVersion", "7.0.0"}}},
    {.what = "a fourth number",
     .name = "four_parts.dll",
     .file = EnglishLibrary({Text("FileVersion", "3.6.0.99"), Text("ProductVersion", "3.6.0.1")}),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = {{"FileVersion", "3.6.0.99"}, {"ProductVersion", "3.6.0.1"}}},
    {.what = "a language above 7FFF",
     .name = "high_lang.dll",
     .file = Library("FC0004B0", {Text("FileVersion", "15.4")}, Translation(0xFC00, 0x04B0)),
     .fixed = FixedVersion(),
     .translation = Translation(0xFC00, 0x04B0),
     .texts = {{"FileVersion", "15.4"}}},
    {.what = "the case of keys and table name does not matter",
     .name = "keycase.dll",
     .file = Library("040904b0",
                     {Text("fileversion", "1.2.3"), Text("COMPANYNAME", "Upper"),
                      Text("originalfilename", "low.dll")},
                     kEnglish),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = {{"CompanyName", "Upper"},
               {"FileVersion", "1.2.3"},
               {"OriginalFileName", "low.dll"}}},
    {.what = "texts of 253 to 400 characters",
     .name = "long_values.dll",
     .file = EnglishLibrary({Text("CompanyName", Digits(254)), Text("FileDescription", Digits(255)),
                             Text("InternalName", Digits(256)), Text("LegalCopyright", Digits(253)),
                             Text("ProductName", Digits(400)),
                             Text("FileVersion", "1.0 " + Digits(260))}),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = {{"CompanyName", Digits(254)},
               {"FileDescription", Digits(255)},
               {"FileVersion", "1.0 " + Digits(260)},
               {"InternalName", Digits(256)},
               {"LegalCopyright", Digits(253)},
               {"ProductName", Digits(400)}}},
    {.what = "language 0 in the name of the table",
     .name = "neutral_lang_1200.dll",
     .file = Library("000004B0", {Text("FileVersion", "0.4")}, Translation(0, 0x04B0)),
     .fixed = FixedVersion(),
     .translation = Translation(0, 0x04B0),
     .texts = {{"FileVersion", "0.4"}}},
    {.what = "language 0 and code page 0",
     .name = "neutral_zero.dll",
     .file = Library("00000000", {Text("FileVersion", "0.1")}, Translation(0, 0)),
     .fixed = FixedVersion(),
     .translation = Translation(0, 0),
     .texts = {{"FileVersion", "0.1"}}},
    {.what = "a translation without a block of texts",
     .name = "no_stringfileinfo.dll",
     .file = BuildLibrary(BuildVersion(Root({VarFileInfo(kEnglish)}))),
     .fixed = FixedVersion(),
     .translation = kEnglish},
    {.what = "texts without a translation",
     .name = "no_translation.dll",
     .file = BuildLibrary(BuildVersion(Root({StringFileInfo({PlainTable("040904B0")})}))),
     .fixed = FixedVersion()},
    {.what = "a translation that names a table that is not there",
     .name = "translation_without_table.dll",
     .file = Library("040904B0", {Text("FileVersion", "3.6.0")}, kEnglishAnsi),
     .fixed = FixedVersion(),
     .translation = kEnglishAnsi},
    {.what = "a text ends at its first NUL",
     .name = "nul_in_value.dll",
     .file = EnglishLibrary({Text("FileVersion", std::string("1.2\0beta", 8)),
                             Text("CompanyName", std::string("a\0b", 3))}),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = {{"CompanyName", "a"}, {"FileVersion", "1.2"}}},
    {.what = "letters with marks, and the euro sign",
     .name = "umlauts.dll",
     .file = Library(
         "040704E4",
         {Text("FileVersion", "1.0 ä"), Text("CompanyName", "Büro ß €"), Text("ProductName", "é")},
         Translation(0x0407, 0x04E4)),
     .fixed = FixedVersion(),
     .translation = Translation(0x0407, 0x04E4),
     .texts = {{"CompanyName", "Büro ß €"}, {"FileVersion", "1.0 ä"}, {"ProductName", "é"}}},
    {.what = "texts are taken as they stand",
     .name = "version_forms.dll",
     .file = EnglishLibrary({Text("FileVersion", "3, 06, 0, 12"), Text("ProductVersion", " 3.6 ")}),
     .fixed = FixedVersion(),
     .translation = kEnglish,
     .texts = {{"FileVersion", "3, 06, 0, 12"}, {"ProductVersion", " 3.6 "}}},
    // A system may prefer the language of its user to all others; the order here is Wine's.
    {.what = "of several languages the neutral one",
     .name = "langs.dll",
     .file = BuildPe({.resources = {InLanguage(0x0407, "7.7"), InLanguage(0x0409, "9.9"),
                                    InLanguage(0, "0.0")}}),
     .fixed = FixedVersion(),
     .translation = Translation(0, 0x04B0),
     .texts = {{"FileVersion", "0.0"}},
     .own = true},
    {.what = "of languages that are not preferred the lowest number",
     .name = "langs_no_english.dll",
     .file = BuildPe({.resources = {InLanguage(0x040C, "12.12"), InLanguage(0x0407, "7.7")}}),
     .fixed = FixedVersion(),
     .translation = Translation(0x0407, 0x04B0),
     .texts = {{"FileVersion", "7.7"}},
     .own = true},
};

const VersionCase kCasesWithoutVersion[] = {
    {.what = "an empty file", .name = "empty.dll", .file = "", .opens = false},
    {.what = "a DOS header alone",
     .name = "mz_only.dll",
     .file = BuildLibrary(PlainVersion()).substr(0, kPeHeaderAt),
     .opens = false},
    {.what = "a text", .name = "text.dll", .file = "not a program\r\n", .opens = false},
    {.what = "a library that ends before its resources",
     .name = "truncated.dll",
     .file = BuildLibrary(PlainVersion()).substr(0, kResourcesAt - 0x10),
     .opens = false},
    {.what = "a library without resources",
     .name = "nores.dll",
     .file = BuildPe({}),
     .opens = false},
    {.what = "resources, but no version among them",
     .name = "noversion.dll",
     .file = BuildPe({.resources = {{.type = 10, .data = "x"}}}),
     .opens = false},
    {.what = "a version resource of number 2",
     .name = "id2.dll",
     .file = BuildPe({.resources = {{.number = 2, .data = PlainVersion()}}}),
     .opens = false},
    {.what = "no file of that name", .name = "missing.dll", .opens = false},
    {.what = "a folder", .name = ".", .opens = false},
};

}  // namespace

std::vector<VersionCase> OddVersionCases();  // in OddVersionCases.cpp

std::string TableOfTranslation(const std::string& translation) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  std::string name;
  for (const std::size_t at : {1U, 0U, 3U, 2U}) {
    const auto byte = static_cast<unsigned char>(translation.at(at));
    name += {kDigits[byte / 16], kDigits[byte % 16]};
  }
  return name;
}

std::vector<VersionCase> AllVersionCases() {
  std::vector<VersionCase> cases(std::begin(kSoundCases), std::end(kSoundCases));
  cases.insert(cases.end(), std::begin(kCasesWithoutVersion), std::end(kCasesWithoutVersion));
  const std::vector<VersionCase> odd = OddVersionCases();
  cases.insert(cases.end(), odd.begin(), odd.end());
  return cases;
}

}  // namespace zent::testing
