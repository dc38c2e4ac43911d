#include "platform/prefix/version/PeImage.h"

#include <span>

#include "platform/prefix/version/LittleEndian.h"

// Names and offsets as in "PE Format", the description of program files that Microsoft publishes.

namespace zent {
namespace {

// The header of the DOS program that every program file begins with.
constexpr std::size_t kDosHeaderSize = 64;
constexpr std::string_view kDosSignature = "MZ";
constexpr std::size_t kPeHeaderField = 0x3C;  // uint32, where the header below begins

// Signature and COFF header.
constexpr std::size_t kPeHeaderSize = 24;
constexpr std::string_view kPeSignature{"PE\0\0", 4};
constexpr std::size_t kSectionCountField = 6;         // uint16
constexpr std::size_t kOptionalHeaderSizeField = 20;  // uint16

// The optional header that follows: the directory of resources is the third of its directories.
constexpr std::uint16_t kMagic32 = 0x10B;
constexpr std::uint16_t kMagic64 = 0x20B;
constexpr std::size_t kDirectories32 = 96;
constexpr std::size_t kDirectories64 = 112;
constexpr std::size_t kResourceDirectory = 16;  // from the first directory on: uint32 address
constexpr std::uint32_t kResourceDirectoryNumber = 2;

// A row of the section table that follows the optional header.
constexpr std::size_t kSectionSize = 40;
constexpr std::size_t kSectionAddressField = 12;     // uint32
constexpr std::size_t kSectionStoredSizeField = 16;  // uint32, bytes in the file
constexpr std::size_t kSectionOffsetField = 20;      // uint32, in the file

RuntimeError NoProgram() { return StandardError(kInvalidFileFormat, "not a program file"); }

/// Exactly `size` bytes of the file.
Result<std::string> ReadExactly(File& file, std::uint64_t offset, std::size_t size) {
  std::string bytes(size, '\0');
  const Result<std::size_t> read = file.ReadAt(offset, std::span(bytes));
  if (!read.ok()) return read.error();
  if (read.value() < size) return NoProgram();
  return bytes;
}

/// The address that the optional header gives for the resources; 0 when it has no such directory.
Result<std::uint32_t> ResourceAddress(std::string_view optional_header) {
  if (optional_header.size() < sizeof(std::uint16_t)) return NoProgram();
  const std::uint16_t magic = U16At(optional_header, 0);
  if (magic != kMagic32 && magic != kMagic64) return NoProgram();

  const std::size_t directories = magic == kMagic64 ? kDirectories64 : kDirectories32;
  const std::size_t entry = directories + kResourceDirectory;
  if (optional_header.size() < entry + 2 * sizeof(std::uint32_t)) return std::uint32_t{0};
  const std::uint32_t count = U32At(optional_header, directories - sizeof(std::uint32_t));
  if (count <= kResourceDirectoryNumber) return std::uint32_t{0};
  return U32At(optional_header, entry);
}

}  // namespace

Result<PeImage> PeImage::Open(File& file) {
  const Result<std::string> dos_header = ReadExactly(file, 0, kDosHeaderSize);
  if (!dos_header.ok()) return dos_header.error();
  if (!dos_header.value().starts_with(kDosSignature)) return NoProgram();

  const std::uint64_t pe_offset = U32At(dos_header.value(), kPeHeaderField);
  const Result<std::string> pe_header = ReadExactly(file, pe_offset, kPeHeaderSize);
  if (!pe_header.ok()) return pe_header.error();
  if (!pe_header.value().starts_with(kPeSignature)) return NoProgram();

  const std::size_t optional_size = U16At(pe_header.value(), kOptionalHeaderSizeField);
  const std::uint64_t optional_offset = pe_offset + kPeHeaderSize;
  const Result<std::string> optional_header = ReadExactly(file, optional_offset, optional_size);
  if (!optional_header.ok()) return optional_header.error();
  const Result<std::uint32_t> address = ResourceAddress(optional_header.value());
  if (!address.ok()) return address.error();

  const std::size_t sections_size = U16At(pe_header.value(), kSectionCountField) * kSectionSize;
  Result<std::string> sections = ReadExactly(file, optional_offset + optional_size, sections_size);
  if (!sections.ok()) return sections.error();
  return PeImage(file, std::move(sections.value()), address.value());
}

Result<std::string> PeImage::Read(std::uint64_t address, std::size_t size) const {
  for (std::size_t row = 0; row < sections_.size(); row += kSectionSize) {
    const std::uint64_t start = U32At(sections_, row + kSectionAddressField);
    const std::uint64_t stored = U32At(sections_, row + kSectionStoredSizeField);
    if (address < start || address - start >= stored) continue;
    if (size > stored - (address - start)) return NoProgram();
    const std::uint64_t offset = U32At(sections_, row + kSectionOffsetField);
    return ReadExactly(file_, offset + (address - start), size);
  }
  return NoProgram();
}

}  // namespace zent
