#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "jet/catalog/Catalog.h"
#include "jet/fakes/MemoryStorage.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/samples/SamplePaths.h"

/// Real files, and beside their folder what an independent reader found in them.
namespace zent::jet::testing {
namespace {

using nlohmann::json;

/// A sample, open, and what is expected of it.
struct Sample {
  MemoryStorage storage;
  std::unique_ptr<Pager> pager;
  std::unique_ptr<Catalog> catalog;
  json expected;
};

std::unique_ptr<Sample> OpenSample(const std::filesystem::path& path) {
  auto sample = std::make_unique<Sample>();
  std::ifstream file(path, std::ios::binary);
  sample->storage.Put(kPath, std::string(std::istreambuf_iterator<char>(file), {}));
  Result<std::unique_ptr<Pager>> pager =
      Pager::Open(sample->storage, kPath, Opened(Sharing::ReadOnly));
  EXPECT_TRUE(pager.ok()) << pager.error().description;
  sample->pager = std::move(pager.value());
  Result<std::unique_ptr<Catalog>> catalog = Catalog::Open(*sample->pager);
  EXPECT_TRUE(catalog.ok()) << catalog.error().description;
  sample->catalog = std::move(catalog.value());
  std::ifstream expected(ExpectedDumpOf(path));
  sample->expected = json::parse(expected);
  return sample;
}

template <typename Compare>
void ForEachSample(const Compare& compare) {
  const std::vector<std::filesystem::path> paths = SamplePaths();
  EXPECT_GT(paths.size(), 20U);
  for (const std::filesystem::path& path : paths) {
    SCOPED_TRACE(path);
    compare(*OpenSample(path));
  }
}

json AsJson(const CatalogObject& object) {
  return {{"id", object.id},
          {"parent", object.parent},
          {"type", static_cast<int>(object.type)},
          {"flags", object.flags},
          {"name", object.name}};
}

TEST(SampleCatalog, ListsTheObjectsInTheOrderOfTheFile) {
  ForEachSample([](Sample& sample) {
    const Result<std::vector<CatalogObject>> objects = sample.catalog->Objects();
    ASSERT_TRUE(objects.ok()) << objects.error().description;
    json found = json::array();
    for (const CatalogObject& object : objects.value()) found.push_back(AsJson(object));
    EXPECT_EQ(found, sample.expected["objects"]);
  });
}

TEST(SampleCatalog, FindsEachObjectByParentAndNameAndByNumber) {
  ForEachSample([](Sample& sample) {
    const std::vector<CatalogObject> objects = sample.catalog->Objects().value_or({});
    for (const CatalogObject& object : objects) {
      const Result<std::optional<CatalogObject>> named =
          sample.catalog->FindIn(object.parent, object.name);
      ASSERT_TRUE(named.ok()) << named.error().description;
      ASSERT_TRUE(named.value()) << object.name;
      EXPECT_EQ(named.value()->row, object.row);
      const Result<std::optional<CatalogObject>> numbered = sample.catalog->FindById(object.id);
      ASSERT_TRUE(numbered.ok()) << numbered.error().description;
      ASSERT_TRUE(numbered.value()) << object.id;
      EXPECT_EQ(numbered.value()->row, object.row);
    }
  });
}

TEST(SampleCatalog, ReadsTheRelationships) {
  ForEachSample([](Sample& sample) {
    const Result<std::vector<Relationship>> all = sample.catalog->Relationships();
    ASSERT_TRUE(all.ok()) << all.error().description;
    json found = json::array();
    for (const Relationship& one : all.value()) {
      for (std::size_t i = 0; i < one.columns.size(); ++i) {
        found.push_back({{"name", one.name},
                         {"flags", one.flags},
                         {"columns", one.columns.size()},
                         {"index", i},
                         {"table", one.table},
                         {"column", one.columns[i].first},
                         {"referencedTable", one.referenced_table},
                         {"referencedColumn", one.columns[i].second}});
      }
    }
    EXPECT_EQ(found, sample.expected["relationships"]);
  });
}

/// Type and flag of each property; their values are compared where they are decoded.
json Outline(const PropertySet* set) {
  json outline = json::object();
  if (set == nullptr) return outline;
  for (const Property& property : set->properties) {
    outline[property.name] = {{"type", static_cast<int>(property.type)}, {"ddl", property.IsDdl()}};
  }
  return outline;
}

json WithoutValues(json properties) {
  for (json& property : properties) property.erase("value");
  return properties;
}

TEST(SampleCatalog, ReadsThePropertiesOfTheDatabaseAndItsDocuments) {
  ForEachSample([](Sample& sample) {
    const auto outline = [&](ObjectType type, std::string_view name) {
      const std::optional<CatalogObject> object = sample.catalog->Find(type, name).value_or({});
      if (!object) return json(json::object());
      const Result<PropertyBlob> blob = sample.catalog->Properties(*object);
      EXPECT_TRUE(blob.ok()) << blob.error().description;
      return Outline(blob.value_or({}).Find(""));
    };
    const json& expected = sample.expected;
    EXPECT_EQ(outline(ObjectType::Database, kDatabaseName),
              WithoutValues(expected["databaseProperties"]));
    EXPECT_EQ(outline(ObjectType::DatabaseDocument, "summaryinfo"),
              WithoutValues(expected["summaryProperties"]));
    EXPECT_EQ(outline(ObjectType::DatabaseDocument, "UserDefined"),
              WithoutValues(expected["userDefinedProperties"]));
  });
}

void CompareTable(Catalog& catalog, const json& expected) {
  const std::string name = expected["name"];
  SCOPED_TRACE(name);
  const Result<Table*> opened = catalog.OpenTable(name);
  ASSERT_TRUE(opened.ok()) << opened.error().description;
  Table& table = *opened.value();
  EXPECT_EQ(table.name(), name);
  EXPECT_EQ(table.store().page(), expected["tdefPage"]);
  EXPECT_EQ(Outline(table.properties().Find("")), WithoutValues(expected["properties"]));
  const std::optional<CatalogObject> object = catalog.Find(ObjectType::Table, name).value_or({});
  ASSERT_TRUE(object);
  EXPECT_EQ(object->IsHidden(), expected["hidden"]);
  EXPECT_FALSE(object->IsSystem());
  for (const json& column : expected["columns"]) {
    const Result<std::size_t> position = table.PositionOf(std::string(column["name"]));
    ASSERT_TRUE(position.ok()) << position.error().description;
    EXPECT_EQ(table.definition().columns[position.value()].number, column["number"]);
    EXPECT_EQ(Outline(table.properties().Find(std::string(column["name"]))),
              WithoutValues(column["properties"]));
  }
}

TEST(SampleCatalog, OpensEachTableWithItsProperties) {
  ForEachSample([](Sample& sample) {
    for (const json& table : sample.expected["tables"]) CompareTable(*sample.catalog, table);
    std::size_t people = 0;
    for (const CatalogObject& table : sample.catalog->Tables().value_or({})) {
      if (table.IsLocalTable() && !table.IsSystem()) ++people;
      EXPECT_TRUE(sample.catalog->OpenTable(table.name).ok()) << table.name;
    }
    EXPECT_EQ(people, sample.expected["tables"].size());
  });
}

}  // namespace
}  // namespace zent::jet::testing
