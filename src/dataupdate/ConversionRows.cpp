#include <algorithm>
#include <array>

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
std::string NewTextOf(const std::array<Restated, kSize>& table, const std::string& old_text,
                      std::string_view otherwise) {
  const auto* const found = std::find_if(
      table.begin(), table.end(), [&](const Restated& row) { return row.old_text == old_text; });
  return std::string(found == table.end() ? otherwise : found->new_text);
}

/// What a row of an old type becomes; nothing for a row of another type.
FieldChanges RetypedRow(Conversion& conversion, Recordset& row) {
  const std::string type = conversion.Text(row, "RemType");
  const std::string field = conversion.Text(row, "RemField");
  if (type == "Appt") {
    return {{"RemType", "Appointment"},
            {"ApptType", NewTextOf(kAppointmentTypes, field, "Other")},
            {"RemField", ""}};
  }
  if (type == "Task") return {{"RemType", "Appointment"}, {"ApptType", "Task"}};
  if (type == "DayEvent") {
    const std::string categories = conversion.Text(row, "Categories");
    return {{"RemType", "Appointment"},
            {"ApptType", "Event"},
            {"ApptSubType", NewTextOf(kEventTypes, field, categories)},
            {"Categories", ""}};
  }
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
            if (!IsBlank(conversion.Text(row, "UserIDs"))) return;
            const std::string owner = users.owner.empty() ? "" : conversion.Text(row, users.owner);
            conversion.Change(row, {{"UserIDs", UserList(UserOf(owner))}});
            if (conversion.count % kRowsBetweenCounts == 0) conversion.ShowCount(" (", ")");
          });
    });
  }
}

}  // namespace zent
