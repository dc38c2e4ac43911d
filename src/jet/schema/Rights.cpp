#include "jet/schema/Rights.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "jet/schema/NamedRow.h"
#include "jet/schema/SystemRows.h"

namespace zent::jet {
namespace {

struct RightsColumn {
  enum Place : std::size_t { Object, Account, Granted, Inherited };
};
constexpr std::array<std::string_view, 4> kRightsColumns = {"ObjectId", "SID", "ACM",
                                                            "FInheritable"};

// The well-known accounts have two bytes; unmasked, the engine is 02 03 and the creator 02 04.
constexpr std::size_t kKnownSize = 2;
constexpr char kEngineToCreator = 0x03 ^ 0x04;

struct Entry {
  std::string account;
  std::int32_t rights = 0;
};

/// What a container hands on.
Result<std::vector<Entry>> InheritedFrom(SystemTable& table, std::int32_t container) {
  std::vector<Entry> entries;
  const Result<std::vector<RowPointer>> rows = FindRows(table, RightsColumn::Object, container);
  if (!rows.ok()) return rows.error();
  for (const RowPointer row : rows.value()) {
    const Result<std::vector<Value>> values = table.store().Fetch(row);
    if (!values.ok()) return values.error();
    const auto* const inherited =
        std::get_if<bool>(&values.value()[table.position(RightsColumn::Inherited)]);
    const auto* const account =
        std::get_if<Binary>(&values.value()[table.position(RightsColumn::Account)]);
    const auto* const rights =
        std::get_if<std::int32_t>(&values.value()[table.position(RightsColumn::Granted)]);
    if (inherited == nullptr || !*inherited || account == nullptr || rights == nullptr) continue;
    entries.push_back({.account = account->bytes, .rights = *rights});
  }
  return entries;
}

std::string CreatorOf(std::string_view engine) {
  std::string creator(engine);
  if (creator.size() == kKnownSize) {
    creator[1] = static_cast<char>(creator[1] ^ kEngineToCreator);
  }
  return creator;
}

}  // namespace

Status GrantInherited(UsageMaps& maps, std::int32_t object, std::int32_t container,
                      std::string_view owner, std::string_view engine) {
  Result<SystemTable> table = SystemTable::Open(maps, kAcesPage, kRightsColumns);
  if (!table.ok()) return table.error();
  const Result<std::vector<Entry>> entries = InheritedFrom(table.value(), container);
  if (!entries.ok()) return entries.error();
  const bool owner_has_entry =
      std::any_of(entries.value().begin(), entries.value().end(),
                  [&](const Entry& entry) { return entry.account == owner; });
  const std::string creator = CreatorOf(engine);
  for (const Entry& entry : entries.value()) {
    const bool for_creator = entry.account == creator;
    if (for_creator && owner_has_entry) continue;
    Result<std::vector<Value>> row =
        RowOf(table.value().store().definition(),
              {{kRightsColumns[RightsColumn::Object], object},
               {kRightsColumns[RightsColumn::Account],
                Binary{for_creator ? std::string(owner) : entry.account}},
               {kRightsColumns[RightsColumn::Granted], entry.rights},
               {kRightsColumns[RightsColumn::Inherited], false}});
    if (!row.ok()) return row.error();
    Result<RowPointer> at = table.value().store().Insert(row.value());
    if (!at.ok()) return at.error();
  }
  return {};
}

Status RevokeAll(UsageMaps& maps, std::int32_t object) {
  Result<SystemTable> table = SystemTable::Open(maps, kAcesPage, kRightsColumns);
  if (!table.ok()) return table.error();
  return DeleteRows(table.value(), RightsColumn::Object, object);
}

}  // namespace zent::jet
