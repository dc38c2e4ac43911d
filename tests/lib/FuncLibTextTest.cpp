#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "base/CodePage.h"
#include "fakes/FakeSystemInfo.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

using namespace std::string_view_literals;

struct BlankCase {
  const char* what;
  std::string_view text;
  bool blank;
};

constexpr BlankCase kBlankCases[] = {
    {"empty", "", true},
    {"blanks", "   ", true},
    {"NUL characters", "\0\0"sv, true},
    {"blanks and NUL characters mixed", " \0"sv, false},
    {"a tab", "\t", false},
    {"a letter among blanks", " a ", false},
};

TEST(IsBlank, TakesBlanksOrNulCharacters) {
  for (const BlankCase& row : kBlankCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(IsBlank(row.text), row.blank);
  }
}

struct TextCase {
  const char* what;
  const char* text;
  const char* result;
};

constexpr TextCase kQuoteCases[] = {
    {"both quotes go", R"("a,b")", "a,b"},
    {"a quote at the start alone goes", R"("a)", "a"},
    {"a quote at the end alone goes", R"(a")", "a"},
    {"one of two goes", R"(""a"")", R"("a")"},
    {"inner quotes stay", R"(a"b)", R"(a"b)"},
    {"a quote behind a blank stays", R"( "a")", R"( "a)"},
    {"one quote is both", R"(")", ""},
    {"two quotes", R"("")", ""},
    {"single quotes stay", "'a'", "'a'"},
    {"empty", "", ""},
};

TEST(StripQuotes, TakesOneQuoteOffEachEnd) {
  for (const TextCase& row : kQuoteCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(StripQuotes(row.text), row.result);
  }
}

struct NumberCase {
  const char* what;
  const char* text;
  double number;
};

constexpr double kLargest = std::numeric_limits<double>::max();
constexpr NumberCase kNumberCases[] = {
    {"whole", "30", 30},
    {"decimals", "2.5", 2.5},
    {"without a digit before the point", ".5", 0.5},
    {"without a digit behind the point", "5.", 5},
    {"a comma ends the number", "2,5", 2},
    {"leading blanks and tabs", " \t 7", 7},
    {"minus", "-3.25", -3.25},
    {"plus", "+3", 3},
    {"two signs are none", "-+3", 0},
    {"a blank behind the sign", "- 3", 0},
    {"exponent", "1.5e2", 150},
    {"exponent, capital and signed", "15E-1", 1.5},
    {"an exponent without digits does not count", "2e", 2},
    {"an exponent with a sign alone does not count", "2e+x", 2},
    {"text behind", "10 seconds", 10},
    {"letters right behind", "12beta", 12},
    {"no number", "abc", 0},
    {"a number further on does not count", "x1", 0},
    {"empty", "", 0},
    {"blanks", "   ", 0},
    {"a point alone", ".", 0},
    {"a sign alone", "-", 0},
    {"the word for infinity", "inf", 0},
    {"the word for no number", "nan", 0},
    {"no hexadecimal numbers", "0x10", 0},
    {"too large", "1e999", kLargest},
    {"too large, negative", "-1e999", -kLargest},
    {"too large by an exponent beyond every type", "1e99999999999999999999", kLargest},
    {"too large behind zeros", "0.001e400", kLargest},
    {"too small", "1e-999", 0},
    {"too small by an exponent beyond every type", "1e-99999999999999999999", 0},
    {"zero with a large exponent", "0e999", 0},
};

TEST(LeadingNumber, ReadsWhatTheTextBeginsWith) {
  for (const NumberCase& row : kNumberCases) {
    SCOPED_TRACE(row.what);
    EXPECT_DOUBLE_EQ(LeadingNumber(row.text), row.number);
  }
}

TEST(LeadingNumber, StaysFiniteForALongText) {
  const std::string digits(100'000, '9');
  EXPECT_EQ(LeadingNumber(digits), kLargest);
  EXPECT_EQ(LeadingNumber("." + std::string(100'000, '0') + "1"), 0);
}

TEST(MinOf, TakesTheSmallestOfAnyNumber) {
  EXPECT_EQ(MinOf(3), 3);
  EXPECT_EQ(MinOf(3, 1, 2), 1);
  EXPECT_EQ(MinOf(-1, 0, -2, 5), -2);
  EXPECT_EQ(MinOf(std::string("b"), std::string("a")), "a");
}

TEST(MaxOf, TakesTheLargestOfAnyNumber) {
  EXPECT_EQ(MaxOf(3), 3);
  EXPECT_EQ(MaxOf(1, 3, 2), 3);
  EXPECT_EQ(MaxOf(-1.5, -2.5), -1.5);
}

/// Compares by the first letter alone, so that equal values can be told apart.
struct Tagged {
  char key;
  char tag;
  bool operator<(const Tagged& other) const { return key < other.key; }
};

TEST(MinOf, KeepsTheFirstOnlyWhileItIsSmaller) {
  EXPECT_EQ(MinOf(Tagged{'a', '1'}, Tagged{'a', '2'}, Tagged{'b', '3'}).tag, '2');
  EXPECT_EQ(MaxOf(Tagged{'b', '1'}, Tagged{'b', '2'}, Tagged{'a', '3'}).tag, '2');
}

class Scrambling : public ::testing::Test {
 protected:
  std::string Scrambled(std::string_view text) { return ScrambleText(system, text); }

  testing::FakeSystemInfo system;
};

TEST_F(Scrambling, TurnsEachAnsiByteIntoItsComplement) {
  EXPECT_EQ(Scrambled("A"), FromAnsi("\xBE"));
  EXPECT_EQ(Scrambled("secret"), FromAnsi("\x8C\x9A\x9C\x8D\x9A\x8B"));
  EXPECT_EQ(Scrambled(FromAnsi("\xE4")), FromAnsi("\x1B"));
}

TEST_F(Scrambling, TakesTheBytesOfTheSystemsCodePage) {
  // As in code page 1250: "abc" is 61 62 63 there, and stored as 9E 9D 9C.
  system.letters = {{'\x9C', "\xC5\x9B"}, {'\x9D', "\xC5\xA5"}, {'\x9E', "\xC5\xBE"}};
  const std::string stored = "\xC5\xBE\xC5\xA5\xC5\x9B";
  EXPECT_EQ(Scrambled("abc"), stored);
  EXPECT_EQ(Scrambled(stored), "abc");
}

TEST_F(Scrambling, LeavesABlankTextAlone) {
  EXPECT_EQ(Scrambled(""), "");
  EXPECT_EQ(Scrambled("  "), "  ");
  EXPECT_EQ(Scrambled("\0"sv), "\0"sv);
}

TEST_F(Scrambling, AppliedTwiceGivesTheTextBack) {
  std::string every_byte;
  for (int byte = 0; byte < 256; ++byte) every_byte.push_back(static_cast<char>(byte));
  const std::string text = FromAnsi(every_byte);
  EXPECT_NE(Scrambled(text), text);
  EXPECT_EQ(Scrambled(Scrambled(text)), text);
  // The bytes 70 to 7F scramble to those that the code page leaves half undefined.
  EXPECT_EQ(Scrambled(Scrambled("pqrstuvwxyz{|}~")), "pqrstuvwxyz{|}~");
}

constexpr TextCase kMaskCases[] = {
    {"up to the semicolon", "DSN=Korvo;PWD=secret;UID=sa", "DSN=Korvo;***********UID=sa"},
    {"up to the end", "DSN=Korvo;PWD=secret", "DSN=Korvo;**********"},
    {"in any case", "dsn=Korvo;pwd=x;", "dsn=Korvo;******"},
    {"an empty password", "PWD=;UID=sa", "*****UID=sa"},
    {"only the first", "PWD=a;PWD=b;", "******PWD=b;"},
    {"a semicolon before it does not end it", ";PWD=a", ";*****"},
    {"one star for each character", "PWD=\xC3\xA4\xE2\x82\xAC;x", "*******x"},
    {"without a password", "DSN=Korvo;UID=sa", "DSN=Korvo;UID=sa"},
    {"a semicolon in braces", "PWD={a;b};UID=sa", "**********UID=sa"},
    {"doubled braces in braces", "PWD={a;{7}}};UID=sa", "*************UID=sa"},
    {"braces up to the end", "PWD={a;b}", "*********"},
    {"braces that are not closed", "PWD={a;b}};UID=sa", "*****************"},
    {"empty braces", "PWD={};UID=sa", "*******UID=sa"},
    {"a blank before the braces", "PWD= {a;b};UID=sa", "***********UID=sa"},
    {"blanks alone", "PWD=  ;UID=sa", "*******UID=sa"},
    {"a brace within a password", "PWD=a{b;c};", "********c};"},
    {"empty", "", ""},
};

TEST(MaskPassword, PutsStarsOverThePassword) {
  for (const TextCase& row : kMaskCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(MaskPassword(row.text), row.result);
  }
}

constexpr TextCase kMaskAllCases[] = {
    {"one", "DSN=Korvo;PWD=secret;UID=sa", "DSN=Korvo;***********UID=sa"},
    {"two", "PWD=a;UID=sa;pwd={b;};X", "******UID=sa;*********X"},
    {"one behind the other", "PWD=a;PWD=b", "***********"},
    {"within another", "PWD=PWD=a;", "**********"},
    {"none", "DSN=Korvo", "DSN=Korvo"},
    {"empty", "", ""},
};

TEST(MaskPasswords, PutsStarsOverEveryPassword) {
  for (const TextCase& row : kMaskAllCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(MaskPasswords(row.text), row.result);
  }
}

constexpr TextCase kBackslashCases[] = {
    {"added", R"(C:\Korvo)", R"(C:\Korvo\)"},
    {"kept", R"(C:\Korvo\)", R"(C:\Korvo\)"},
    {"a slash is kept", "C:/Korvo/", "C:/Korvo/"},
    {"blanks at the ends go", R"(  C:\My Data  )", R"(C:\My Data\)"},
    {"a drive", "C:", R"(C:\)"},
    {"blank stays empty", "   ", ""},
    {"empty stays empty", "", ""},
};

TEST(AddBackslash, EndsAPathWithOne) {
  for (const TextCase& row : kBackslashCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(AddBackslash(row.text), row.result);
  }
}

constexpr TextCase kFileNameCases[] = {
    {"behind the last backslash", R"(C:\Korvo\Korvo.exe)", "Korvo.exe"},
    {"behind the last slash", "C:/Korvo/Korvo.exe", "Korvo.exe"},
    {"mixed", R"(C:\Korvo/Korvo.exe)", "Korvo.exe"},
    {"without a folder", "Korvo.exe", "Korvo.exe"},
    {"a folder has none", R"(C:\Korvo\)", ""},
    {"empty", "", ""},
};

TEST(GetFileName, TakesTheLastPart) {
  for (const TextCase& row : kFileNameCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(GetFileName(row.text), row.result);
  }
}

struct ExtensionCase {
  const char* what;
  const char* name;
  const char* extension;
  const char* with_dot;
};

constexpr ExtensionCase kExtensionCases[] = {
    {"behind the dot", "Korvo.exe", "exe", ".exe"},
    {"behind the last dot", "Korvo.exe.bak", "bak", ".bak"},
    {"case stays", "KORVO.MDB", "MDB", ".MDB"},
    {"a name that ends in a dot has none", "Korvo.", "", ""},
    {"a name without a dot has none", "Korvo", "", ""},
    {"a name that begins with its only dot", ".ini", "ini", ".ini"},
    {"empty", "", "", ""},
};

TEST(GetFileExtension, TakesTheTextBehindTheLastDot) {
  for (const ExtensionCase& row : kExtensionCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(GetFileExtension(row.name), row.extension);
    EXPECT_EQ(GetFileExtension(row.name, true), row.with_dot);
  }
}

struct StampCase {
  const char* what;
  const char* name;
  const char* mode;
  const char* stamped;
};

constexpr StampCase kStampCases[] = {
    {"date", R"(C:\K\Korvo.exe)", "DateOnly", R"(C:\K\Korvo 2005-01-02.exe)"},
    {"time", R"(C:\K\Korvo.exe)", "TimeOnly", R"(C:\K\Korvo 07-05-09.exe)"},
    {"both", R"(C:\K\Korvo.exe)", "Both", R"(C:\K\Korvo 2005-01-02 07-05-09.exe)"},
    {"any other word means both", "a.b", "dateonly", "a 2005-01-02 07-05-09.b"},
    {"no word means both", "a.b", "", "a 2005-01-02 07-05-09.b"},
    {"without an extension nothing follows", "Korvo", "Both", "Korvo 2005-01-02 07-05-09"},
    {"an empty extension takes its dot along", "Korvo.", "DateOnly", "Korvo 2005-01-02"},
    {"so does a blank one", "Korvo. ", "DateOnly", "Korvo 2005-01-02"},
    {"the last of several dots", "a.b.c", "DateOnly", "a.b 2005-01-02.c"},
    {"a dot of the folder cuts there", R"(C:\v3.6\Korvo)", "DateOnly",
     R"(C:\v3 2005-01-02.6\Korvo)"},
    {"a blank name", "  ", "Both", ""},
    {"an empty name", "", "DateOnly", ""},
};

TEST(MakeTimeStampedName, PutsTheTimeBeforeTheExtension) {
  const LocalTime time{.year = 2005, .month = 1, .day = 2, .hour = 7, .minute = 5, .second = 9};
  for (const StampCase& row : kStampCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(MakeTimeStampedName(row.name, row.mode, time), row.stamped);
  }
}

TEST(MakeTimeStampedName, CountsHoursTo23AndYearsWithFourDigits) {
  const LocalTime time{.year = 802, .month = 12, .day = 31, .hour = 23, .minute = 59, .second = 58};
  EXPECT_EQ(MakeTimeStampedName("a", "Both", time), "a 0802-12-31 23-59-58");
}

}  // namespace
}  // namespace zent
