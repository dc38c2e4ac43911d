#include "jet/tools/Dump.h"

#include <algorithm>
#include <iterator>

#include "base/CaseFold.h"
#include "base/Utf.h"
#include "jet/format/JetErrors.h"
#include "jet/tools/DatabaseFacts.h"
#include "jet/tools/TableDump.h"
#include "jet/tools/ValueJson.h"

namespace zent::jet {
namespace {

using Line = JsonWriter::Line;

/// Writes the parts of a dump that are not tables.
class DatabaseDump {
 public:
  DatabaseDump(Catalog& catalog, const DumpOptions& options, JsonWriter& json)
      : catalog_(catalog),
        options_(options),
        json_(json),
        values_(json, options.whole_values),
        version_(catalog.pager().version()) {}

  Status Write() {
    if (Status chosen = ChooseTables(); !chosen.ok()) return chosen;
    json_.BeginObject();
    Status done = WriteHeader();
    if (done.ok()) done = WriteDocuments();
    if (!done.ok()) return done;
    WriteObjects();
    done = WriteRelationships();
    if (done.ok()) done = WriteTables();
    if (!done.ok()) return done;
    json_.EndObject();
    return {};
  }

 private:
  Status WriteHeader() {
    const Result<FileHeader> header = HeaderOf(catalog_.pager());
    if (!header.ok()) return header.error();
    const Result<PropertyBlob> properties =
        DocumentProperties(catalog_, ObjectType::Database, kDatabaseName);
    if (!properties.ok()) return properties.error();
    const bool jet3 = version_ == JetVersion::Jet3;
    json_.Member("file", options_.file_name);
    json_.Member("jet", std::int64_t{jet3 ? 3 : 4});
    json_.Member("format", FormatName(version_, properties.value()));
    json_.Key("password", Line::New);
    if (header.value().password.empty()) {
      json_.AddNull();
    } else {
      json_.Add(true);
    }
    json_.Member("collation", std::int64_t{header.value().collation.lcid});
    json_.Member("collationVersion", std::int64_t{jet3 ? -1 : header.value().collation.version});
    json_.Member("codePage", std::int64_t{header.value().code_page});
    json_.Key("databaseProperties", Line::New);
    values_.AddProperties(version_, properties.value().Find(""));
    return {};
  }

  Status WriteDocuments() {
    constexpr std::pair<const char*, const char*> kDocuments[] = {
        {"summaryProperties", "SummaryInfo"}, {"userDefinedProperties", "UserDefined"}};
    for (const auto& [key, name] : kDocuments) {
      const Result<PropertyBlob> properties =
          DocumentProperties(catalog_, ObjectType::DatabaseDocument, name);
      if (!properties.ok()) return properties.error();
      json_.Key(key, Line::New);
      values_.AddProperties(version_, properties.value().Find(""));
    }
    return {};
  }

  /// By name, in the order of the UTF-16 units.
  Status ChooseTables() {
    Result<std::vector<CatalogObject>> objects = catalog_.Objects();
    if (!objects.ok()) return objects.error();
    objects_ = std::move(objects.value());
    std::copy_if(objects_.begin(), objects_.end(), std::back_inserter(tables_),
                 [&](const CatalogObject& one) {
                   return one.IsLocalTable() && !one.IsSystem() &&
                          (options_.table.empty() || SameName(one.name, options_.table));
                 });
    if (tables_.empty() && !options_.table.empty()) return JetError(kNoSuchTable, options_.table);
    std::sort(tables_.begin(), tables_.end(), [](const CatalogObject& a, const CatalogObject& b) {
      return ToUtf16(a.name) < ToUtf16(b.name);
    });
    return {};
  }

  void WriteObjects() {
    json_.Key("objects", Line::New);
    json_.BeginArray();
    for (const CatalogObject& object : objects_) {
      json_.BeginObject(Line::New);
      json_.Member("id", std::int64_t{object.id});
      json_.Member("parent", std::int64_t{object.parent});
      json_.Member("type", static_cast<std::int64_t>(object.type));
      json_.Member("flags", std::int64_t{object.flags});
      json_.Member("name", object.name);
      json_.EndObject();
    }
    json_.EndArray();
    json_.Key("linkedTables", Line::New);
    json_.BeginArray();
    for (const CatalogObject& object : objects_) {
      if (object.IsLinked()) WriteLink(object);
    }
    json_.EndArray();
  }

  void WriteLink(const CatalogObject& object) {
    json_.BeginObject(Line::New);
    json_.Member("name", object.name);
    json_.Member("odbc", object.type == ObjectType::LinkedOdbcTable);
    json_.Member("connect", object.connect);
    json_.Member("database", object.database);
    json_.Member("foreignName", object.foreign_name);
    json_.EndObject();
  }

  Status WriteRelationships() {
    const Result<std::vector<Relationship>> relationships = catalog_.Relationships();
    if (!relationships.ok()) return relationships.error();
    json_.Key("relationships", Line::New);
    json_.BeginArray();
    for (const Relationship& relationship : relationships.value()) {
      for (std::size_t i = 0; i < relationship.columns.size(); ++i) {
        json_.BeginObject(Line::New);
        json_.Member("name", relationship.name);
        json_.Member("flags", std::int64_t{static_cast<std::int32_t>(relationship.flags)});
        json_.Member("columns", static_cast<std::int64_t>(relationship.columns.size()));
        json_.Member("index", static_cast<std::int64_t>(i));
        json_.Member("table", relationship.table);
        json_.Member("column", relationship.columns[i].first);
        json_.Member("referencedTable", relationship.referenced_table);
        json_.Member("referencedColumn", relationship.columns[i].second);
        json_.EndObject();
      }
    }
    json_.EndArray();
    return {};
  }

  Status WriteTables() {
    json_.Key("tables", Line::New);
    json_.BeginArray();
    for (const CatalogObject& table : tables_) {
      TableDump dump(catalog_, objects_, json_, values_);
      if (Status done = dump.Write(table, options_.rows); !done.ok()) return done;
    }
    json_.EndArray();
    return {};
  }

  Catalog& catalog_;
  const DumpOptions& options_;
  JsonWriter& json_;
  ValueJson values_;
  JetVersion version_;
  std::vector<CatalogObject> objects_;
  std::vector<CatalogObject> tables_;  ///< those to be written with all they hold
};

}  // namespace

Status DumpDatabase(Catalog& catalog, const DumpOptions& options, const TakeText& take) {
  const ReadScope scope(catalog.pager());
  if (!scope.status().ok()) return scope.status();
  JsonWriter json(take);
  Status done = DatabaseDump(catalog, options, json).Write();
  json.Flush();
  if (done.ok()) take("\n");
  return done;
}

}  // namespace zent::jet
