#pragma once

#include <vector>

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/format/Layout.h"

/// The chain of pages that a definition lies on. Its stream is the first page whole and each
/// further page without its head of eight bytes.
namespace zent::jet {

/// Joins a chain page by page:
///   DefinitionJoiner joiner(version);
///   for (PageNumber page = first; !joiner.complete(); page = joiner.next()) joiner.Add(page, ...)
/// It ends for every input: the first page tells the length, and a page that adds nothing is
/// damage.
class DefinitionJoiner {
 public:
  explicit DefinitionJoiner(JetVersion version) : layout_(LayoutOf(version)) {}

  Status Add(PageNumber number, ByteView page);
  bool complete() const { return length_ != 0 && stream_.size() >= length_; }
  /// The page to add next.
  PageNumber next() const { return next_; }
  /// The definition, `length` bytes, once complete.
  ByteView stream() const { return ByteView(stream_).first(length_); }

 private:
  const Layout& layout_;
  std::vector<std::uint8_t> stream_;
  std::size_t length_ = 0;
  PageNumber next_ = 0;
};

/// Number of pages that a stream of `length` bytes takes.
std::size_t DefinitionPageCount(JetVersion version, std::size_t length);

/// Where byte `offset` of the stream lies: the page of the chain (from 0) and the place in it.
struct DefinitionPlace {
  std::size_t page = 0;
  std::size_t offset = 0;
};
DefinitionPlace DefinitionPlaceOf(JetVersion version, std::size_t offset);

/// Writes the `index`-th page of the chain of `stream` into `page`; `next` is the page after it.
/// Bytes behind the definition are zero.
void WriteDefinitionPage(JetVersion version, ByteView stream, std::size_t index, PageNumber next,
                         MutableBytes page);

}  // namespace zent::jet
