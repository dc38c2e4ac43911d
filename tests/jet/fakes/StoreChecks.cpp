#include "jet/fakes/StoreChecks.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "jet/format/DataPage.h"

namespace zent::jet::testing {

std::vector<PageNumber> ExpectRightRowPages(StoreFile& file, const RowPages::Owner& owner) {
  std::vector<PageNumber> owned = file.maps().Pages(owner.owned).value_or({});
  const std::vector<PageNumber> free = file.maps().Pages(owner.free).value_or({});
  EXPECT_TRUE(std::includes(owned.begin(), owned.end(), free.begin(), free.end()));
  for (const PageNumber page : owned) {
    SCOPED_TRACE(page);
    const Result<PageView> view = file.pager().Read(page);
    EXPECT_TRUE(view.ok());
    const ByteView bytes = view.value().bytes();
    const Status checked = CheckDataPage(JetVersion::Jet4, bytes, page);
    EXPECT_TRUE(checked.ok()) << checked.error().description;
    EXPECT_FALSE(HasNoRows(JetVersion::Jet4, bytes));
    const Result<DataPageView> data = DataPageView::Open(JetVersion::Jet4, bytes, page);
    EXPECT_EQ(data.value().owner(), owner.number);
    const bool has_room = data.value().free_space() >= 512 &&
                          RoomForRow(JetVersion::Jet4, bytes, owner.reuses_slots) > 0;
    EXPECT_EQ(std::binary_search(free.begin(), free.end(), page), has_room);
  }
  return owned;
}

void ExpectAllPagesNamed(StoreFile& file, const std::set<PageNumber>& named) {
  std::vector<PageNumber> used = file.UsedPages();
  std::erase_if(used, [&](PageNumber page) {
    const Result<PageView> view = file.pager().Read(page);
    return view.ok() && view.value().bytes()[0] == 5 && !named.contains(page);
  });
  EXPECT_EQ(used, std::vector<PageNumber>(named.begin(), named.end()));
}

std::string SampleBytes(std::size_t count, unsigned seed) {
  std::string bytes(count, '\0');
  for (std::size_t i = 0; i < count; ++i) {
    bytes[i] = static_cast<char>((i * 31 + std::size_t{seed} * 17 + (i >> 8U)) & 0xFFU);
  }
  return bytes;
}

}  // namespace zent::jet::testing
