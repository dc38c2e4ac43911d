#include "jet/format/FileHeader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "base/CodePage.h"
#include "base/Utf.h"
#include "jet/format/JetErrors.h"
#include "jet/format/Rc4.h"

namespace zent::jet {
namespace {

constexpr std::string_view kMagic = std::string_view("\x00\x01\x00\x00Standard Jet DB\x00", 20);
constexpr std::size_t kVersionOffset = 0x14;

// The head from 0x18 on is XORed with the RC4 stream of this key.
constexpr std::array<std::uint8_t, 4> kMaskKey = {0xC7, 0xDA, 0x39, 0x6B};
constexpr std::size_t kMaskOffset = 0x18;
constexpr std::size_t kMaskSizeJet4 = 128;
constexpr std::size_t kMaskSizeJet3 = 126;

constexpr std::size_t kGlobalMapOffset = 0x18;    // row pointer, then that of a second map
constexpr std::size_t kSystemPagesOffset = 0x20;  // four definition pages
constexpr std::size_t kLcidOffsetJet3 = 0x3A;
constexpr std::size_t kCodePageOffset = 0x3C;
constexpr std::size_t kKeyOffset = 0x3E;
constexpr std::size_t kPasswordOffset = 0x42;
constexpr std::size_t kPasswordSizeJet4 = 2 * kMaxPassword;
constexpr std::size_t kPasswordSizeJet3 = kMaxPassword;
constexpr std::size_t kBuildOffsetJet3 = 0x56;
constexpr std::size_t kBuildOffset = 0x6A;
constexpr std::size_t kLcidOffset = 0x6E;
constexpr std::size_t kCollationVersionOffset = 0x71;
constexpr std::size_t kDateOffset = 0x72;
constexpr std::size_t kFormatOffset = 0x98;  // u32 1620, then "4.0"
constexpr std::uint32_t kFormatMark = 1620;
constexpr std::size_t kCommitOffset = 0xE00;
constexpr std::size_t kCommitSize = 512;

void ToggleMask(JetVersion version, MutableBytes page) {
  ApplyRc4(kMaskKey,
           page.subspan(kMaskOffset, version == JetVersion::Jet4 ? kMaskSizeJet4 : kMaskSizeJet3));
}

/// The password of a Jet 4 file is XORed with the day of the creation date, four bytes at a time.
void TogglePasswordMask(MutableBytes page) {
  const double date = std::bit_cast<double>(LoadU64(page, kDateOffset));
  const bool is_day = std::abs(date) < 2147483648.0;  // false for what is no number as well
  const auto day = static_cast<std::uint32_t>(is_day ? static_cast<std::int32_t>(date) : 0);
  std::array<std::uint8_t, 4> mask;
  StoreU32(mask, 0, day);
  for (std::size_t i = 0; i < kPasswordSizeJet4; ++i) page[kPasswordOffset + i] ^= mask[i % 4];
}

std::string PasswordOf(JetVersion version, ByteView page) {
  if (version == JetVersion::Jet3) {
    const std::string_view bytes = AsText(page.subspan(kPasswordOffset, kPasswordSizeJet3));
    return FromAnsi(bytes.substr(0, bytes.find('\0')));
  }
  std::u16string text;
  for (std::size_t i = 0; i < kPasswordSizeJet4; i += 2) {
    const std::uint16_t unit = LoadU16(page, kPasswordOffset + i);
    if (unit == 0) break;
    text.push_back(static_cast<char16_t>(unit));
  }
  return FromUtf16(text);
}

/// Writes the password in clear.
Status PutPassword(std::string_view password, MutableBytes page) {
  const std::u16string text = ToUtf16(password);
  if (text.size() > kMaxPassword) {
    return JetErrorBecause(kInvalidArgument, "a password has at most 20 characters");
  }
  if (text.find(u'\0') != std::u16string::npos) {
    return JetErrorBecause(kInvalidArgument, "a password cannot hold the character 0");
  }
  std::fill_n(page.begin() + kPasswordOffset, kPasswordSizeJet4, std::uint8_t{0});
  for (std::size_t i = 0; i < text.size(); ++i) StoreU16(page, kPasswordOffset + 2 * i, text[i]);
  return {};
}

}  // namespace

Result<JetVersion> ReadVersion(ByteView start) {
  if (start.size() < kVersionBytes || AsText(start.first(kMagic.size())) != kMagic) {
    return JetErrorBecause(kUnrecognizedFormat, "this file is no database");
  }
  const std::uint32_t version = LoadU32(start, kVersionOffset);
  if (version == 0) return JetVersion::Jet3;
  if (version == 1) return JetVersion::Jet4;
  return JetErrorBecause(kUnrecognizedFormat,
                         "made by a version of Access later than 2003, or by none");
}

Result<FileHeader> ParseFileHeader(ByteView page) {
  const Result<JetVersion> version = ReadVersion(page);
  if (!version.ok()) return version.error();
  const bool jet4 = version.value() == JetVersion::Jet4;
  if (page.size() < LayoutOf(version.value()).page_size) {
    return JetErrorBecause(kUnrecognizedFormat, "the file ends within its first page");
  }

  std::array<std::uint8_t, kMaskOffset + kMaskSizeJet4> bytes;
  std::copy_n(page.begin(), bytes.size(), bytes.begin());
  ToggleMask(version.value(), bytes);
  if (jet4) TogglePasswordMask(bytes);

  FileHeader header;
  header.version = version.value();
  header.collation.lcid = LoadU16(bytes, jet4 ? kLcidOffset : kLcidOffsetJet3);
  header.collation.version = jet4 ? bytes[kCollationVersionOffset] : std::uint8_t{0};
  header.code_page = LoadU16(bytes, kCodePageOffset);
  header.database_key = LoadU32(bytes, kKeyOffset);
  header.engine_build = jet4 ? LoadU32(bytes, kBuildOffset) : LoadU16(bytes, kBuildOffsetJet3);
  if (jet4) header.creation_date.days = std::bit_cast<double>(LoadU64(bytes, kDateOffset));
  header.password = PasswordOf(version.value(), bytes);
  return header;
}

Status CheckPassword(const FileHeader& header, std::string_view given) {
  if (header.password == given) return {};
  return JetError(kInvalidPassword);
}

Status WriteFileHeader(const FileHeader& header, MutableBytes page) {
  std::fill(page.begin(), page.end(), std::uint8_t{0});
  if (Status put = PutPassword(header.password, page); !put.ok()) return put;
  std::copy(kMagic.begin(), kMagic.end(), page.begin());
  StoreU32(page, kVersionOffset, 1);
  StoreU32(page, kGlobalMapOffset, kGlobalMap.packed());
  StoreU32(page, kGlobalMapOffset + 4, RowPointer{.page = kGlobalMapPage, .row = 1}.packed());
  for (std::size_t i = 0; i < 4; ++i) {
    StoreU32(page, kSystemPagesOffset + 4 * i, kObjectsPage + static_cast<PageNumber>(i));
  }
  StoreU16(page, kCodePageOffset, header.code_page);
  StoreU32(page, kKeyOffset, header.database_key);
  StoreU32(page, kBuildOffset, header.engine_build);
  StoreU16(page, kLcidOffset, header.collation.lcid);
  page[kCollationVersionOffset] = header.collation.version;
  StoreU64(page, kDateOffset, std::bit_cast<std::uint64_t>(header.creation_date.days));
  StoreU32(page, kFormatOffset, kFormatMark);
  std::copy_n("4.0", 3, page.begin() + kFormatOffset + 4);
  for (std::size_t i = 1; i < kCommitSize; i += 2) page[kCommitOffset + i] = 1;  // all at rest
  TogglePasswordMask(page);
  ToggleMask(JetVersion::Jet4, page);
  return {};
}

Status SetPassword(std::string_view password, MutableBytes page) {
  ToggleMask(JetVersion::Jet4, page);
  TogglePasswordMask(page);
  Status put = PutPassword(password, page);
  TogglePasswordMask(page);
  ToggleMask(JetVersion::Jet4, page);
  return put;
}

}  // namespace zent::jet
