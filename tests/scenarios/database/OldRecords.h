#pragma once

#include <string>
#include <vector>

#include "scenarios/database/KorvoMachine.h"

namespace zent::testing {

/// The script of a database as an installation had it before links and lists were tables of their
/// own: every table that the conversion knows, with some dozens of rows, and nothing in them that
/// it would stumble over.
std::string OldRecords();
/// The script of the database that new values of lists and aliases come from.
std::string NewLists();

/// What a section of the conversion brings about, as a number of rows.
struct SectionCount {
  const char* section;
  const char* counted;  ///< the table, and which of its rows
  int before;
  int after;
};

/// In the order of the sections.
inline constexpr SectionCount kSectionCounts[] = {
    {"calendar links", "Links WHERE FromID LIKE 'RM*'", 0, 40},
    {"sent mail links", "Links WHERE FromID LIKE 'ES*' OR ToID LIKE 'ES*'", 0, 36},
    {"sent mail links", "EMailsSent WHERE SentToDisplayName IS NOT NULL", 0, 30},
    {"classifications", "Lookup WHERE LookupFieldName = 'Contacts.Kind'", 1, 25},
    {"calendar items", "Reminders WHERE RemType = 'Appointment'", 0, 45},
    {"lookup items", "Lookup WHERE LookupFieldName = 'City'", 10, 30},
    {"aliases", "Aliases", 2, 12},
    {"users of companies", "Companies WHERE UserIDs IS NOT NULL", 0, 10},
    {"users of contacts", "Contacts WHERE UserIDs IS NOT NULL", 10, 40},
    {"users of consultants", "Consultants WHERE UserIDs IS NOT NULL", 0, 20},
    {"users of requirements", "Requirements WHERE UserIDs IS NOT NULL", 0, 12},
    {"users of linked mails", "EMailsLinked WHERE UserIDs IS NOT NULL", 0, 8},
    {"users of sent mails", "EMailsSent WHERE UserIDs IS NOT NULL", 0, 30},
    {"users of reminders", "Reminders WHERE UserIDs IS NOT NULL", 0, 60},
    {"manual links", "MLinkInfo", 0, 2},
};

/// These numbers of a database, in that order; what was said instead when it cannot be read.
std::vector<std::string> SectionCountsOf(const KorvoMachine& machine,
                                         const std::filesystem::path& file);

}  // namespace zent::testing
