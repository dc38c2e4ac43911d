#include "jet/fakes/CatalogFile.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/CaseFold.h"

namespace zent::jet::testing {
namespace {

constexpr std::uint16_t kText = 510;

std::unique_ptr<TableStore> MakeObjects(StoreFile& file, CatalogFile::Indexes index) {
  TableBuilder table(file);
  table.At(kObjectsPage)
      .Column("Id", ColumnType::Long)
      .Column("ParentId", ColumnType::Long)
      .Column("Name", ColumnType::Text, kText)
      .Column("Type", ColumnType::Int)
      .Column("DateCreate", ColumnType::Date)
      .Column("DateUpdate", ColumnType::Date)
      .Column("Flags", ColumnType::Long)
      .Column("Database", ColumnType::Memo)
      .Column("Connect", ColumnType::Memo)
      .Column("ForeignName", ColumnType::Text, kText)
      .Column("LvProp", ColumnType::Ole);
  const bool unique = index != CatalogFile::Indexes::NotUnique;
  const std::uint8_t flags = unique ? kUniqueIndex : std::uint8_t{0};
  table.Index({1, 2}, flags).Index({0}, flags, unique);
  return table.Build();
}

/// Another sort order for the names: their index cannot be searched any more.
void ForgetOrder(StoreFile& file) {
  TableDefinition table = ReadDefinition(file.pager(), kObjectsPage).value().table;
  table.columns[2].details = {0x1D, 0x04, 0, 0};
  WriteSmallDefinition(file, kObjectsPage, table);
}

std::unique_ptr<TableStore> MakeRelationships(StoreFile& file) {
  return TableBuilder(file)
      .At(kRelationshipsPage)
      .Column("szRelationship", ColumnType::Text, kText)
      .Column("grbit", ColumnType::Long)
      .Column("ccolumn", ColumnType::Long)
      .Column("icolumn", ColumnType::Long)
      .Column("szObject", ColumnType::Text, kText)
      .Column("szColumn", ColumnType::Text, kText)
      .Column("szReferencedObject", ColumnType::Text, kText)
      .Column("szReferencedColumn", ColumnType::Text, kText)
      .Index({0}, kIgnoreNullsIndex)
      .Build();
}

std::uint16_t NumberOf(const TableDefinition& table, const std::string& column) {
  for (const ColumnDefinition& one : table.columns) {
    if (SameName(one.name, column)) return one.number;
  }
  ADD_FAILURE() << "no column " << column;
  return 0;
}

/// The two sides of a relationship, while their definitions are being changed.
struct Side {
  PageNumber page = 0;
  TableDefinition table;
  LogicalIndex index;
};

Side OpenSide(StoreFile& file, Table& table, const Relationship& relationship) {
  Side side{.page = table.store().page(),
            .table = ReadDefinition(file.pager(), table.store().page()).value().table,
            .index = {}};
  side.index.number = static_cast<std::uint32_t>(side.table.logical_indexes.size());
  side.index.kind = IndexKind::Foreign;
  side.index.cascade_updates = relationship.cascades_updates() ? 1 : 0;
  side.index.cascade_deletes = relationship.cascades_deletes()      ? 1
                               : relationship.sets_null_on_delete() ? 2
                                                                    : 0;
  return side;
}

void AddReferringIndex(StoreFile& file, Side& many, const Relationship& relationship) {
  RealIndex real;
  for (const auto& [referring, referenced] : relationship.columns) {
    real.columns.push_back({.column = NumberOf(many.table, referring)});
  }
  real.map = file.NewMap();
  real.root = IndexTree::Create(file.maps(), many.page, real.map).value().place().root;
  many.index.name = relationship.name;
  many.index.real = static_cast<std::uint32_t>(many.table.real_indexes.size());
  many.index.side = ForeignSide::Referring;
  many.table.real_indexes.push_back(std::move(real));
}

void ShareReferencedIndex(Side& one, const Relationship& relationship) {
  std::vector<std::uint16_t> wanted;
  for (const auto& [referring, referenced] : relationship.columns) {
    wanted.push_back(NumberOf(one.table, referenced));
  }
  const auto over = [&](const RealIndex& real) {
    return std::equal(real.columns.begin(), real.columns.end(), wanted.begin(), wanted.end(),
                      [](const IndexColumn& a, std::uint16_t b) { return a.column == b; });
  };
  const auto found =
      std::find_if(one.table.real_indexes.begin(), one.table.real_indexes.end(), over);
  ASSERT_NE(found, one.table.real_indexes.end());
  one.index.name = ".r" + relationship.name;
  one.index.real = static_cast<std::uint32_t>(found - one.table.real_indexes.begin());
  one.index.side = ForeignSide::Referenced;
}

}  // namespace

std::string PropertyBytes(const std::vector<GivenProperty>& properties) {
  PropertyBlob blob;
  for (const GivenProperty& given : properties) {
    Result<Property> made = MakeProperty(given.name, given.type, true, given.value);
    EXPECT_TRUE(made.ok()) << made.error().description;
    blob.SetOf(given.column).Set(made.value());
  }
  return SerialisePropertyBlob(JetVersion::Jet4, blob).value_or("");
}

CatalogFile::CatalogFile(Indexes index) {
  objects_ = MakeObjects(file_, index);
  relationships_ = MakeRelationships(file_);
  const auto own = [&](std::string name, std::int32_t id, std::int32_t parent, ObjectType type) {
    Add({.name = std::move(name),
         .type = type,
         .id = id,
         .flags = kSystemObject,
         .parent = parent});
  };
  own("Tables", kTablesId, kRootId, ObjectType::Container);
  own("Databases", kDatabasesId, kRootId, ObjectType::Container);
  own("Relationships", kRelationshipsId, kRootId, ObjectType::Container);
  own("MSysDb", kDatabaseId, kDatabasesId, ObjectType::Database);
  own("MSysObjects", static_cast<std::int32_t>(kObjectsPage), kTablesId, ObjectType::Table);
  own("MSysRelationships", static_cast<std::int32_t>(kRelationshipsPage), kTablesId,
      ObjectType::Table);
  if (index == Indexes::OfUnknownOrder) ForgetOrder(file_);
}

Catalog& CatalogFile::catalog() {
  if (!catalog_) {
    Result<std::unique_ptr<Catalog>> opened = Catalog::Open(file_.pager());
    EXPECT_TRUE(opened.ok()) << opened.error().description;
    catalog_ = std::move(opened.value());
  }
  return *catalog_;
}

Table& CatalogFile::table(std::string_view name) {
  const Result<Table*> table = catalog().OpenTable(name);
  EXPECT_TRUE(table.ok()) << table.error().description;
  return *table.value();
}

RowPointer CatalogFile::Add(const Object& object) {
  const std::int32_t id = object.id != 0 ? object.id : next_id_++;
  const auto or_null = [](const std::string& text) {
    return text.empty() ? Value(Null()) : Value(text);
  };
  std::vector<Value> row = {id,
                            object.parent,
                            object.name,
                            static_cast<std::int16_t>(object.type),
                            Date{36526},
                            Date{36527.5},
                            object.flags,
                            or_null(object.database),
                            or_null(object.connect),
                            Null(),
                            Null()};
  if (!object.properties.empty()) row.back() = Binary{object.properties};
  const Result<RowPointer> at = objects_->Insert(row);
  EXPECT_TRUE(at.ok()) << at.error().description;
  return at.value_or({});
}

PageNumber CatalogFile::AddTable(std::string name, TableBuilder& table,
                                 const std::vector<GivenProperty>& properties) {
  const PageNumber page = table.Write();
  const std::string bytes = properties.empty() ? std::string() : PropertyBytes(properties);
  Add({.name = std::move(name), .id = static_cast<std::int32_t>(page), .properties = bytes});
  return page;
}

void CatalogFile::Relate(const Relationship& relationship) {
  Side many = OpenSide(file_, table(relationship.table), relationship);
  AddReferringIndex(file_, many, relationship);
  // One table may be both sides: its definition is written after each.
  const auto write = [&](Side& side) {
    side.table.logical_indexes.push_back(side.index);
    WriteSmallDefinition(file_, side.page, side.table);
  };
  Side one = OpenSide(file_, table(relationship.referenced_table), relationship);
  const bool same = one.page == many.page;
  if (same) ++one.index.number;
  ShareReferencedIndex(one, relationship);
  many.index.other_table = one.page;
  many.index.partner = static_cast<std::int32_t>(one.index.number);
  one.index.other_table = many.page;
  one.index.partner = static_cast<std::int32_t>(many.index.number);
  write(many);
  if (same) one.table = many.table;
  write(one);
  for (std::size_t i = 0; i < relationship.columns.size(); ++i) {
    AddRelationshipRow({relationship.name, static_cast<std::int32_t>(relationship.flags),
                        static_cast<std::int32_t>(relationship.columns.size()),
                        static_cast<std::int32_t>(i), relationship.table,
                        relationship.columns[i].first, relationship.referenced_table,
                        relationship.columns[i].second});
  }
  catalog().Forget();
}

void CatalogFile::AddRelationshipRow(std::vector<Value> row) {
  const Result<RowPointer> at = relationships_->Insert(row);
  EXPECT_TRUE(at.ok()) << at.error().description;
}

}  // namespace zent::jet::testing
