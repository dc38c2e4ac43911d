#include "dataupdate/LookupItems.h"

#include "database/TranslateSQL.h"
#include "dataupdate/RowChange.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

std::string WithQuotesDoubled(std::string_view text) {
  std::string doubled;
  for (const char c : text) doubled.append(c == '\'' ? 2 : 1, c);
  return doubled;
}

bool HasQuote(std::string_view text) { return text.find('\'') != std::string_view::npos; }

}  // namespace

Result<LookupItem> ItemOf(Recordset& rows) {
  LookupItem item;
  struct Part {
    const char* field;
    std::string& text;
  };
  for (const Part& part :
       {Part{"LookupFieldName", item.list}, Part{"LookupValue", item.value},
        Part{"LookupDesc", item.description}, Part{"DisplayOrder", item.order}}) {
    const Result<std::string> text = FieldText(rows, part.field);
    if (!text.ok()) return text.error();
    part.text = text.value();
  }
  return item;
}

Result<LookupTable> LookupTable::Open(UpdateRun& run, OpenedDatabase& database) {
  Result<RowPresence> any_order =
      RowPresence::Of(database, "Lookup", {"LookupFieldName", "LookupValue"});
  if (!any_order.ok()) return any_order.error();
  Result<RowPresence> with_order =
      RowPresence::Of(database, "Lookup", {"LookupFieldName", "LookupValue", "DisplayOrder"});
  if (!with_order.ok()) return with_order.error();
  return LookupTable(run, database, std::move(any_order.value()), std::move(with_order.value()));
}

Result<bool> LookupTable::AddIfMissing(const LookupItem& item) {
  // Two blanks between AND and LookupValue, as it has always been written.
  std::string query = "Select * FROM Lookup WHERE LookupFieldName='" + item.list + "' AND " +
                      " LookupValue='" + WithQuotesDoubled(item.value) + "'";
  const bool ordered = !IsBlank(item.order);
  if (ordered) query += " AND DisplayOrder='" + item.order + "'";

  std::optional<std::vector<std::string>> values;
  if (!HasQuote(item.list) && !(ordered && HasQuote(item.order))) {
    values = {item.list, item.value};
    if (ordered) values->push_back(item.order);
  }
  RowPresence& presence = ordered ? with_order_ : any_order_;
  const Result<bool> present = presence.Has(TranslateSQL(*run_, query), values);
  if (!present.ok()) return present.error();
  if (present.value()) return false;

  if (rows_ == nullptr) {
    Result<std::unique_ptr<Recordset>> rows = database_->OpenRecordset("Lookup", RecordsetUse::Add);
    if (!rows.ok()) return rows.error();
    rows_ = std::move(rows.value());
  }
  const Status added = AddRow(*rows_, {{"LookupFieldName", item.list},
                                       {"LookupValue", item.value},
                                       {"LookupDesc", item.description},
                                       {"DisplayOrder", item.order}});
  if (!added.ok()) return added.error();
  any_order_.Added({item.list, item.value});
  with_order_.Added({item.list, item.value, item.order});
  return true;
}

Result<std::size_t> UpdateLookupItems(UpdateRun& run, OpenedDatabase& source,
                                      OpenedDatabase& target) {
  run.ShowMsg("Updating Lookup items");
  const Result<std::unique_ptr<Recordset>> opened =
      source.OpenRecordset("Lookup", RecordsetUse::Read);
  if (!opened.ok()) return opened.error();
  Result<LookupTable> table = LookupTable::Open(run, target);
  if (!table.ok()) return table.error();

  Recordset& rows = *opened.value();
  std::size_t count = 0;
  while (!rows.AtEnd()) {
    const Result<LookupItem> item = ItemOf(rows);
    if (!item.ok()) return item.error();
    const Result<bool> added = table.value().AddIfMissing(item.value());
    if (!added.ok()) return added.error();
    if (added.value()) ++count;
    if (Status moved = rows.MoveNext(); !moved.ok()) return moved.error();
  }
  return count;
}

}  // namespace zent
