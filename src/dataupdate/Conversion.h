#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "database/port/OpenedDatabase.h"
#include "dataupdate/NextStatement.h"
#include "dataupdate/RowChange.h"
#include "driver/run/UpdateRun.h"

namespace zent {

/// What the sections of the conversion share, see DataConversion.h: the databases, the count that
/// goes on from section to section, and statements that go on after an error.
class Conversion {
 public:
  Conversion(UpdateRun& update_run, OpenedDatabase& source_database, OpenedDatabase& korvo_database)
      : run(update_run), source(source_database), korvo(korvo_database), next(update_run) {}

  UpdateRun& run;
  OpenedDatabase& source;
  OpenedDatabase& korvo;
  NextStatement next;
  std::size_t count = 0;

  /// Shows the heading and runs the section as one transaction.
  void Section(std::string_view heading, const std::function<void()>& section);

  /// Calls `visit` on each row of a table or query, which stands on it.
  void ForEachRow(OpenedDatabase& database, std::string_view rows_of, RecordsetUse use,
                  const std::function<void(Recordset&)>& visit);
  /// A field as text; nothing after an error: what needs it is then left out.
  std::optional<std::string> Text(Recordset& row, std::string_view field);
  /// The field of the first row of a query; nothing when there is none, and after an error.
  std::optional<std::string> FirstOf(std::string_view query, std::string_view field);

  void Change(Recordset& row, const FieldChanges& changes);
  /// Adds a row of `Links`, unless one of its ends could not be read.
  void AddLink(const std::optional<std::string>& from, const std::optional<std::string>& to);
  void ShowCount(std::string_view before, std::string_view after);

 private:
  std::unique_ptr<Recordset> links_;  ///< to add to; of the present section
};

// The sections, in their order.
void LinkReminders(Conversion& conversion);
void LinkSentMail(Conversion& conversion);
void ListClassifications(Conversion& conversion);
void RetypeReminders(Conversion& conversion);
void ListLookupItems(Conversion& conversion);
void AddAliases(Conversion& conversion);
void FillUsers(Conversion& conversion);
void DescribeLinks(Conversion& conversion);

/// The identifier of a consultant on a line of the text that a sent resume keeps of its receivers:
/// what stands between the tenth character and the first ";" behind it. Empty for other lines.
std::string ConsultantOn(std::string_view line);

/// The list of users who see a record: the names between commas, with one at each end.
std::string UserList(std::string_view user);
/// The user of a record that was shown to nobody in particular: the first word of `owner`, or the
/// one that stands for all.
std::string UserOf(std::string_view owner);

}  // namespace zent
