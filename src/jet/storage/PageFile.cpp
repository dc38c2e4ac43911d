#include "jet/storage/PageFile.h"

#include <algorithm>

#include "jet/format/JetErrors.h"
#include "jet/format/Rc4.h"
#include "jet/storage/StorageErrors.h"

namespace zent::jet {
namespace {

// A scan passes over a few pages of other tables without ceasing to be one.
constexpr std::uint64_t kGap = 8;
// A search down a tree may go upwards through the file by chance, and wants no page but its own.
constexpr std::size_t kSearch = 6;

}  // namespace

PageFile::PageFile(StoredFile& file, std::size_t page_size, std::uint32_t database_key,
                   PagerCounters& counters)
    : file_(file),
      page_size_(page_size),
      key_(database_key),
      counters_(counters),
      buffer_(kGroup * page_size) {}

void PageFile::Crypt(PageNumber page, MutableBytes bytes) const { CryptPage(key_, page, bytes); }

Status PageFile::Read(std::span<PageFrame* const> frames) {
  const PageNumber first = frames.front()->page;
  // One page goes where it belongs, several by way of the buffer.
  const MutableBytes target = frames.size() == 1
                                  ? MutableBytes(frames.front()->bytes.get(), page_size_)
                                  : MutableBytes(buffer_).first(frames.size() * page_size_);
  const Result<std::size_t> got = file_.ReadAt(std::uint64_t{first} * page_size_, target);
  if (!got.ok()) return FileError(got.error());
  ++counters_.read_calls;
  if (got.value() < target.size()) {
    return Damaged(first + static_cast<PageNumber>(got.value() / page_size_),
                   "the file ends before this page does");
  }
  counters_.pages_read += frames.size();
  for (std::size_t i = 0; i < frames.size(); ++i) {
    PageFrame& frame = *frames[i];
    if (frames.size() > 1) {
      std::copy_n(target.begin() + static_cast<std::ptrdiff_t>(i * page_size_), page_size_,
                  frame.bytes.get());
    }
    Crypt(frame.page, {frame.bytes.get(), page_size_});
  }
  return {};
}

Status PageFile::Write(std::span<PageFrame* const> frames, const StampBytes& stamp) {
  const PageNumber first = frames.front()->page;
  const MutableBytes bytes = MutableBytes(buffer_).first(frames.size() * page_size_);
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const MutableBytes page = bytes.subspan(i * page_size_, page_size_);
    std::copy_n(frames[i]->bytes.get(), page_size_, page.begin());
    Crypt(frames[i]->page, page);
  }
  if (first == 0) std::copy(stamp.begin(), stamp.end(), bytes.begin() + kStampOffset);
  Status wrote = file_.WriteAt(std::uint64_t{first} * page_size_, bytes);
  if (!wrote.ok()) return AsFileStatus(wrote);
  ++counters_.write_calls;
  counters_.pages_written += frames.size();
  return {};
}

ByteView PageFile::Stored(const PageFrame& frame) {
  const MutableBytes bytes = MutableBytes(buffer_).first(page_size_);
  std::copy_n(frame.bytes.get(), page_size_, bytes.begin());
  Crypt(frame.page, bytes);
  return bytes;
}

Result<ByteView> PageFile::ReadStored(PageNumber page) {
  const MutableBytes bytes = MutableBytes(buffer_).first(page_size_);
  const Result<std::size_t> got = file_.ReadAt(std::uint64_t{page} * page_size_, bytes);
  if (!got.ok()) return FileError(got.error());
  if (got.value() < page_size_) return Damaged(page, "the file ends before this page does");
  return ByteView(bytes);
}

std::size_t ReadAhead::CountFor(PageNumber page) {
  const bool onwards = page >= next_ && page - next_ <= kGap;
  run_ = onwards ? run_ + 1 : 0;
  count_ = run_ < kSearch ? 1 : std::min(2 * count_, PageFile::kGroup);
  return count_;
}

void ReadAhead::Note(PageNumber first, std::size_t count) { next_ = std::uint64_t{first} + count; }

}  // namespace zent::jet
