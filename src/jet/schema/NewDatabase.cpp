#include "jet/schema/NewDatabase.h"

#include <bit>
#include <memory>

#include "jet/catalog/CatalogObject.h"
#include "jet/format/DataPage.h"
#include "jet/format/FileHeader.h"
#include "jet/format/JetErrors.h"
#include "jet/format/UsageMap.h"
#include "jet/schema/DefinitionWriter.h"
#include "jet/schema/NamedRow.h"
#include "jet/schema/SystemTables.h"
#include "jet/store/TableStore.h"

namespace zent::jet {
namespace {

// The identities of accounts are masked with bytes that depend on the creation date of the header
// in a way that is not published. These two belong together, so every new file has them.
constexpr auto kKnownDate = std::bit_cast<double>(0x40E4AB3E3BD3853EULL);
constexpr std::string_view kAdmin = "\x64\x8B";
constexpr std::string_view kUsers = "\x65\x8B";
constexpr std::string_view kEngine = "\x65\x89";
constexpr std::string_view kCreator = "\x65\x8E";

struct Object {
  std::int32_t id;
  std::int32_t parent;
  std::string_view name;
  ObjectType type;
  std::string_view owner;
};

constexpr Object kObjects[] = {
    {kTablesId, kRootId, "Tables", ObjectType::Container, kEngine},
    {kDatabasesId, kRootId, "Databases", ObjectType::Container, kEngine},
    {kRelationshipsId, kRootId, "Relationships", ObjectType::Container, kEngine},
    {kDatabaseId, kDatabasesId, kDatabaseName, ObjectType::Database, kAdmin},
    {kObjectsPage, kTablesId, "MSysObjects", ObjectType::Table, kEngine},
    {kAcesPage, kTablesId, "MSysACEs", ObjectType::Table, kEngine},
    {kQueriesPage, kTablesId, "MSysQueries", ObjectType::Table, kEngine},
    {kRelationshipsPage, kTablesId, "MSysRelationships", ObjectType::Table, kEngine},
};

struct Right {
  std::int32_t object;
  std::string_view account;
  std::int32_t rights;
  bool inherited = false;  ///< by what is made in that container
};

constexpr Right kRights[] = {
    {kObjectsPage, kAdmin, 0x60000},
    {kAcesPage, kAdmin, 0x60000},
    {kQueriesPage, kAdmin, 0x60000},
    {kRelationshipsPage, kAdmin, 0xE0000},
    {kTablesId, kCreator, 0xF00FE, true},
    {kTablesId, kAdmin, 0x60001},
    {kRelationshipsId, kCreator, 0xF00FE, true},
    {kRelationshipsId, kAdmin, 0x60001},
    {kDatabasesId, kAdmin, 0x60000},
    {kDatabaseId, kAdmin, 0x6000E},
    {kDatabaseId, kUsers, 0x0000E},
    {kQueriesPage, kUsers, 0x00014},
    {kRelationshipsPage, kUsers, 0x00014},
    {kObjectsPage, kUsers, 0x00014},
    {kTablesId, kUsers, 0xFFEFF, true},
    {kRelationshipsId, kUsers, 0xFFFFF, true},
};

Binary Sid(std::string_view account) { return {.bytes = std::string(account)}; }

Status WriteGlobalMap(Pager& pager) {
  Result<PageEdit> page = pager.Append();
  if (!page.ok()) return page.error();
  InitGlobalMapPage(page.value().bytes());
  return {};
}

Status WriteSystemTables(UsageMaps& maps) {
  for (const SystemTableName& table : kSystemTables) {
    const Result<PageEdit> page = maps.pager().Append();
    if (!page.ok()) return page.error();
    if (page.value().page() != table.page) return Damaged(table.page, "not the next page");
  }
  PageNumber beside = 0;
  for (const SystemTableName& table : kSystemTables) {
    TableDefinition definition = SystemDefinition(table.page);
    if (Status s = CreateStorage(maps, table.page, beside, definition); !s.ok()) return s;
    SortDefinition(definition);
    std::vector<PageNumber> pages = {table.page};
    if (Status s = WriteDefinition(maps, definition, pages); !s.ok()) return s;
  }
  return {};
}

Status WriteObjects(UsageMaps& maps, Date created) {
  const Result<std::unique_ptr<TableStore>> table = TableStore::Open(maps, kObjectsPage);
  if (!table.ok()) return table.error();
  for (const Object& object : kObjects) {
    Result<std::vector<Value>> row =
        RowOf(table.value()->definition(), {{"Id", object.id},
                                            {"ParentId", object.parent},
                                            {"Name", std::string(object.name)},
                                            {"Type", static_cast<std::int16_t>(object.type)},
                                            {"DateCreate", created},
                                            {"DateUpdate", created},
                                            {"Owner", Sid(object.owner)},
                                            {"Flags", kSystemObject}});
    if (!row.ok()) return row.error();
    if (Result<RowPointer> at = table.value()->Insert(row.value()); !at.ok()) return at.error();
  }
  return {};
}

Status WriteRights(UsageMaps& maps) {
  const Result<std::unique_ptr<TableStore>> table = TableStore::Open(maps, kAcesPage);
  if (!table.ok()) return table.error();
  for (const Right& right : kRights) {
    Result<std::vector<Value>> row =
        RowOf(table.value()->definition(), {{"ObjectId", right.object},
                                            {"SID", Sid(right.account)},
                                            {"ACM", right.rights},
                                            {"FInheritable", right.inherited}});
    if (!row.ok()) return row.error();
    if (Result<RowPointer> at = table.value()->Insert(row.value()); !at.ok()) return at.error();
  }
  return {};
}

Status Fill(Pager& pager, Date created) {
  PageTransaction transaction(pager);
  if (!transaction.status().ok()) return transaction.status();
  if (Status s = WriteGlobalMap(pager); !s.ok()) return s;
  UsageMaps maps(pager);
  if (Status s = WriteSystemTables(maps); !s.ok()) return s;
  if (Status s = WriteObjects(maps, created); !s.ok()) return s;
  if (Status s = WriteRights(maps); !s.ok()) return s;
  return transaction.Commit();
}

}  // namespace

Status CreateDatabase(Storage& storage, std::string_view path, const NewDatabase& database) {
  FileHeader header;
  header.creation_date.days = kKnownDate;
  header.password = database.password;
  std::vector<std::uint8_t> page(LayoutOf(JetVersion::Jet4).page_size);
  if (Status written = WriteFileHeader(header, page); !written.ok()) return written;
  Result<std::unique_ptr<Pager>> pager = Pager::Create(storage, path, page, {});
  if (!pager.ok()) return pager.error();

  Status filled = Fill(*pager.value(), database.created);
  if (filled.ok()) return {};
  pager.value().reset();
  static_cast<void>(storage.Delete(path));  // the first error is the one to report
  return filled;
}

}  // namespace zent::jet
