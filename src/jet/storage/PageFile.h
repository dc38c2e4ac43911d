#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/Status.h"
#include "jet/format/Layout.h"
#include "jet/storage/JournalFormat.h"
#include "jet/storage/PageCache.h"
#include "jet/storage/Storage.h"

namespace zent::jet {

/// What a pager did so far.
struct PagerCounters {
  std::uint64_t read_calls = 0;
  std::uint64_t pages_read = 0;
  std::uint64_t write_calls = 0;  ///< of pages to the database, not to the journal
  std::uint64_t pages_written = 0;
  std::uint64_t pages_journalled = 0;
  std::uint64_t spills = 0;         ///< times that a transaction did not fit the cache
  std::size_t most_pages_held = 0;  ///< in the cache
};

/// Whole pages of a database file, decrypted; neighbours in one call.
class PageFile {
 public:
  static constexpr std::size_t kGroup = 64;  ///< pages of one call at most

  PageFile(StoredFile& file, std::size_t page_size, std::uint32_t database_key,
           PagerCounters& counters);

  std::size_t page_size() const { return page_size_; }
  StoredFile& file() { return file_; }

  /// Fills the frames, which are of neighbouring pages. kCannotOpenDatabase where the file ends.
  Status Read(std::span<PageFrame* const> frames);
  /// Writes the frames, which are of neighbouring pages. Page 0 gets `stamp` in the place of one.
  Status Write(std::span<PageFrame* const> frames, const StampBytes& stamp);

  /// A page as it stands in the file, from its frame, which is clean. Valid until the next call.
  ByteView Stored(const PageFrame& frame);
  /// As Stored, read from the file.
  Result<ByteView> ReadStored(PageNumber page);

  /// Decrypts or encrypts in place.
  void Crypt(PageNumber page, MutableBytes bytes) const;

 private:
  StoredFile& file_;
  std::size_t page_size_;
  std::uint32_t key_;
  PagerCounters& counters_;
  std::vector<std::uint8_t> buffer_;
};

/// Notices reads that go upwards through the file and tells how many pages to read at once.
class ReadAhead {
 public:
  /// Pages to read for one that is missing: 1 for a jump and for the first few behind it, then
  /// doubling up to PageFile::kGroup.
  std::size_t CountFor(PageNumber page);
  /// `count` pages from `first` on were read.
  void Note(PageNumber first, std::size_t count);

 private:
  std::size_t count_ = 1;
  std::size_t run_ = 0;  ///< reads since the last jump
  std::uint64_t next_ = 1;
};

}  // namespace zent::jet
