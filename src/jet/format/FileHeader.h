#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/format/Collation.h"
#include "jet/format/Layout.h"
#include "jet/format/Value.h"

/// Page 0 of a file.
namespace zent::jet {

/// Bytes that ReadVersion wants.
inline constexpr std::size_t kVersionBytes = 0x18;
/// Characters of a password.
inline constexpr std::size_t kMaxPassword = 20;

struct FileHeader {
  JetVersion version = JetVersion::Jet4;
  Collation collation = kGeneralLegacy;
  std::uint16_t code_page = 1252;
  std::uint32_t database_key = 0;  ///< 0: pages are not encrypted
  std::uint32_t engine_build = 9756;
  Date creation_date = {};    ///< Jet 4; 0 in Jet 3
  std::string password = {};  ///< empty: none
};

/// The version, from the first bytes of the file. kUnrecognizedFormat for a newer format and
/// for anything else that is no database.
Result<JetVersion> ReadVersion(ByteView start);

/// Reads a whole page 0.
Result<FileHeader> ParseFileHeader(ByteView page);

/// kInvalidPassword unless `given` is the password, letter for letter.
Status CheckPassword(const FileHeader& header, std::string_view given);

/// Writes page 0 of a new Jet 4 file. kInvalidArgument for a password that is too long.
Status WriteFileHeader(const FileHeader& header, MutableBytes page);

/// Puts another password (empty: none) into page 0 of a Jet 4 file.
Status SetPassword(std::string_view password, MutableBytes page);

}  // namespace zent::jet
