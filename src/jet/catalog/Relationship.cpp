#include "jet/catalog/Relationship.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>

#include "base/CaseFold.h"
#include "jet/catalog/SystemTable.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

struct RelationshipColumn {
  enum Place : std::size_t {
    Name,
    Flags,
    Count,
    Position,
    ReferringTable,
    ReferringColumn,
    ReferencedTable,
    ReferencedColumn,
  };
};

constexpr std::array<std::string_view, 8> kRelationshipColumns = {"szRelationship",
                                                                  "grbit",
                                                                  "ccolumn",
                                                                  "icolumn",
                                                                  "szObject",
                                                                  "szColumn",
                                                                  "szReferencedObject",
                                                                  "szReferencedColumn"};

/// A relationship while its rows come in, in any order.
struct Gathered {
  Relationship relationship;
  std::int32_t count = 0;
  std::map<std::int32_t, std::pair<std::string, std::string>> columns = {};
};

RuntimeError Contradiction(PageNumber page, const std::string& name) {
  return Damaged(page, fmt::format("the rows of relationship {} contradict each other", name));
}

class Gatherer {
 public:
  Status Add(SystemRow& row, PageNumber page) {
    Relationship read{.name = row.Text(RelationshipColumn::Name),
                      .table = row.Text(RelationshipColumn::ReferringTable),
                      .referenced_table = row.Text(RelationshipColumn::ReferencedTable),
                      .flags = static_cast<std::uint32_t>(row.Long(RelationshipColumn::Flags))};
    const std::int32_t count = row.Long(RelationshipColumn::Count);
    const std::int32_t position = row.Long(RelationshipColumn::Position);
    std::pair<std::string, std::string> pair(row.Text(RelationshipColumn::ReferringColumn),
                                             row.Text(RelationshipColumn::ReferencedColumn));
    if (!row.status().ok()) return row.status();

    const auto [place, is_new] = by_name_.try_emplace(FoldName(read.name), gathered_.size());
    if (is_new) gathered_.push_back({.relationship = read, .count = count});
    Gathered& one = gathered_[place->second];
    const bool same = SameName(one.relationship.table, read.table) &&
                      SameName(one.relationship.referenced_table, read.referenced_table) &&
                      one.relationship.flags == read.flags && one.count == count;
    const bool in_range = position >= 0 && position < count;
    if (!same || !in_range || !one.columns.emplace(position, std::move(pair)).second) {
      return Contradiction(page, read.name);
    }
    return {};
  }

  Result<std::vector<Relationship>> Finish() {
    std::vector<Relationship> all;
    for (Gathered& one : gathered_) {
      if (one.columns.size() != static_cast<std::size_t>(one.count)) {
        return Contradiction(kRelationshipsPage, one.relationship.name);
      }
      for (auto& [position, pair] : one.columns) {
        one.relationship.columns.push_back(std::move(pair));
      }
      all.push_back(std::move(one.relationship));
    }
    return all;
  }

 private:
  std::vector<Gathered> gathered_;
  std::map<std::string, std::size_t> by_name_;  ///< folded
};

}  // namespace

Result<std::vector<Relationship>> ReadRelationships(UsageMaps& maps) {
  Result<SystemTable> table = SystemTable::Open(maps, kRelationshipsPage, kRelationshipColumns);
  if (!table.ok()) return table.error();
  Gatherer gatherer;
  RowScan scan(table.value().store().rows());
  Result<bool> more = scan.Next();
  for (; more.value_or(false); more = scan.Next()) {
    SystemRow row(table.value(), scan.bytes(), scan.page());
    if (Status added = gatherer.Add(row, scan.page()); !added.ok()) return added.error();
  }
  if (!more.ok()) return more.error();
  return gatherer.Finish();
}

}  // namespace zent::jet
