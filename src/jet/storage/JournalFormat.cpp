#include "jet/storage/JournalFormat.h"

#include <algorithm>
#include <string_view>

#include "jet/format/JetErrors.h"
#include "jet/storage/Checksum.h"

namespace zent::jet {
namespace {

constexpr std::string_view kStampTag = "ZentTxn1";
constexpr std::size_t kStampTransaction = 8;
constexpr std::size_t kStampRecords = 16;
constexpr std::size_t kStampChecksum = 24;

constexpr std::string_view kJournalTag = "ZentJrn1";
constexpr std::size_t kHeaderTransaction = 8;
constexpr std::size_t kHeaderDatabase = 16;
constexpr std::size_t kHeaderPageSize = 24;
constexpr std::size_t kHeaderPageCount = 28;
constexpr std::size_t kHeaderUnstamped = 32;
constexpr std::size_t kHeaderChecksum = 64;

// Of page 0: magic, version, maps, system tables, key; then build, collation, creation date.
// Between them lies the password.
constexpr std::size_t kIdentityEnd = 0x42;
constexpr std::size_t kIdentityMore = 0x6A;
constexpr std::size_t kIdentityMoreSize = 0x10;

void PutTag(std::string_view tag, MutableBytes bytes) {
  std::copy(tag.begin(), tag.end(), bytes.begin());
}

bool HasTag(std::string_view tag, ByteView bytes) { return AsText(bytes.first(tag.size())) == tag; }

std::uint64_t RecordChecksum(std::uint64_t transaction, PageNumber page, ByteView bytes) {
  return Checksum(bytes, transaction ^ (std::uint64_t{page} << 32U));
}

}  // namespace

StampBytes EncodeStamp(const Stamp& stamp) {
  StampBytes bytes = {};
  PutTag(kStampTag, bytes);
  StoreU64(bytes, kStampTransaction, stamp.transaction);
  StoreU32(bytes, kStampRecords, stamp.records);
  StoreU64(bytes, kStampChecksum, Checksum(ByteView(bytes).first(kStampChecksum), 0));
  return bytes;
}

Result<std::optional<Stamp>> DecodeStamp(ByteView bytes) {
  if (bytes.size() < kStampSize || !HasTag(kStampTag, bytes)) return std::optional<Stamp>();
  if (LoadU64(bytes, kStampChecksum) != Checksum(bytes.first(kStampChecksum), 0)) {
    return Damaged(0, "the mark of an interrupted change is damaged");
  }
  return std::optional<Stamp>(Stamp{.transaction = LoadU64(bytes, kStampTransaction),
                                    .records = LoadU32(bytes, kStampRecords)});
}

std::uint64_t DatabaseIdentity(ByteView page) {
  if (page.size() < kIdentityMore + kIdentityMoreSize) return 0;
  const std::uint64_t start = Checksum(page.first(kIdentityEnd), 0);
  return Checksum(page.subspan(kIdentityMore, kIdentityMoreSize), start);
}

std::array<std::uint8_t, kJournalHeaderSize> EncodeJournalHeader(const JournalHeader& header) {
  std::array<std::uint8_t, kJournalHeaderSize> bytes = {};
  PutTag(kJournalTag, bytes);
  StoreU64(bytes, kHeaderTransaction, header.transaction);
  StoreU64(bytes, kHeaderDatabase, header.database);
  StoreU32(bytes, kHeaderPageSize, header.page_size);
  StoreU32(bytes, kHeaderPageCount, header.page_count);
  std::copy(header.unstamped.begin(), header.unstamped.end(), bytes.begin() + kHeaderUnstamped);
  StoreU64(bytes, kHeaderChecksum, Checksum(ByteView(bytes).first(kHeaderChecksum), 0));
  return bytes;
}

Result<JournalHeader> DecodeJournalHeader(ByteView bytes) {
  if (bytes.size() < kJournalHeaderSize || !HasTag(kJournalTag, bytes) ||
      LoadU64(bytes, kHeaderChecksum) != Checksum(bytes.first(kHeaderChecksum), 0)) {
    return Damaged(0, "the journal of an interrupted change is damaged");
  }
  JournalHeader header{.transaction = LoadU64(bytes, kHeaderTransaction),
                       .database = LoadU64(bytes, kHeaderDatabase),
                       .page_size = LoadU32(bytes, kHeaderPageSize),
                       .page_count = LoadU32(bytes, kHeaderPageCount)};
  std::copy_n(bytes.begin() + kHeaderUnstamped, kStampSize, header.unstamped.begin());
  return header;
}

void SealRecord(std::uint64_t transaction, PageNumber page, MutableBytes record) {
  StoreU32(record, 0, page);
  StoreU32(record, 4, 0);
  StoreU64(record, 8, RecordChecksum(transaction, page, record.subspan(kRecordHeadSize)));
}

std::optional<PageNumber> CheckRecord(std::uint64_t transaction, ByteView record) {
  const PageNumber page = LoadU32(record, 0);
  const std::uint64_t sum = RecordChecksum(transaction, page, record.subspan(kRecordHeadSize));
  if (LoadU32(record, 4) != 0 || LoadU64(record, 8) != sum) return std::nullopt;
  return page;
}

}  // namespace zent::jet
