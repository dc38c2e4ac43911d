#include "jet/fakes/TestDatabase.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "jet/format/FileHeader.h"
#include "jet/format/Rc4.h"

namespace zent::jet::testing {
namespace {

constexpr PageNumber kPages = 40;
constexpr std::size_t kSmallCache = 16;
constexpr std::size_t kPasswordAt = 0x42;

/// Does `step` for first .. last as long as it succeeds.
Status ForEach(PageNumber first, PageNumber last, const std::function<Status(PageNumber)>& step) {
  for (PageNumber page = first; page <= last; ++page) {
    if (Status done = step(page); !done.ok()) return done;
  }
  return {};
}

Status ChangePages(Pager& pager) {
  for (const PageNumber page : {PageNumber{20}, PageNumber{3}, PageNumber{7}, PageNumber{8}}) {
    if (Status done = FillPage(pager, page, 0xA1, 700); !done.ok()) return done;
  }
  return FillPage(pager, 3, 0xA2, 2000);
}

Status AddPages(Pager& pager) {
  if (Status done = FillPage(pager, 1, 0xB1); !done.ok()) return done;
  return ForEach(0, 4, [&](PageNumber) { return AddPage(pager, 0xB2); });
}

Status CutPages(Pager& pager) {
  Result<PageEdit> header = pager.Edit(0);
  if (!header.ok()) return header.error();
  header.value().bytes()[kPasswordAt] ^= 0x55;
  if (Status done = FillPage(pager, 2, 0xC1); !done.ok()) return done;
  return pager.Shrink(25);
}

Status ChangeMoreThanTheCache(Pager& pager) {
  const auto change = [&](PageNumber page) { return FillPage(pager, page, 0xD1, 8); };
  if (Status done = ForEach(1, 24, change); !done.ok()) return done;
  if (Status done = ForEach(0, 29, [&](PageNumber) { return AddPage(pager, 0xD2); }); !done.ok()) {
    return done;
  }
  Result<PageEdit> header = pager.Edit(0);
  if (!header.ok()) return header.error();
  header.value().bytes()[kPasswordAt] ^= 0x66;
  return ForEach(1, 10, [&](PageNumber page) { return FillPage(pager, page, 0xD3, 4000); });
}

Status CutAndAddAgain(Pager& pager) {
  if (Status done = pager.Shrink(10); !done.ok()) return done;
  if (Status done = ForEach(0, 29, [&](PageNumber) { return AddPage(pager, 0xE1); }); !done.ok()) {
    return done;
  }
  if (Status done = pager.Shrink(30); !done.ok()) return done;
  return FillPage(pager, 29, 0xE2, 50);
}

}  // namespace

std::uint8_t FirstByte(PageNumber page) { return static_cast<std::uint8_t>(page * 7 + 1); }

std::string MakeDatabase(PageNumber pages, std::uint32_t key) {
  std::string bytes(pages * kPage, '\0');
  const MutableBytes all(reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size());
  FileHeader header;
  header.database_key = key;
  header.creation_date.days = 38135.25;
  EXPECT_TRUE(WriteFileHeader(header, all.first(kPage)).ok());
  for (PageNumber page = 1; page < pages; ++page) {
    const MutableBytes at = all.subspan(page * kPage, kPage);
    std::fill(at.begin(), at.end(), FirstByte(page));
    CryptPage(key, page, at);
  }
  return bytes;
}

std::string MakeJet3Database(PageNumber pages) {
  std::string bytes(pages * kPage / 2, '\x33');
  const std::string start = MakeDatabase(1).substr(0, kPage / 2);
  bytes.replace(0, start.size(), start);
  bytes[0x14] = 0;
  return bytes;
}

PagerOptions Opened(Sharing sharing, std::size_t cache_pages) {
  PagerOptions options;
  options.sharing = sharing;
  options.user = {.computer = "PC1", .name = "Admin"};
  options.cache_bytes = cache_pages * kPage;
  options.lock_attempts = 3;
  return options;
}

Status FillPage(Pager& pager, PageNumber page, std::uint8_t value, std::size_t from) {
  Result<PageEdit> edit = pager.Edit(page);
  if (!edit.ok()) return edit.error();
  const MutableBytes bytes = edit.value().bytes().subspan(from);
  std::fill(bytes.begin(), bytes.end(), value);
  return {};
}

Status AddPage(Pager& pager, std::uint8_t value) {
  Result<PageEdit> edit = pager.Append();
  if (!edit.ok()) return edit.error();
  std::fill(edit.value().bytes().begin(), edit.value().bytes().end(), value);
  return {};
}

std::uint8_t ByteOf(Pager& pager, PageNumber page, std::size_t at) {
  const Result<PageView> view = pager.Read(page);
  EXPECT_TRUE(view.ok()) << view.error().description;
  return view.ok() ? view.value().bytes()[at] : std::uint8_t{0};
}

const std::vector<Change>& SampleChanges() {
  static const std::vector<Change> changes = {
      {"pages are changed", ChangePages},
      {"pages are added", AddPages},
      {"pages are cut off, page 0 is changed", CutPages},
      {"more than the cache holds is changed and added", ChangeMoreThanTheCache},
      {"pages are cut off and others added", CutAndAddAgain},
  };
  return changes;
}

Status MakeChanges(Storage& storage, std::string_view path, std::size_t count,
                   std::size_t& committed) {
  committed = 0;
  Result<std::unique_ptr<Pager>> opened =
      Pager::Open(storage, path, Opened(Sharing::Exclusive, kSmallCache));
  if (!opened.ok()) return opened.error();
  Pager& pager = *opened.value();
  for (; committed < count; ++committed) {
    PageTransaction transaction(pager);
    if (!transaction.status().ok()) return transaction.status();
    if (Status made = SampleChanges()[committed].make(pager); !made.ok()) return made;
    if (Status done = transaction.Commit(); !done.ok()) return done;
  }
  return {};
}

std::vector<std::string> SampleStates() {
  std::vector<std::string> states = {MakeDatabase(kPages)};
  for (std::size_t count = 1; count <= SampleChanges().size(); ++count) {
    MemoryStorage storage;
    storage.Put(kPath, states.front());
    std::size_t committed = 0;
    const Status made = MakeChanges(storage, kPath, count, committed);
    EXPECT_TRUE(made.ok()) << made.error().description;
    states.push_back(storage.Bytes(kPath));
  }
  return states;
}

}  // namespace zent::jet::testing
