#include <algorithm>
#include <array>
#include <optional>

#include "base/Text.h"
#include "dataupdate/Conversion.h"
#include "lib/FuncLib.h"

// The sections that restate rows where they are: calendar items, and who sees a record.

namespace zent {
namespace {

constexpr std::size_t kRowsBetweenCounts = 100;
constexpr std::string_view kAllUsers = "(All)";

struct Restated {
  std::string_view old_text;
  std::string_view new_text;
};

constexpr std::array kAppointmentTypes = {
    Restated{"Phone Call", "Call"}, Restated{"EMail", "EMail"}, Restated{"Meeting", "Meeting"}};
constexpr std::array kEventTypes = {Restated{"DOB", "Birthday"}, Restated{"DOM", "Anniversary"},
                                    Restated{"DOE", "Employment Date"},
                                    Restated{"DOT", "Termination Date"}};

template <std::size_t kSize>
std::optional<std::string> NewTextOf(const std::array<Restated, kSize>& table,
                                     const std::string& old_text) {
  const auto* const found = std::find_if(
      table.begin(), table.end(), [&](const Restated& row) { return row.old_text == old_text; });
  if (found == table.end()) return std::nullopt;
  return std::string(found->new_text);
}

FieldChanges RetypedAppointment(Conversion& conversion, Recordset& row) {
  const auto field = conversion.Text(row, "RemField");
  if (!field) return {};
  return {{"RemType", "Appointment"},
          {"ApptType", NewTextOf(kAppointmentTypes, *field).value_or("Other")},
          {"RemField", ""}};
}

FieldChanges RetypedEvent(Conversion& conversion, Recordset& row) {
  const auto field = conversion.Text(row, "RemField");
  if (!field) return {};
  auto kind = NewTextOf(kEventTypes, *field);
  if (!kind) kind = conversion.Text(row, "Categories");
  if (!kind) return {};
  return {{"RemType", "Appointment"},
          {"ApptType", "Event"},
          {"ApptSubType", *kind},
          {"Categories", ""}};
}

/// What a row of an old type becomes; nothing for a row of another type, and for one of which too
/// little can be read.
FieldChanges RetypedRow(Conversion& conversion, Recordset& row) {
  const auto type = conversion.Text(row, "RemType");
  if (type == "Appt") return RetypedAppointment(conversion, row);
  if (type == "Task") return {{"RemType", "Appointment"}, {"ApptType", "Task"}};
  if (type == "DayEvent") return RetypedEvent(conversion, row);
  return {};
}

struct UsersOfTable {
  std::string_view table;
  std::string_view owner;  ///< the field that names the user; empty: every user
};

constexpr std::array kTablesWithUsers = {
    UsersOfTable{"Companies", {}},       UsersOfTable{"Contacts", {}},
    UsersOfTable{"Consultants", {}},     UsersOfTable{"Requirements", {}},
    UsersOfTable{"EMailsLinked", {}},    UsersOfTable{"EMailsSent", "SentFromName"},
    UsersOfTable{"Reminders", "Owners"},
};

}  // namespace

std::string UserList(std::string_view user) { return "," + std::string(user) + ","; }

std::string UserOf(std::string_view owner) {
  const std::string_view name = TrimBlanks(owner);
  const std::string_view first = name.substr(0, name.find(' '));
  return std::string(IsBlank(first) ? kAllUsers : first);
}

void RetypeReminders(Conversion& conversion) {
  conversion.Section("Updating Calendar items", [&] {
    conversion.ForEachRow(conversion.korvo, "Reminders", RecordsetUse::Change, [&](Recordset& row) {
      const FieldChanges changes = RetypedRow(conversion, row);
      if (!changes.empty()) conversion.Change(row, changes);
    });
  });
}

void FillUsers(Conversion& conversion) {
  for (const UsersOfTable& users : kTablesWithUsers) {
    conversion.count = 0;
    conversion.Section("Updating UserIDs in " + std::string(users.table), [&] {
      conversion.ForEachRow(
          conversion.korvo, users.table, RecordsetUse::Change, [&](Recordset& row) {
            ++conversion.count;
            const auto list = conversion.Text(row, "UserIDs");
            if (!list || !IsBlank(*list)) return;
            const auto owner =
                users.owner.empty() ? std::string() : conversion.Text(row, users.owner);
            if (owner) conversion.Change(row, {{"UserIDs", UserList(UserOf(*owner))}});
            if (conversion.count % kRowsBetweenCounts == 0) conversion.ShowCount(" (", ")");
          });
    });
  }
}

}  // namespace zent
