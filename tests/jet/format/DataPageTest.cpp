#include <gtest/gtest.h>

#include <random>

#include "HexBytes.h"
#include "jet/format/DataPage.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

constexpr JetVersion kVersion = JetVersion::Jet4;
constexpr std::uint32_t kOwner = 27;

std::vector<std::uint8_t> NewPage(JetVersion version = kVersion) {
  std::vector<std::uint8_t> page(LayoutOf(version).page_size, 0xCC);
  InitDataPage(version, kOwner, page);
  return page;
}

std::optional<std::uint8_t> Insert(std::vector<std::uint8_t>& page, std::string_view row,
                                   bool reuse = false) {
  return InsertRow(kVersion, page, AsBytes(row), SlotKind::Row, reuse);
}

std::string RowAt(const std::vector<std::uint8_t>& page, std::size_t row) {
  const Result<Slot> slot = DataPageView::Open(kVersion, page, 1).value().At(row);
  EXPECT_TRUE(slot.ok());
  return std::string(AsText(slot.value().bytes));
}

TEST(DataPage, IsEmptyAtFirst) {
  for (const JetVersion version : {JetVersion::Jet3, JetVersion::Jet4}) {
    const std::vector<std::uint8_t> page = NewPage(version);
    const Result<DataPageView> view = DataPageView::Open(version, page, 1);
    ASSERT_TRUE(view.ok());
    EXPECT_EQ(view.value().count(), 0U);
    EXPECT_EQ(view.value().owner(), kOwner);
    EXPECT_EQ(view.value().free_space(), page.size() - LayoutOf(version).data.directory);
    EXPECT_TRUE(CheckDataPage(version, page, 1).ok());
    EXPECT_TRUE(HasNoRows(version, page));
  }
}

// The page of a real table with three rows, byte for byte.
TEST(DataPage, IsFilledAsTheApplicationFillsIt) {
  std::vector<std::uint8_t> page = NewPage();
  const char* const rows[] = {"02 00 00 00 00 00 FF FE 66 6F 6F 30 0C 00 06 00 01 00 03",
                              "02 00 01 00 00 00 FF FE 66 6F 6F 31 0C 00 06 00 01 00 03",
                              "02 00 02 00 00 00 FF FE 66 6F 6F 32 0C 00 06 00 01 00 03"};
  for (const char* row : rows) ASSERT_TRUE(Insert(page, Hex(row)));
  EXPECT_EQ(ToHex(AsText(ByteView(page).first(20))),
            "01 01 B3 0F 1B 00 00 00 00 00 00 00 03 00 ED 0F DA 0F C7 0F");
  EXPECT_EQ(ToHex(AsText(ByteView(page).subspan(0xFC7, 19))), rows[2]);
  EXPECT_EQ(ToHex(AsText(ByteView(page).subspan(0xFED, 19))), rows[0]);
}

TEST(DataPage, ReplacesARowAndMovesThoseBelow) {
  std::vector<std::uint8_t> page = NewPage();
  for (const char* row : {"first", "second", "third"}) ASSERT_TRUE(Insert(page, row));
  ASSERT_TRUE(ReplaceRow(kVersion, page, 1, AsBytes("a much longer one"), SlotKind::Row));
  EXPECT_EQ(RowAt(page, 0), "first");
  EXPECT_EQ(RowAt(page, 1), "a much longer one");
  EXPECT_EQ(RowAt(page, 2), "third");
  EXPECT_TRUE(CheckDataPage(kVersion, page, 1).ok());
  ASSERT_TRUE(ReplaceRow(kVersion, page, 0, AsBytes(""), SlotKind::Row));
  EXPECT_EQ(RowAt(page, 1), "a much longer one");
  EXPECT_EQ(RowAt(page, 2), "third");
  EXPECT_TRUE(CheckDataPage(kVersion, page, 1).ok());
}

struct KindCase {
  const char* what;
  SlotKind kind;
  std::uint8_t flags;
};

constexpr KindCase kKinds[] = {{"a row", SlotKind::Row, 0x00},
                               {"a pointer to a row", SlotKind::Pointer, 0x40},
                               {"a row that has moved", SlotKind::Moved, 0x80},
                               {"a deleted row", SlotKind::Deleted, 0xC0}};

TEST(DataPage, TellsTheKindOfASlot) {
  for (const KindCase& row : kKinds) {
    SCOPED_TRACE(row.what);
    std::vector<std::uint8_t> page = NewPage();
    ASSERT_TRUE(InsertRow(kVersion, page, AsBytes("row"), row.kind, false));
    EXPECT_EQ(page[15] & 0xC0, row.flags);
    EXPECT_EQ(DataPageView::Open(kVersion, page, 1).value().At(0).value().kind, row.kind);
  }
}

TEST(DataPage, KeepsTheSlotsOfDeletedRows) {
  std::vector<std::uint8_t> page = NewPage();
  const std::size_t empty = RoomForRow(kVersion, page, false);
  for (const char* row : {"first", "second", "third"}) ASSERT_TRUE(Insert(page, row));
  DeleteRow(kVersion, page, 1);
  EXPECT_EQ(RowAt(page, 1), "");
  EXPECT_EQ(RowAt(page, 2), "third");
  EXPECT_FALSE(HasNoRows(kVersion, page));
  EXPECT_EQ(Insert(page, "fourth"), std::uint8_t{3});
  EXPECT_EQ(Insert(page, "fifth", true), std::uint8_t{1});
  EXPECT_EQ(RowAt(page, 1), "fifth");
  EXPECT_EQ(RowAt(page, 3), "fourth");
  for (std::uint8_t row = 0; row < 4; ++row) DeleteRow(kVersion, page, row);
  EXPECT_TRUE(HasNoRows(kVersion, page));
  EXPECT_EQ(RoomForRow(kVersion, page, true), empty + 2 - 8);
  EXPECT_TRUE(CheckDataPage(kVersion, page, 1).ok());
}

TEST(DataPage, IsFullToTheByte) {
  std::vector<std::uint8_t> page = NewPage();
  const std::size_t room = RoomForRow(kVersion, page, false);
  EXPECT_EQ(room, 4096U - 14 - 2);
  const std::vector<std::uint8_t> before = page;
  EXPECT_FALSE(Insert(page, std::string(room + 1, 'x')));
  EXPECT_EQ(page, before);
  EXPECT_TRUE(Insert(page, std::string(room, 'x')));
  EXPECT_EQ(RoomForRow(kVersion, page, false), 0U);
  EXPECT_FALSE(Insert(page, ""));
  EXPECT_FALSE(ReplaceRow(kVersion, page, 0, AsBytes(std::string(room + 1, 'y')), SlotKind::Row));
  EXPECT_EQ(RowAt(page, 0), std::string(room, 'x'));
}

TEST(DataPage, HasAtMost255Slots) {
  std::vector<std::uint8_t> page = NewPage();
  for (int i = 0; i < 255; ++i) ASSERT_TRUE(Insert(page, "r"));
  EXPECT_FALSE(Insert(page, "r"));
  EXPECT_EQ(RoomForRow(kVersion, page, false), 0U);
  DeleteRow(kVersion, page, 100);
  EXPECT_FALSE(Insert(page, "s"));
  EXPECT_EQ(Insert(page, "s", true), std::uint8_t{100});
  EXPECT_TRUE(CheckDataPage(kVersion, page, 1).ok());
}

struct DamageCase {
  const char* what;
  std::size_t at;
  std::uint8_t byte;
};

constexpr DamageCase kDamage[] = {
    {"another type", 0, 2},
    {"too many rows", 13, 0xFF},
    {"256 rows", 13, 1},
    {"a start within the directory", 15, 0x00},
    {"rows that run backwards", 17, 0x0F},
    {"a start behind the page", 15, 0x1F},
    {"a free space that lies", 2, 0x77},
};

TEST(CheckDataPage, FindsDamage) {
  for (const DamageCase& row : kDamage) {
    SCOPED_TRACE(row.what);
    std::vector<std::uint8_t> page = NewPage();
    ASSERT_TRUE(Insert(page, std::string(300, 'a')));
    ASSERT_TRUE(Insert(page, "second"));
    page[row.at] = row.byte;
    if (row.at == 17) page[16] = 0xFF;
    const Status checked = CheckDataPage(kVersion, page, 33);
    ASSERT_EQ(checked.number(), kCannotOpenDatabase);
    EXPECT_NE(checked.error().description.find("page 33"), std::string::npos);
  }
  EXPECT_EQ(CheckDataPage(kVersion, ByteView(NewPage()).first(0), 1).number(), kCannotOpenDatabase);
}

TEST(DataPageView, HasNoRowBehindTheLast) {
  std::vector<std::uint8_t> page = NewPage();
  ASSERT_TRUE(Insert(page, "row"));
  const DataPageView view = DataPageView::Open(kVersion, page, 1).value();
  EXPECT_TRUE(view.At(0).ok());
  EXPECT_EQ(view.At(1).number(), kCannotOpenDatabase);
  Slot slot;
  EXPECT_FALSE(view.Read(1, slot));
}

// A page and a list of rows go the same way through many random steps.
TEST(DataPage, AgreesWithAModel) {
  std::mt19937 random(7);
  std::vector<std::uint8_t> page = NewPage();
  std::vector<std::optional<std::string>> model;
  for (int step = 0; step < 3000; ++step) {
    const std::string row(random() % 120, static_cast<char>('a' + step % 26));
    const std::size_t at = model.empty() ? 0 : random() % model.size();
    switch (random() % 3) {
      case 0:
        if (const auto slot = Insert(page, row, true); slot) {
          if (*slot == model.size()) model.emplace_back();
          ASSERT_FALSE(model[*slot].has_value());
          model[*slot] = row;
        }
        break;
      case 1:
        if (!model.empty() && model[at] &&
            ReplaceRow(kVersion, page, static_cast<std::uint8_t>(at), AsBytes(row),
                       SlotKind::Row)) {
          model[at] = row;
        }
        break;
      default:
        if (model.empty() || !model[at]) break;
        DeleteRow(kVersion, page, static_cast<std::uint8_t>(at));
        model[at].reset();
        break;
    }
    ASSERT_TRUE(CheckDataPage(kVersion, page, 1).ok());
  }
  for (std::size_t i = 0; i < model.size(); ++i) EXPECT_EQ(RowAt(page, i), model[i].value_or(""));
}

}  // namespace
}  // namespace zent::jet
