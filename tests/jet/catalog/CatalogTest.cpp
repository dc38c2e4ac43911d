#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "jet/catalog/Catalog.h"
#include "jet/fakes/CatalogFile.h"
#include "jet/format/JetErrors.h"

namespace zent::jet::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

PageNumber AddPeople(CatalogFile& file, const std::string& name) {
  TableBuilder table(file.file());
  table.Column("Id", ColumnType::Long).Column("Name", ColumnType::Text, 100);
  return file.AddTable(name, table);
}

CatalogObject Found(CatalogFile& file, ObjectType type, std::string_view name) {
  return file.catalog().Find(type, name).value_or({}).value_or(CatalogObject());
}

/// Tables of all kinds, a query, a form.
struct Office {
  explicit Office(CatalogFile::Indexes index = CatalogFile::Indexes::Unique) : file(index) {
    people = AddPeople(file, "People");
    file.Add({.name = "Elsewhere",
              .type = ObjectType::LinkedTable,
              .flags = 0,
              .connect = ";PWD=secret",
              .database = "C:\\Data\\Other.mdb"});
    file.Add({.name = "Server", .type = ObjectType::LinkedOdbcTable, .connect = "ODBC;DSN=korvo"});
    file.Add({.name = "Adults", .type = ObjectType::Query, .flags = 0x10});
    file.Add({.name = "Entry", .type = ObjectType::Form, .parent = 77});
  }
  CatalogFile file;
  PageNumber people = 0;
};

TEST(Catalog, TellsWhatItsObjectsAre) {
  struct Row {
    const char* what;
    CatalogObject object;
    bool table, linked, system, hidden;
  };
  const Row rows[] = {
      {"a table", {.type = ObjectType::Table}, true, false, false, false},
      {"of the engine", {.flags = kSystemObject}, true, false, true, false},
      {"of the application", {.flags = kSystemLikeObject}, true, false, true, false},
      {"hidden", {.flags = kHiddenObject}, true, false, false, true},
      {"hidden, of the application", {.flags = 0x0A}, true, false, true, true},
      {"linked", {.type = ObjectType::LinkedTable}, true, true, false, false},
      {"linked, hidden",
       {.type = ObjectType::LinkedOdbcTable, .flags = 8},
       true,
       true,
       false,
       true},
      {"a query", {.type = ObjectType::Query}, false, false, false, false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(row.object.IsTable(), row.table);
    EXPECT_EQ(row.object.IsLinked(), row.linked);
    EXPECT_EQ(row.object.IsSystem(), row.system);
    EXPECT_EQ(row.object.IsHidden(), row.hidden);
  }
}

TEST(Catalog, ReadsTheFieldsOfAnObject) {
  Office office;
  const CatalogObject people = Found(office.file, ObjectType::Table, "people");
  EXPECT_EQ(people.name, "People");
  EXPECT_EQ(people.definition(), office.people);
  EXPECT_EQ(people.parent, kTablesId);
  EXPECT_EQ(people.created, Date{36526});
  EXPECT_EQ(people.updated, Date{36527.5});
  const CatalogObject linked = Found(office.file, ObjectType::LinkedTable, "Elsewhere");
  EXPECT_EQ(linked.database, "C:\\Data\\Other.mdb");
  EXPECT_EQ(linked.connect, ";PWD=secret");
}

TEST(Catalog, ListsTablesInTheOrderOfTheFile) {
  Office office;
  std::vector<std::string> names;
  for (const CatalogObject& table : office.file.catalog().Tables().value_or({})) {
    names.push_back(table.name);
  }
  EXPECT_THAT(names,
              ElementsAre("MSysObjects", "MSysRelationships", "People", "Elsewhere", "Server"));
  EXPECT_EQ(office.file.catalog().Objects().value_or({}).size(), 11U);
}

struct FindCase {
  const char* what;
  ObjectType type;
  const char* name;
  bool found;
};

constexpr FindCase kFindCases[] = {
    {"a table", ObjectType::Table, "People", true},
    {"in any case", ObjectType::Table, "pEOPLE", true},
    {"of another name", ObjectType::Table, "Peopl", false},
    {"without a name", ObjectType::Table, "", false},
    {"a query is no table", ObjectType::Table, "Adults", false},
    {"a query", ObjectType::Query, "adults", true},
    {"a linked table", ObjectType::LinkedTable, "Elsewhere", true},
    {"is no local one", ObjectType::Table, "Elsewhere", false},
    {"nor one of a server", ObjectType::LinkedOdbcTable, "Elsewhere", false},
    {"the database", ObjectType::Database, "msysdb", true},
    {"a container", ObjectType::Container, "Tables", true},
    {"a form, whose container is Access' own", ObjectType::Form, "ENTRY", true},
    {"no such form", ObjectType::Form, "Exit", false},
};

TEST(Catalog, FindsObjectsByTypeAndName) {
  for (const auto index : {CatalogFile::Indexes::Unique, CatalogFile::Indexes::NotUnique,
                           CatalogFile::Indexes::OfUnknownOrder}) {
    SCOPED_TRACE(static_cast<int>(index));
    Office office(index);
    for (const FindCase& row : kFindCases) {
      SCOPED_TRACE(row.what);
      const Result<std::optional<CatalogObject>> found =
          office.file.catalog().Find(row.type, row.name);
      ASSERT_TRUE(found.ok()) << found.error().description;
      EXPECT_EQ(found.value().has_value(), row.found);
    }
  }
}

TEST(Catalog, FindsThroughTheIndex) {
  CatalogFile file;
  for (int i = 0; i < 2000; ++i) {
    file.Add({.name = "Query " + std::to_string(i), .type = ObjectType::Query});
  }
  const CatalogObject first = Found(file, ObjectType::Query, "Query 0");
  file.file().Overwrite(first.row.page, 0, {0xFF});  // a scan cannot pass it
  EXPECT_EQ(file.catalog().Objects().number(), kCannotOpenDatabase);
  EXPECT_TRUE(file.catalog().Find(ObjectType::Query, "query 1234").value_or({}).has_value());
  EXPECT_FALSE(file.catalog().Find(ObjectType::Query, "query 12345").value_or({}).has_value());
}

TEST(Catalog, OpensATableOnce) {
  Office office;
  const Result<Table*> table = office.file.catalog().OpenTable("people");
  ASSERT_TRUE(table.ok());
  EXPECT_EQ(table.value()->name(), "People");
  EXPECT_EQ(office.file.catalog().OpenTable("PEOPLE").value_or(nullptr), table.value());
  EXPECT_EQ(office.file.catalog().OpenTableAt(office.people, "x").value_or(nullptr), table.value());
  const std::uint64_t generation = office.file.catalog().generation();
  office.file.catalog().Forget();
  EXPECT_GT(office.file.catalog().generation(), generation);
  EXPECT_TRUE(office.file.catalog().OpenTable("People").ok());
}

TEST(Catalog, SaysWhyATableCannotBeOpened) {
  struct Row {
    const char* what;
    const char* name;
    int number;
    const char* reason;
  };
  constexpr Row kRows[] = {
      {"no such name", "Nobody", kNoSuchTable, "'Nobody'"},
      {"a linked table", "Elsewhere", kNoSuchTable, "it is linked"},
      {"a linked table of a server", "Server", kNoSuchTable, "it is linked"},
      {"a query", "Adults", kNoSuchTable, "it is no table"},
      {"a page that is no definition", "Data", kCannotOpenDatabase, "page 1"},
      {"a page beyond the end", "Far", kCannotOpenDatabase, "page 999999"},
      {"a number that is no page", "Negative", kCannotOpenDatabase, "page 4294967291"},
      {"the definition of another table", "Twin", kCannotOpenDatabase, "two tables share"},
  };
  Office office(CatalogFile::Indexes::NotUnique);
  ASSERT_TRUE(office.file.catalog().OpenTable("People").ok());
  office.file.Add({.name = "Twin", .id = static_cast<std::int32_t>(office.people)});
  office.file.Add({.name = "Data", .id = 1});
  office.file.Add({.name = "Far", .id = 999999});
  office.file.Add({.name = "Negative", .id = -5});
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.what);
    const Result<Table*> opened = office.file.catalog().OpenTable(row.name);
    ASSERT_EQ(opened.number(), row.number);
    EXPECT_THAT(opened.error().description, HasSubstr(row.reason));
    EXPECT_THAT(opened.error().description, ::testing::Not(HasSubstr("secret")));
  }
}

TEST(Catalog, RefusesTwoObjectsOfOneName) {
  CatalogFile file(CatalogFile::Indexes::NotUnique);
  AddPeople(file, "People");
  AddPeople(file, "PEOPLE");
  const Result<Table*> opened = file.catalog().OpenTable("People");
  ASSERT_EQ(opened.number(), kCannotOpenDatabase);
  EXPECT_THAT(opened.error().description, HasSubstr("more than once"));
}

TEST(Catalog, RefusesAnIndexThatLeadsToAnotherRow) {
  Office office;
  const CatalogObject people = Found(office.file, ObjectType::Table, "People");
  ASSERT_TRUE(office.file.objects().rows().Delete(people.row).ok());  // its entries stay
  const Result<Table*> opened = office.file.catalog().OpenTable("People");
  ASSERT_EQ(opened.number(), kCannotOpenDatabase);
  EXPECT_THAT(opened.error().description, HasSubstr("leads to another row"));
}

TEST(Catalog, NeedsTheColumnsOfItsTables) {
  StoreFile file;
  TableBuilder table(file);
  table.At(kObjectsPage).Column("Id", ColumnType::Long).Column("ParentId", ColumnType::Long);
  table.Write();
  const Result<std::unique_ptr<Catalog>> catalog = Catalog::Open(file.pager());
  ASSERT_EQ(catalog.number(), kCannotOpenDatabase);
  EXPECT_THAT(catalog.error().description, HasSubstr("no column Name"));
}

TEST(Catalog, GivesThePropertiesOfAnObject) {
  CatalogFile file;
  const std::string bytes = PropertyBytes({{"", "Title", ColumnType::Text, "Korvo"}});
  file.Add({.name = "SummaryInfo",
            .type = ObjectType::DatabaseDocument,
            .parent = kDatabasesId,
            .properties = bytes});
  const CatalogObject object = Found(file, ObjectType::DatabaseDocument, "SummaryInfo");
  const Result<PropertyBlob> blob = file.catalog().Properties(object);
  ASSERT_TRUE(blob.ok()) << blob.error().description;
  const PropertySet* const own = blob.value().Find("");
  ASSERT_NE(own, nullptr);
  ASSERT_NE(own->Find("title"), nullptr);
  EXPECT_EQ(PropertyValue(JetVersion::Jet4, *own->Find("title")), Value("Korvo"));

  CatalogObject gone = object;
  gone.id = 4711;
  EXPECT_EQ(file.catalog().Properties(gone).number(), kObjectNotFound);
}

TEST(Catalog, TellsOthersOfEachTableThatIsOpened) {
  Office office;
  std::vector<std::string> opened;
  office.file.catalog().SetTableHook([&](Table& table) -> Status {
    opened.push_back(table.name());
    return table.name() == "MSysObjects" ? Status(JetError(kReadOnly)) : Status();
  });
  EXPECT_TRUE(office.file.catalog().OpenTable("People").ok());
  EXPECT_TRUE(office.file.catalog().OpenTable("People").ok());
  EXPECT_EQ(office.file.catalog().OpenTable("MSysObjects").number(), kReadOnly);
  EXPECT_THAT(opened, ElementsAre("People", "MSysObjects"));
}

// Any byte of the pages may be anything: an error or an answer, never a crash or a hang.
TEST(Catalog, StandsChangedBytes) {
  constexpr int kChanges = 600;
  std::mt19937 random(20040817);
  for (int i = 0; i < kChanges; ++i) {
    Office office;
    const PageNumber pages = office.file.file().pager().page_count();
    for (int byte = 0; byte < 3; ++byte) {
      const auto page = static_cast<PageNumber>(1 + random() % (pages - 1));
      office.file.file().Overwrite(page, random() % 600, {static_cast<std::uint8_t>(random())});
    }
    const Result<std::unique_ptr<Catalog>> catalog = Catalog::Open(office.file.file().pager());
    if (!catalog.ok()) continue;
    static_cast<void>(catalog.value()->Objects());
    static_cast<void>(catalog.value()->Relationships());
    static_cast<void>(catalog.value()->Find(ObjectType::Query, "Adults"));
    const Result<Table*> table = catalog.value()->OpenTable("People");
    if (!table.ok()) continue;
    std::vector<Value> row(table.value()->definition().columns.size());
    static_cast<void>(table.value()->Insert(row));
  }
}

}  // namespace
}  // namespace zent::jet::testing
