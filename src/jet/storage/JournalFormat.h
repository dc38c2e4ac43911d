#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/format/Layout.h"

/// The bytes of the rollback journal, and of the stamp that ties a database to it.
///
/// While pages of a database are being overwritten, 32 bytes of its page 0 that the format leaves
/// zero hold a stamp: the number of the transaction, drawn at random, and how many records of its
/// journal are on disk. Only the journal of that number is applied, and all of those records must
/// be whole; so a journal of another file, of another time or of a copy is never applied. Taking
/// the stamp off commits. A journal beside a database without stamp means nothing.
///
/// Journal: a header in the first 512 bytes, then records: u32 page, u32 0, u64 checksum, the page
/// as it stood in the file. Numbers are little-endian.
namespace zent::jet {

inline constexpr std::size_t kStampOffset = 0xDE0;  ///< in page 0, within one block of 512 bytes
inline constexpr std::size_t kStampSize = 32;
inline constexpr std::size_t kJournalHeaderSize = 512;
inline constexpr std::size_t kRecordHeadSize = 16;

using StampBytes = std::array<std::uint8_t, kStampSize>;

struct Stamp {
  std::uint64_t transaction = 0;
  std::uint32_t records = 0;

  bool operator==(const Stamp&) const = default;
};

StampBytes EncodeStamp(const Stamp& stamp);
/// Nothing when there is no stamp; kCannotOpenDatabase for a damaged one.
Result<std::optional<Stamp>> DecodeStamp(ByteView bytes);

struct JournalHeader {
  std::uint64_t transaction = 0;
  std::uint64_t database = 0;  ///< DatabaseIdentity
  std::uint32_t page_size = 0;
  PageNumber page_count = 0;  ///< of the database before the transaction
  StampBytes unstamped = {};  ///< what the database has in the place of the stamp

  bool operator==(const JournalHeader&) const = default;
};

/// A number for the database whose page 0 begins with `page`: the same for life, whatever password
/// it gets.
std::uint64_t DatabaseIdentity(ByteView page);

std::array<std::uint8_t, kJournalHeaderSize> EncodeJournalHeader(const JournalHeader& header);
/// kCannotOpenDatabase for anything else.
Result<JournalHeader> DecodeJournalHeader(ByteView bytes);

/// Where record `index` begins.
constexpr std::uint64_t RecordOffset(std::size_t page_size, std::uint32_t index) {
  return kJournalHeaderSize + std::uint64_t{index} * (page_size + kRecordHeadSize);
}

/// Writes the head of a record, whose page stands behind it in `record`.
void SealRecord(std::uint64_t transaction, PageNumber page, MutableBytes record);
/// The page of a record; nothing when it is damaged or of another transaction.
std::optional<PageNumber> CheckRecord(std::uint64_t transaction, ByteView record);

}  // namespace zent::jet
