#include "dataupdate/DataConversion.h"

#include "dataupdate/Conversion.h"

namespace zent {

void Conversion::Section(std::string_view heading, const std::function<void()>& section) {
  run.ShowMsg(heading);
  run.MarkCounter();
  const bool begun = next.After(korvo.BeginTransaction());
  section();
  links_.reset();
  if (!begun || next.After(korvo.Commit())) return;
  // A server's transaction is open still, and the next section wants one of its own. What cannot be
  // rolled back now is when it is closed.
  if (korvo.InTransaction()) static_cast<void>(korvo.Rollback().ok());
}

void Conversion::ForEachRow(OpenedDatabase& database, std::string_view rows_of, RecordsetUse use,
                            const std::function<void(Recordset&)>& visit) {
  const auto opened = next.After(database.OpenRecordset(rows_of, use));
  if (!opened) return;
  Recordset& rows = **opened;
  while (!rows.AtEnd()) {
    visit(rows);
    if (!next.After(rows.MoveNext())) return;
  }
}

std::optional<std::string> Conversion::Text(Recordset& row, std::string_view field) {
  return next.After(FieldText(row, field));
}

void Conversion::Change(Recordset& row, const FieldChanges& changes) {
  next.After(ChangeRow(row, changes));
}

std::optional<std::string> Conversion::FirstOf(std::string_view query, std::string_view field) {
  const auto found = next.After(korvo.OpenRecordset(query, RecordsetUse::Read));
  if (!found || (*found)->AtEnd()) return std::nullopt;
  return Text(**found, field);
}

void Conversion::AddLink(const std::optional<std::string>& from,
                         const std::optional<std::string>& to) {
  if (!from || !to) return;
  if (links_ == nullptr) {
    auto opened = next.After(korvo.OpenRecordset("Links", RecordsetUse::Add));
    if (!opened) return;
    links_ = std::move(*opened);
  }
  constexpr std::int16_t kPlainLink = 1;
  next.After(AddRow(
      *links_, {{"FromID", *from}, {"ToID", *to}, {"Type", kPlainLink}, {"SubType", kPlainLink}}));
}

void Conversion::ShowCount(std::string_view before, std::string_view after) {
  run.ShowCounter(std::string(before) + std::to_string(count) + std::string(after));
}

void ConvertData(UpdateRun& run, OpenedDatabase& source, OpenedDatabase& korvo) {
  Conversion conversion(run, source, korvo);
  LinkReminders(conversion);
  LinkSentMail(conversion);
  conversion.count = 0;
  ListClassifications(conversion);
  RetypeReminders(conversion);
  ListLookupItems(conversion);
  AddAliases(conversion);
  FillUsers(conversion);
  DescribeLinks(conversion);
}

}  // namespace zent
