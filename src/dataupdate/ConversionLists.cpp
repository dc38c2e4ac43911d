#include "dataupdate/Conversion.h"
#include "dataupdate/LookupItems.h"

// The sections that add to lists: classifications, values of lists, aliases.

namespace zent {
namespace {

constexpr std::size_t kItemsBetweenCounts = 10;

}  // namespace

void ListClassifications(Conversion& conversion) {
  conversion.Section("Updating Classifications", [&] {
    auto table = conversion.next.After(LookupTable::Open(conversion.run, conversion.korvo));
    if (!table) return;
    conversion.ForEachRow(
        conversion.korvo, "Classifications", RecordsetUse::Read, [&](Recordset& row) {
          const LookupItem item = {.list = conversion.Text(row, "TableName") + "." +
                                           conversion.Text(row, "ClassificationType"),
                                   .value = conversion.Text(row, "ClassificationName")};
          const auto added = conversion.next.After(table->AddIfMissing(item));
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
        conversion.next.After(conversion.korvo.OpenRecordset("Aliases", RecordsetUse::Change));
    if (!presence || !aliases) return;
    conversion.ForEachRow(conversion.source, "Aliases", RecordsetUse::Read, [&](Recordset& row) {
      const std::string name = conversion.Text(row, "Name");
      const std::string alias = conversion.Text(row, "Alias");
      // Two blanks between AND and Alias, as it has always been written.
      const std::string query =
          "Select * FROM Aliases WHERE Name='" + name + "' AND " + " Alias='" + alias + "'";
      std::optional<std::vector<std::string>> values;
      if ((name + alias).find('\'') == std::string::npos) values = {name, alias};
      if (conversion.next.After(presence->Has(query, values)).value_or(true)) return;
      if (!conversion.next.After(AddRow(**aliases, {{"Name", name}, {"Alias", alias}}))) return;
      presence->Added({name, alias});
      ++conversion.count;
    });
  });
}

}  // namespace zent
