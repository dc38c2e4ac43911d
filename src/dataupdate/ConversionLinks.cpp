#include <chrono>
#include <optional>

#include "base/Text.h"
#include "database/Counters.h"
#include "database/TranslateSQL.h"
#include "dataupdate/Conversion.h"
#include "lib/FuncLib.h"
#include "platform/Clock.h"

// The sections that make rows of `Links`, and of them rows of `MLinkInfo`.

namespace zent {
namespace {

constexpr std::size_t kLinksBetweenCounts = 100;

DateSerial SerialOf(const LocalTime& time) {
  constexpr std::chrono::sys_days kDayZero = std::chrono::year{1899} / 12 / 30;
  const std::chrono::sys_days day = std::chrono::year{time.year} / time.month / time.day;
  const auto seconds = std::chrono::hours(time.hour) + std::chrono::minutes(time.minute) +
                       std::chrono::seconds(time.second);
  constexpr double kSecondsOfDay = 24.0 * 60 * 60;
  return {static_cast<double>((day - kDayZero).count()) +
          static_cast<double>(seconds.count()) / kSecondsOfDay};
}

/// Links the consultants named in the text of a sent resume to the mail.
void LinkConsultants(Conversion& conversion, const std::string& info, const std::string& mail) {
  std::string_view rest = info;
  while (!rest.empty()) {
    const std::size_t end = rest.find(kLineBreak);
    const std::string consultant = ConsultantOn(rest.substr(0, end));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + kLineBreak.size());
    if (IsBlank(consultant)) continue;
    const auto key = conversion.FirstOf(
        TranslateSQL(conversion.run,
                     "Select ConsIntID From Consultants Where ConsultantID='" + consultant + "'"),
        "ConsIntID");
    if (!key) continue;
    conversion.AddLink(*key, mail);
    ++conversion.count;
  }
}

/// The name under which a receiver is shown, a contact or else a consultant; empty for neither.
std::string DisplayNameOf(Conversion& conversion, const std::string& receiver) {
  const std::string contact = TranslateSQL(
      conversion.run, "Select DisplayName From Contacts Where ContactIntID='" + receiver + "'");
  const auto rows =
      conversion.next.After(conversion.korvo.OpenRecordset(contact, RecordsetUse::Read));
  if (!rows) return {};
  if (!(*rows)->AtEnd()) return conversion.Text(**rows, "DisplayName").value_or("");
  const std::string consultant = TranslateSQL(
      conversion.run, "Select DisplayName From Consultants Where ConsIntID='" + receiver + "'");
  return conversion.FirstOf(consultant, "DisplayName").value_or("");
}

/// Each step needs only some of the fields: one that cannot be read costs no other step.
void LinkMail(Conversion& conversion, Recordset& row) {
  const auto mail = conversion.Text(row, "EMSentIntID");
  const auto receiver = conversion.Text(row, "SentToIntID");
  conversion.AddLink(mail, receiver);
  ++conversion.count;
  if (mail && conversion.Text(row, "MailType") == "Resume") {
    const auto info = conversion.Text(row, "Info");
    if (info && !IsBlank(*info)) LinkConsultants(conversion, *info, *mail);
  }
  if (!receiver) return;
  conversion.Change(row, {{"SentToDisplayName", DisplayNameOf(conversion, *receiver)}});
}

}  // namespace

std::string ConsultantOn(std::string_view line) {
  constexpr std::size_t kNameLength = 10;  // characters
  for (const std::string_view other : {"CC", "BCC", "Attach"}) {
    if (line.starts_with(other)) return {};
  }
  const std::string_view name = FirstCharacters(line, kNameLength);
  const std::string_view rest = line.substr(name.size());
  const std::size_t end = rest.find(';');
  if (IsBlank(name) || end == std::string_view::npos) return {};
  return std::string(rest.substr(0, end));
}

void LinkReminders(Conversion& conversion) {
  conversion.Section("Updating Calender Links ", [&] {
    conversion.ForEachRow(conversion.korvo, "Reminders", RecordsetUse::Read, [&](Recordset& row) {
      const auto item = conversion.Text(row, "ItemIntID");
      if (!item || IsBlank(*item)) return;
      conversion.AddLink(conversion.Text(row, "RemIntID"), item);
      if (++conversion.count % kLinksBetweenCounts != 0) return;
      conversion.run.ShowMsg("    Processed " + std::to_string(conversion.count));
    });
  });
}

void LinkSentMail(Conversion& conversion) {
  conversion.Section("Updating Sent Mail Links ", [&] {
    conversion.ForEachRow(conversion.korvo, "EMailsSent", RecordsetUse::Change,
                          [&](Recordset& row) {
                            LinkMail(conversion, row);
                            if (conversion.count % kLinksBetweenCounts == 0)
                              conversion.ShowCount("      ", " Links");
                          });
  });
}

void DescribeLinks(Conversion& conversion) {
  const std::string links = TranslateSQL(conversion.run,
                                         "Select * FROM Links where FromID LIKE 'CS*' AND (ToID "
                                         "LIKE 'CN*' OR ToID LIKE 'RQ*') ");
  conversion.Section("Updating Manual Links ", [&] {
    const auto described =
        conversion.next.After(conversion.korvo.OpenRecordset("MLinkInfo", RecordsetUse::Add));
    if (!described) return;
    conversion.ForEachRow(conversion.korvo, links, RecordsetUse::Read, [&](Recordset& link) {
      std::string key;
      if (!GetNextNumber(conversion.run, conversion.korvo, "MLinkInfo", key)) return;
      FieldChanges changes = {{"MLinkIntID", key}};
      for (const char* field : {"FromID", "ToID", "Type", "SubType"}) {
        const auto value = conversion.next.After(link.Get(field));
        if (!value) return;
        changes.push_back({field, *value});
      }
      for (const char* field : {"MLinkType", "MLinkSubType", "Subject", "Notes"}) {
        changes.push_back({field, ""});
      }
      const DateSerial now = SerialOf(conversion.run.platform.clock.Now());
      for (const char* field : {"DateTime", "CreateDate", "EditDate"}) {
        changes.push_back({field, now});
      }
      changes.push_back({"UserIDs", UserList(UserOf(""))});
      conversion.next.After(AddRow(**described, changes));
    });
  });
}

}  // namespace zent
