#include <gtest/gtest.h>

#include <algorithm>

#include "HexBytes.h"
#include "SampleFile.h"
#include "jet/format/DataPage.h"
#include "jet/format/DefinitionPages.h"
#include "jet/format/IndexKey.h"
#include "jet/format/IndexPage.h"
#include "jet/format/JetErrors.h"
#include "jet/format/PropertyBlob.h"
#include "jet/format/ValueCodec.h"
#include "jet/samples/SamplePaths.h"

// What the functions over pages promise, on every table of every real file that the build was
// given.

namespace zent::jet {
namespace {

// The first eight bytes are those of the page: the next test has them.
constexpr std::size_t kHeadText = std::string_view("00 ").size() * 8;

class Samples : public ::testing::TestWithParam<std::filesystem::path> {
 protected:
  Samples() : file_(GetParam()) {}
  void ForEachTable(const std::function<void(PageNumber, const TableDefinition&)>& visit) {
    const std::vector<PageNumber> tables = file_.Tables();
    EXPECT_GE(tables.size(), 4U);
    for (const PageNumber page : tables) {
      SCOPED_TRACE("table at page " + std::to_string(page));
      visit(page, file_.Definition(page));
    }
  }
  SampleFile file_;
};

TEST_P(Samples, HaveNoPasswordAndTheirCollationIsKnown) {
  EXPECT_TRUE(CheckPassword(file_.header(), "").ok());
  EXPECT_EQ(CheckPassword(file_.header(), "x").number(), kInvalidPassword);
  EXPECT_EQ(file_.header().collation, kGeneralLegacy);
  EXPECT_EQ(file_.header().code_page, 1252);
}

TEST_P(Samples, DefinitionsAreWrittenAsTheyWereRead) {
  ForEachTable([&](PageNumber page, const TableDefinition& table) {
    const std::string read = ToHex(AsText(file_.DefinitionStream(page)));
    const std::string written = ToHex(AsText(SerialiseTableDefinition(table)));
    EXPECT_EQ(written.substr(kHeadText), read.substr(kHeadText));
  });
}

TEST_P(Samples, DefinitionPagesAreWrittenAsTheyWereRead) {
  ForEachTable([&](PageNumber first, const TableDefinition& table) {
    const std::vector<std::uint8_t> stream = SerialiseTableDefinition(table);
    const std::vector<PageNumber> pages = file_.DefinitionPages(first);
    ASSERT_EQ(pages.size(), DefinitionPageCount(file_.version(), stream.size()));
    std::vector<std::uint8_t> written(LayoutOf(file_.version()).page_size);
    for (std::size_t i = 0; i < pages.size(); ++i) {
      const PageNumber next = i + 1 < pages.size() ? pages[i + 1] : 0;
      WriteDefinitionPage(file_.version(), stream, i, next, written);
      // What lies behind the definition is not cleared by the application.
      const std::size_t used =
          i + 1 < pages.size() ? written.size()
                               : DefinitionPlaceOf(file_.version(), stream.size() - 1).offset + 1;
      EXPECT_EQ(ToHex(AsText(ByteView(written).first(used))),
                ToHex(AsText(file_.Page(pages[i]).first(used))));
    }
  });
}

TEST_P(Samples, DataPagesKeepTheirAccounts) {
  ForEachTable([&](PageNumber, const TableDefinition& table) {
    for (const PageNumber page : file_.PagesOf(table.owned_map)) {
      const Status checked = CheckDataPage(file_.version(), file_.Page(page), page);
      EXPECT_TRUE(checked.ok()) << checked.error().description;
    }
  });
}

TEST_P(Samples, FieldsAreEncodedAsTheyWereRead) {
  if (file_.version() == JetVersion::Jet3) return;  // read only
  ForEachTable([&](PageNumber page, const TableDefinition& table) {
    file_.ForEachRow(table, [&](RowPointer at, const RowView& row) {
      for (const ColumnDefinition& column : table.columns) {
        ByteView bytes;
        if (column.type == ColumnType::Bool || IsLong(column.type) ||
            row.Field(column, bytes) != RowView::FieldState::Present) {
          continue;
        }
        const Result<Value> value = DecodeField(file_.version(), column, bytes, page);
        ASSERT_TRUE(value.ok());
        std::string encoded;
        ASSERT_TRUE(EncodeField(column, value.value(), encoded).ok()) << column.name;
        // Texts that were written before a column was compressed are plain.
        const Result<Value> again = DecodeField(file_.version(), column, AsBytes(encoded), page);
        ASSERT_TRUE(again.ok());
        EXPECT_EQ(again.value(), value.value()) << column.name << " row " << int{at.row};
        EXPECT_TRUE(IsText(column.type) || encoded == AsText(bytes)) << column.name;
      }
    });
  });
}

TEST_P(Samples, PropertiesAreWrittenAsTheyWereRead) {
  const TableDefinition catalog = file_.Definition(kObjectsPage);
  std::size_t blobs = 0;
  for (const ColumnDefinition& column : catalog.columns) {
    if (column.name != "LvProp") continue;
    file_.ForEachRow(catalog, [&](RowPointer, const RowView& row) {
      const Value value = file_.FieldOf(catalog, column, row);
      if (IsNull(value)) return;
      const std::string& bytes = std::get<Binary>(value).bytes;
      const Result<PropertyBlob> blob = ParsePropertyBlob(file_.version(), AsBytes(bytes), 0);
      ASSERT_TRUE(blob.ok()) << blob.error().description;
      const Result<std::string> again = SerialisePropertyBlob(file_.version(), blob.value());
      ASSERT_TRUE(again.ok());
      EXPECT_EQ(ToHex(again.value()), ToHex(bytes));
      ++blobs;
    });
  }
  RecordProperty("blobs", static_cast<int>(blobs));
}

/// The entries that an index must hold, computed from the rows.
std::vector<SampleFile::Entry> ComputedEntries(const SampleFile& file, const TableDefinition& table,
                                               const RealIndex& index) {
  const Result<std::vector<KeyColumn>> columns = KeyColumnsOf(table, index);
  EXPECT_TRUE(columns.ok());
  std::vector<SampleFile::Entry> entries;
  file.ForEachRow(table, [&](RowPointer at, const RowView& row) {
    std::vector<Value> values;
    for (const IndexColumn& part : index.columns) {
      values.push_back(file.FieldOf(table, *table.ColumnOf(part.column), row));
    }
    if (index.IgnoresNulls() && std::all_of(values.begin(), values.end(), IsNull)) return;
    const Result<std::string> key = IndexKey(columns.value(), values);
    ASSERT_TRUE(key.ok()) << key.error().description;
    entries.push_back({key.value(), at});
  });
  std::sort(entries.begin(), entries.end());
  return entries;
}

TEST_P(Samples, KeysOfEveryIndexAreThoseOfTheRows) {
  ForEachTable([&](PageNumber, const TableDefinition& table) {
    for (const RealIndex& index : table.real_indexes) {
      SCOPED_TRACE("index at page " + std::to_string(index.root));
      const std::vector<SampleFile::Entry> stored = file_.EntriesOf(index.root);
      const std::vector<SampleFile::Entry> computed = ComputedEntries(file_, table, index);
      ASSERT_EQ(stored.size(), computed.size());
      for (std::size_t i = 0; i < stored.size(); ++i) {
        ASSERT_EQ(ToHex(stored[i].key), ToHex(computed[i].key)) << "entry " << i;
        ASSERT_EQ(stored[i].row.packed(), computed[i].row.packed()) << "entry " << i;
      }
    }
  });
}

TEST_P(Samples, IndexPagesAreBuiltAsTheyWereRead) {
  ForEachTable([&](PageNumber, const TableDefinition& table) {
    for (const RealIndex& index : table.real_indexes) {
      for (const PageNumber number : file_.PagesOf(index.map)) {
        const ByteView page = file_.Page(number);
        const Result<IndexPageView> view = IndexPageView::Open(file_.version(), page, number);
        ASSERT_TRUE(view.ok()) << view.error().description;
        EXPECT_EQ(view.value().free_space(), IndexPageRoom(file_.version()) - view.value().used());
        const IndexPage content = view.value().Load();
        std::vector<std::uint8_t> built(page.size());
        ASSERT_TRUE(BuildIndexPage(file_.version(), content, built)) << "page " << number;
        const Result<IndexPageView> again = IndexPageView::Open(file_.version(), built, number);
        ASSERT_TRUE(again.ok());
        EXPECT_EQ(again.value().Load(), content);
      }
    }
  });
}

INSTANTIATE_TEST_SUITE_P(, Samples, ::testing::ValuesIn(testing::SamplePaths()),
                         [](const auto& file) { return testing::TestNameOf(file.param); });

}  // namespace
}  // namespace zent::jet
