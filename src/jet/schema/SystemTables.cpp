#include "jet/schema/SystemTables.h"

#include <vector>

#include "jet/schema/ColumnPlan.h"
#include "jet/schema/IndexPlan.h"

namespace zent::jet {
namespace {

constexpr std::uint8_t kUser = 0x20;     // the column holds the identity of a user
constexpr std::uint16_t kLongest = 510;  // bytes; more than a user's column may have

struct Column {
  const char* name;
  ColumnType type;
  std::uint8_t flags = 0;
};

struct Index {
  const char* name;
  std::vector<std::uint16_t> columns;  ///< numbers
  std::uint8_t flags;
  bool primary = false;
};

struct Description {
  std::vector<Column> columns;  ///< in the order of their numbers
  std::vector<Index> indexes;
};

Description Objects() {
  using enum ColumnType;
  return {.columns = {{"Id", Long},
                      {"ParentId", Long},
                      {"Name", Text},
                      {"Type", Int},
                      {"DateCreate", Date},
                      {"DateUpdate", Date},
                      {"Owner", Binary, kUser},
                      {"Flags", Long},
                      {"Database", Memo},
                      {"Connect", Memo},
                      {"ForeignName", Text},
                      {"RmtInfoShort", Binary},
                      {"RmtInfoLong", Ole},
                      {"Lv", Ole},
                      {"LvProp", Ole},
                      {"LvModule", Ole},
                      {"LvExtra", Ole}},
          .indexes = {{"ParentIdName", {1, 2}, kUniqueIndex}, {"Id", {0}, kUniqueIndex, true}}};
}

Description Aces() {
  using enum ColumnType;
  return {.columns = {{"ObjectId", Long},
                      {"SID", Binary, kUser},
                      {"ACM", Long},
                      {"FInheritable", Bool}},
          .indexes = {{"ObjectId", {0}, kRequiredIndex}}};
}

Description Queries() {
  using enum ColumnType;
  return {.columns = {{"ObjectId", Long},
                      {"Attribute", Byte},
                      {"Order", Binary},
                      {"Name1", Text},
                      {"Name2", Text},
                      {"Expression", Memo},
                      {"Flag", Int},
                      {"LvExtra", Long}},
          .indexes = {{"ObjectIdAttribute", {0, 1, 2}, kUniqueIndex, true}}};
}

Description Relationships() {
  using enum ColumnType;
  return {.columns = {{"szRelationship", Text},
                      {"grbit", Long},
                      {"ccolumn", Long},
                      {"icolumn", Long},
                      {"szObject", Text},
                      {"szColumn", Text},
                      {"szReferencedObject", Text},
                      {"szReferencedColumn", Text}},
          .indexes = {{"szRelationship", {0}, kIgnoreNullsIndex},
                      {"szObject", {4}, kIgnoreNullsIndex},
                      {"szReferencedObject", {6}, kIgnoreNullsIndex}}};
}

Description DescriptionOf(PageNumber page) {
  switch (page) {
    case kObjectsPage:
      return Objects();
    case kAcesPage:
      return Aces();
    case kQueriesPage:
      return Queries();
    default:
      return Relationships();
  }
}

ColumnDefinition DefineColumn(const Column& from) {
  ColumnDefinition column{.name = from.name, .type = from.type};
  column.flags = static_cast<std::uint8_t>(kNullableColumn | kSystemColumn | from.flags);
  const bool variable = from.type == ColumnType::Text || from.type == ColumnType::Binary;
  if (variable) {
    column.length = kLongest;
  } else if (!IsLong(from.type)) {
    const bool is_bool = from.type == ColumnType::Bool;
    column.length = static_cast<std::uint16_t>(is_bool ? 1 : FixedSizeOf(from.type));
    column.flags |= kFixedColumn;
  }
  return column;
}

void AddIndex(const Index& from, TableDefinition& table) {
  RealIndex real;
  real.flags = static_cast<std::uint8_t>(kAccessIndex | from.flags);
  for (const std::uint16_t column : from.columns) real.columns.push_back({.column = column});
  const auto number = static_cast<std::uint32_t>(table.real_indexes.size());
  table.real_indexes.push_back(std::move(real));
  table.logical_indexes.push_back({.name = from.name,
                                   .number = number,
                                   .real = number,
                                   .kind = from.primary ? IndexKind::Primary : IndexKind::Ordinary,
                                   .cascade_updates = kNotCascaded,
                                   .cascade_deletes = kNotCascaded});
}

}  // namespace

TableDefinition SystemDefinition(PageNumber page) {
  const Description from = DescriptionOf(page);
  TableDefinition table;
  table.kind = 'S';
  for (const Column& column : from.columns) PlaceColumn(DefineColumn(column), 0, table);
  for (const Index& index : from.indexes) AddIndex(index, table);
  return table;
}

}  // namespace zent::jet
