#include "scenarios/database/OldRecords.h"

#include <initializer_list>
#include <sstream>

#include "support/TempFolder.h"

namespace zent::testing {
namespace {

constexpr const char* kNull = "NULL";

std::string Tables() { return ReadHostFile(ZENT_SAMPLE_DATABASE "/common.sql"); }

std::string Text(const std::string& text) { return "'" + text + "'"; }

std::string Key(const char* prefix, int number) {
  const std::string digits = std::to_string(number);
  return Text(prefix + std::string(8 - digits.size(), '0') + digits);
}

std::string Insert(const char* into, std::initializer_list<std::string> values) {
  std::string list;
  for (const std::string& value : values) list += (list.empty() ? "" : ", ") + value;
  return std::string("INSERT INTO ") + into + " VALUES (" + list + ");\n";
}

std::string Numbered(const char* text, int number) { return Text(text + std::to_string(number)); }

std::string People() {
  std::string script =
      "CREATE TABLE Companies (CompIntID TEXT(12), CompanyName TEXT(40), UserIDs TEXT(50));\n"
      "CREATE UNIQUE INDEX PrimaryKey ON Companies (CompIntID) WITH PRIMARY;\n";
  for (int i = 1; i <= 10; ++i) {
    script += Insert("Companies", {Key("CM", i), Numbered("Company ", i), kNull});
  }
  for (int i = 1; i <= 40; ++i) {
    script += Insert("Contacts (ContactIntID, DisplayName, UserIDs)",
                     {Key("CN", i), Numbered("Contact ", i), i % 4 == 0 ? Text(",max,") : kNull});
  }
  for (int i = 1; i <= 20; ++i) {
    script += Insert("Consultants (ConsIntID, ConsultantID, DisplayName)",
                     {Key("CS", i), Numbered("C-", i), Numbered("Consultant ", i)});
  }
  for (int i = 1; i <= 12; ++i) {
    script += Insert("Requirements (ReqIntID, Title)", {Key("RQ", i), Numbered("Requirement ", i)});
  }
  return script;
}

/// Every third mail went to a consultant, every tenth is a resume of two others.
std::string Mails() {
  std::string script;
  for (int i = 1; i <= 30; ++i) {
    const std::string info = "ConsultantC-" + std::to_string((i + 9) / 10) +
                             ";resume.doc\r\nCC        C-9;\r\nConsultantC-" +
                             std::to_string((i + 9) / 10 + 10) + ";\r\n";
    script += Insert("EMailsSent (EMSentIntID, SentToIntID, MailType, Info, SentFromName)",
                     {Key("ES", i), i % 3 == 0 ? Key("CS", i / 3) : Key("CN", i),
                      Text(i % 10 == 0 ? "Resume" : "Mail"), Text(info),
                      i % 2 == 0 ? Text(" Ada Lovelace") : kNull});
  }
  for (int i = 1; i <= 8; ++i) {
    script += Insert("EMailsLinked (EMLinkIntID, Subject)", {Key("EL", i), Numbered("Mail ", i)});
  }
  return script;
}

/// Two of three belong to a contact; the four types take turns, as do the kinds of two of them.
std::string Reminders() {
  constexpr const char* kTypes[] = {"Appt", "Task", "DayEvent", "Note"};
  constexpr const char* kAppointments[] = {"Phone Call", "EMail", "Meeting", "Lunch"};
  constexpr const char* kEvents[] = {"DOB", "DOM", "DOE", "DOT", "Fair"};
  std::string script;
  for (int i = 1; i <= 60; ++i) {
    const char* const kind = i % 4 == 2 ? kEvents[i / 4 % 5] : kAppointments[i / 4 % 4];
    script += Insert("Reminders (RemIntID, ItemIntID, RemType, RemField, Categories, Owners)",
                     {Key("RM", i), i % 3 == 0 ? kNull : Key("CN", i % 40 + 1), Text(kTypes[i % 4]),
                      Text(kind), Text("Trade"), i % 2 == 0 ? Text("  Grace Hopper ") : kNull});
  }
  return script;
}

std::string Lists(int cities, int aliases) {
  std::string script;
  for (int i = 1; i <= cities; ++i) {
    script += Insert("Lookup", {Text("City"), Numbered("Town ", i), kNull, Numbered("", i)});
  }
  for (int i = 1; i <= aliases; ++i) {
    script += Insert("Aliases", {Numbered("Name ", i), Numbered("Alias ", i)});
  }
  return script;
}

}  // namespace

std::string OldRecords() {
  std::string script = Tables() + People() + Mails() + Reminders() + Lists(10, 2);
  for (int i = 1; i <= 25; ++i) {
    script += Insert("Classifications", {Text("Contacts"), Text("Kind"), Numbered("Kind ", i)});
  }
  script += Insert("Lookup", {Text("Contacts.Kind"), Text("Kind 1"), Text("ours"), Text("7")});
  script += Insert("Counters", {Text("SiteID"), Text("0")});
  constexpr const char* kLinks = "Links (FromID, ToID, [Type], SubType)";
  script += Insert(kLinks, {Key("CS", 1), Key("CN", 1), "1", "2"});
  script += Insert(kLinks, {Key("CS", 2), Key("RQ", 1), "3", "4"});
  script += Insert(kLinks, {Key("CN", 1), Key("CS", 1), "1", "1"});
  return script;
}

std::string NewLists() { return Tables() + Lists(30, 12); }

std::vector<std::string> SectionCountsOf(const KorvoMachine& machine,
                                         const std::filesystem::path& file) {
  std::string queries;
  for (const SectionCount& row : kSectionCounts) {
    queries += std::string("SELECT COUNT(*) AS n FROM ") + row.counted + ";";
  }
  // A line "n" stands before each number but the first.
  std::istringstream lines(machine.RowsOf(file, queries));
  std::vector<std::string> counts;
  for (std::string line; std::getline(lines, line);) {
    if (line != "n") counts.push_back(line);
  }
  return counts;
}

}  // namespace zent::testing
