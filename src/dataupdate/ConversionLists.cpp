#include <optional>
#include <string>
#include <vector>

#include "dataupdate/Conversion.h"
#include "dataupdate/LookupItems.h"

// The sections that add to lists: classifications, values of lists, aliases.

namespace zent {
namespace {

constexpr std::size_t kItemsBetweenCounts = 10;

/// The value of a list that a classification becomes; nothing when it cannot be read.
std::optional<LookupItem> ClassificationOf(Conversion& conversion, Recordset& row) {
  const auto table = conversion.Text(row, "TableName");
  if (!table) return std::nullopt;
  const auto type = conversion.Text(row, "ClassificationType");
  if (!type) return std::nullopt;
  const auto name = conversion.Text(row, "ClassificationName");
  if (!name) return std::nullopt;
  return LookupItem{.list = *table + "." + *type, .value = *name};
}

}  // namespace

void ListClassifications(Conversion& conversion) {
  conversion.Section("Updating Classifications", [&] {
    auto table = conversion.next.After(LookupTable::Open(conversion.run, conversion.korvo));
    if (!table) return;
    conversion.ForEachRow(conversion.korvo, "Classifications", RecordsetUse::Read,
                          [&](Recordset& row) {
                            const auto item = ClassificationOf(conversion, row);
                            if (!item) return;
                            const auto added = conversion.next.After(table->AddIfMissing(*item));
                            if (!added.value_or(false)) return;
                            if (++conversion.count % kItemsBetweenCounts == 0) {
                              conversion.ShowCount("      ", " Items");
                            }
                          });
  });
}

void ListLookupItems(Conversion& conversion) {
  conversion.Section("Updating Lookup items", [&] {
    auto table = conversion.next.After(LookupTable::Open(conversion.run, conversion.korvo));
    if (!table) return;
    conversion.ForEachRow(conversion.source, "Lookup", RecordsetUse::Read, [&](Recordset& row) {
      const auto item = conversion.next.After(ItemOf(row));
      if (!item) return;
      if (conversion.next.After(table->AddIfMissing(*item)).value_or(false)) ++conversion.count;
    });
  });
}

void AddAliases(Conversion& conversion) {
  conversion.Section("Updating Aliases", [&] {
    auto presence =
        conversion.next.After(RowPresence::Of(conversion.korvo, "Aliases", {"Name", "Alias"}));
    const auto aliases =
        conversion.next.After(conversion.korvo.OpenRecordset("Aliases", RecordsetUse::Add));
    if (!presence || !aliases) return;
    conversion.ForEachRow(conversion.source, "Aliases", RecordsetUse::Read, [&](Recordset& row) {
      const auto name = conversion.Text(row, "Name");
      if (!name) return;
      const auto alias = conversion.Text(row, "Alias");
      if (!alias) return;
      // Two blanks between AND and Alias, as it has always been written. Not translated for a
      // server: nothing here needs it, and a name in quotation marks would lose them.
      const std::string query =
          "Select * FROM Aliases WHERE Name='" + *name + "' AND " + " Alias='" + *alias + "'";
      std::optional<std::vector<std::string>> values;
      if ((*name + *alias).find('\'') == std::string::npos) values = {*name, *alias};
      if (conversion.next.After(presence->Has(query, values)).value_or(true)) return;
      if (!conversion.next.After(AddRow(**aliases, {{"Name", *name}, {"Alias", *alias}}))) return;
      presence->Added({*name, *alias});
      ++conversion.count;
    });
  });
}

}  // namespace zent
