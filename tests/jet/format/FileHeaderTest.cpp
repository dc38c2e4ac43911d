#include <gtest/gtest.h>

#include <algorithm>
#include <bit>

#include "HexBytes.h"
#include "jet/format/FileHeader.h"
#include "jet/format/JetErrors.h"
#include "jet/format/Rc4.h"

namespace zent::jet {
namespace {

// The first 160 bytes of a small file made by the application, and what they say.
constexpr std::string_view kRealHeader =
    "00 01 00 00 53 74 61 6e 64 61 72 64 20 4a 65 74 20 44 42 00 01 00 00 00 b5 6e 03 62 60 09 c2 "
    "55"
    "e9 a9 67 72 40 3f 00 9c 7e 9f 90 ff 85 9a 31 c5 79 ba ed 30 bc df cc 9d 63 d9 e4 c3 9f 46 fb "
    "8a"
    "bc 4e df 5e ec 37 04 e1 9c fa 9f fb 28 e6 4a 13 8a 60 0d 31 7b 36 ac d7 df b1 2e 51 13 43 96 "
    "0a"
    "b1 33 6d c4 79 5b cb 10 7c 2a 19 d7 7c 99 08 1f 98 fd 2c ca 99 af 52 95 84 66 5f 95 f8 d0 89 "
    "24"
    "85 67 c6 1f 27 44 d2 ee cf 65 ed ff 07 c7 46 a1 78 16 0c ed e9 2d 62 d4 54 06 00 00 34 2e 30 "
    "00";

std::vector<std::uint8_t> RealPage() {
  std::vector<std::uint8_t> page = HexVector(kRealHeader);
  page.resize(4096);
  return page;
}

FileHeader RealHeader() {
  return {.engine_build = 9756,
          .creation_date = {std::bit_cast<double>(std::uint64_t{0x40E4AB3E3BD3853E})}};
}

TEST(FileHeader, IsReadFromARealFile) {
  const Result<FileHeader> header = ParseFileHeader(RealPage());
  ASSERT_TRUE(header.ok());
  EXPECT_EQ(header.value().version, JetVersion::Jet4);
  EXPECT_EQ(header.value().collation, kGeneralLegacy);
  EXPECT_EQ(header.value().code_page, 1252);
  EXPECT_EQ(header.value().database_key, 0U);
  EXPECT_EQ(header.value().engine_build, 9756U);
  EXPECT_EQ(header.value().creation_date, RealHeader().creation_date);
  EXPECT_EQ(header.value().password, "");
}

TEST(FileHeader, IsWrittenAsTheApplicationWritesIt) {
  std::vector<std::uint8_t> page(4096, 0xCC);
  ASSERT_TRUE(WriteFileHeader(RealHeader(), page).ok());
  EXPECT_EQ(ToHex(AsText(ByteView(page).first(160))), ToHex(Hex(kRealHeader)));
  EXPECT_EQ(ToHex(AsText(ByteView(page).subspan(0xE00, 4))), "00 01 00 01");
  EXPECT_EQ(page[0xDFF], 0);
}

struct PasswordCase {
  const char* what;
  const char* password;
  int error;
};

constexpr PasswordCase kPasswords[] = {
    {"none", "", 0},
    {"plain", "secret", 0},
    {"as long as it may be", "12345678901234567890", 0},
    {"beyond the code page", "p\xC3\xA4ss\xE6\x97\xA5", 0},
    {"too long", "123456789012345678901", kInvalidArgument},
};

TEST(FileHeader, KeepsAPassword) {
  for (const PasswordCase& row : kPasswords) {
    SCOPED_TRACE(row.what);
    std::vector<std::uint8_t> page = RealPage();
    EXPECT_EQ(SetPassword(row.password, page).number(), row.error);
    const Result<FileHeader> header = ParseFileHeader(page);
    ASSERT_TRUE(header.ok());
    EXPECT_EQ(header.value().password, row.error == 0 ? row.password : "");
    EXPECT_EQ(header.value().creation_date, RealHeader().creation_date);
  }
}

TEST(FileHeader, APasswordThatIsRefusedChangesNothing) {
  std::vector<std::uint8_t> page = RealPage();
  EXPECT_FALSE(SetPassword(std::string(21, 'x'), page).ok());
  EXPECT_FALSE(SetPassword(std::string("a\0b", 3), page).ok());
  EXPECT_EQ(page, RealPage());
}

TEST(FileHeader, TakingThePasswordAwayGivesTheOldBytes) {
  std::vector<std::uint8_t> page = RealPage();
  ASSERT_TRUE(SetPassword("secret", page).ok());
  EXPECT_NE(page, RealPage());
  ASSERT_TRUE(SetPassword("", page).ok());
  EXPECT_EQ(page, RealPage());
}

TEST(CheckPassword, IsExact) {
  FileHeader header;
  header.password = "Secret";
  EXPECT_TRUE(CheckPassword(header, "Secret").ok());
  EXPECT_EQ(CheckPassword(header, "secret").number(), kInvalidPassword);
  EXPECT_EQ(CheckPassword(header, "").number(), kInvalidPassword);
  EXPECT_EQ(CheckPassword({}, "Secret").number(), kInvalidPassword);
}

TEST(FileHeader, KeepsEveryFieldOfANewFile) {
  FileHeader header = RealHeader();
  header.collation = {.lcid = 1031, .version = 1};
  header.database_key = 0x12345678;
  header.password = "x";
  std::vector<std::uint8_t> page(4096);
  ASSERT_TRUE(WriteFileHeader(header, page).ok());
  const Result<FileHeader> read = ParseFileHeader(page);
  ASSERT_TRUE(read.ok());
  EXPECT_EQ(read.value().collation, header.collation);
  EXPECT_EQ(read.value().database_key, header.database_key);
  EXPECT_EQ(read.value().password, "x");
}

TEST(FileHeader, SurvivesADateThatIsNone) {
  FileHeader header;
  for (const double days : {1e300, -1e300, std::bit_cast<double>(~std::uint64_t{0})}) {
    header.creation_date.days = days;
    header.password = "pw";
    std::vector<std::uint8_t> page(4096);
    ASSERT_TRUE(WriteFileHeader(header, page).ok());
    EXPECT_EQ(ParseFileHeader(page).value().password, "pw");
  }
}

struct VersionCase {
  const char* what;
  std::size_t size;
  std::size_t at;
  std::uint8_t byte;
  int error;
};

constexpr VersionCase kVersions[] = {
    {"whole", 0x18, 0x14, 1, 0},
    {"Access 97", 0x18, 0x14, 0, 0},
    {"Access 2007", 0x18, 0x14, 2, kUnrecognizedFormat},
    {"no version", 0x18, 0x17, 1, kUnrecognizedFormat},
    {"another engine", 0x18, 4, 'M', kUnrecognizedFormat},
    {"cut", 0x17, 0x14, 1, kUnrecognizedFormat},
    {"empty", 0, 0, 0, kUnrecognizedFormat},
};

TEST(ReadVersion, KnowsBothAndRefusesTheRest) {
  for (const VersionCase& row : kVersions) {
    SCOPED_TRACE(row.what);
    std::vector<std::uint8_t> start = RealPage();
    start[row.at] = row.byte;
    if (row.size == 0) start[0] = 0;
    start.resize(row.size);
    EXPECT_EQ(ReadVersion(start).number(), row.error);
  }
}

TEST(FileHeader, RefusesAPageThatIsCut) {
  std::vector<std::uint8_t> page = RealPage();
  page.resize(4095);
  EXPECT_EQ(ParseFileHeader(page).number(), kUnrecognizedFormat);
}

// A page of Access 97, masked as such: no creation date, a password of single bytes.
TEST(FileHeader, ReadsAccess97) {
  std::vector<std::uint8_t> page = HexVector(kRealHeader);
  page.resize(2048);
  std::fill(page.begin() + 0x14, page.end(), std::uint8_t{0});
  StoreU16(page, 0x3A, 1033);
  StoreU16(page, 0x3C, 1252);
  StoreU16(page, 0x56, 3410);
  std::copy_n("p\xE4ss", 4, page.begin() + 0x42);
  ApplyRc4(HexVector("C7 DA 39 6B"), MutableBytes(page).subspan(0x18, 126));
  const Result<FileHeader> header = ParseFileHeader(page);
  ASSERT_TRUE(header.ok());
  EXPECT_EQ(header.value().version, JetVersion::Jet3);
  EXPECT_EQ(header.value().collation, kGeneralLegacy);
  EXPECT_EQ(header.value().engine_build, 3410U);
  EXPECT_EQ(header.value().password, "p\xC3\xA4ss");
}

struct Rc4Case {
  const char* what;
  std::string key;
  std::string plain;
  const char* cipher;
};

// The vectors that the cipher is known by, and the mask of the header.
const Rc4Case kRc4[] = {
    {"Key", "Key", "Plaintext", "BB F3 16 E8 D9 40 AF 0A D3"},
    {"Wiki", "Wiki", "pedia", "10 21 BF 04 20"},
    {"Secret", "Secret", "Attack at dawn", "45 A0 1F 64 5F C3 5B 38 35 52 54 4B 9B F5"},
    {"the mask", Hex("C7 DA 39 6B"), std::string(16, '\0'),
     "B5 6F 03 62 61 08 C2 55 EB A9 67 72 43 3F 00 9C"},
    {"no key changes nothing", "", "abc", "61 62 63"},
};

TEST(Rc4, GivesTheKnownBytes) {
  for (const Rc4Case& row : kRc4) {
    SCOPED_TRACE(row.what);
    std::vector<std::uint8_t> bytes(row.plain.begin(), row.plain.end());
    ApplyRc4(AsBytes(row.key), bytes);
    EXPECT_EQ(ToHex(AsText(bytes)), row.cipher);
    ApplyRc4(AsBytes(row.key), bytes);
    EXPECT_EQ(AsText(bytes), row.plain);
  }
}

TEST(CryptPage, HasAKeyForEachPageAndLeavesTheFirst) {
  std::vector<std::uint8_t> page(64);
  CryptPage(0x11223344, 0, page);
  EXPECT_EQ(page, std::vector<std::uint8_t>(64));
  CryptPage(0, 5, page);
  EXPECT_EQ(page, std::vector<std::uint8_t>(64));

  std::vector<std::uint8_t> expected(64);
  ApplyRc4(HexVector("46 33 22 11"), expected);  // key XOR 2, least byte first
  CryptPage(0x11223344, 2, page);
  EXPECT_EQ(page, expected);
  CryptPage(0x11223344, 2, page);
  EXPECT_EQ(page, std::vector<std::uint8_t>(64));
}

}  // namespace
}  // namespace zent::jet
