#include "lib/modGetFileVersion.h"

#include <fmt/format.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "base/Text.h"
#include "lib/FuncLib.h"
#include "lib/TokenList.h"

namespace zent {
namespace {

constexpr std::size_t kLongestText = 255;  // characters
constexpr std::size_t kComparedParts = 3;

struct RecordField {
  std::string_view key;
  std::string FileVersionRecord::*text;
};

constexpr RecordField kRecordFields[] = {
    {"CompanyName", &FileVersionRecord::company_name},
    {"FileDescription", &FileVersionRecord::file_description},
    {"FileVersion", &FileVersionRecord::file_version},
    {"InternalName", &FileVersionRecord::internal_name},
    {"LegalCopyright", &FileVersionRecord::legal_notice},
    {"OriginalFileName", &FileVersionRecord::build_file_name},
    {"ProductName", &FileVersionRecord::product_name},
    {"ProductVersion", &FileVersionRecord::product_version},
};

/// The name of the text table that a translation stands for: language and code page in
/// hexadecimal. A translation that is not complete names none.
std::optional<std::string> TableName(std::string_view translation) {
  constexpr std::size_t kTranslationSize = 4;  // uint16 language, uint16 code page, little-endian
  if (translation.size() < kTranslationSize) return std::nullopt;
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(translation[at]); };
  return fmt::format("{:02X}{:02X}{:02X}{:02X}", byte(1), byte(0), byte(3), byte(2));
}

/// At least six digits; what is larger than that makes a longer piece.
std::string KeyPiece(double number) {
  const double whole = std::nearbyint(number);  // a half goes to the even number
  return (whole < 0 ? "-" : "") + fmt::format("{:06.0f}", std::fabs(whole));
}

std::string VersionKey(std::string_view version) {
  TokenList parts;
  const std::size_t count = GetTokens(version, ".", parts).value_or(0);
  const std::size_t last = MinOf(count, kComparedParts);

  std::string key;
  for (std::size_t part = 1; part <= kComparedParts; ++part) {
    key += KeyPiece(part <= last ? LeadingNumber(parts.At(part).value()) : 0);
  }
  return key;
}

}  // namespace

bool ReadVersionInfo(const VersionResources& resources, std::string_view path,
                     FileVersionRecord& record) {
  record = {};
  const Result<std::unique_ptr<VersionInfo>> info = resources.Open(path);
  if (!info.ok()) return false;
  const std::optional<std::string> table =
      TableName(info.value()->QueryBytes(R"(\VarFileInfo\Translation)").value_or(""));
  if (!table) return false;

  for (const RecordField& field : kRecordFields) {
    const std::optional<std::string> text =
        info.value()->QueryText(fmt::format(R"(\StringFileInfo\{}\{})", *table, field.key));
    if (text) record.*field.text = FirstCharacters(*text, kLongestText);
  }
  return true;
}

std::string GetFileVersionText(const VersionResources& resources, std::string_view path) {
  if (IsBlank(path)) return {};
  FileVersionRecord record;
  ReadVersionInfo(resources, path, record);  // on false the text is empty
  return record.file_version;
}

// Keys are compared as text, not by their numbers: a part of 1000000 or more makes its piece
// longer, and then the order of the digits decides. Packages are made with this order in mind.

bool IsVersionNotNewer(std::string_view a, std::string_view b) {
  return VersionKey(a) <= VersionKey(b);
}

bool IsVersionOlder(std::string_view a, std::string_view b) {
  return VersionKey(a) < VersionKey(b);
}

}  // namespace zent
