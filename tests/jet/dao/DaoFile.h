#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "jet/dao/Workspace.h"
#include "jet/fakes/MemoryStorage.h"

namespace zent::jet::testing {

inline constexpr std::string_view kFile = "C:\\Data\\Korvo.mdb";

/// A new database in memory with a table "People" (Id counter and primary key, Name text of 20 that
/// must be given, Age with the default 18, Note memo, Born, Member) of three rows: Ann, Bob, Cid.
class DaoFile {
 public:
  DaoFile();
  explicit DaoFile(std::string_view connect);

  MemoryStorage storage;
  Workspace workspace;
  std::unique_ptr<Database> db;

  void Run(std::string_view statement) {
    const Status done = db->Execute(statement);
    EXPECT_TRUE(done.ok()) << statement << ": " << (done.ok() ? "" : done.error().description);
  }
  std::unique_ptr<Recordset> Rows(std::string_view source,
                                  RecordsetType type = RecordsetType::Default) {
    Result<std::unique_ptr<Recordset>> rows = db->OpenRecordset(source, type);
    EXPECT_TRUE(rows.ok()) << source << ": " << (rows.ok() ? "" : rows.error().description);
    return rows.ok() ? std::move(rows.value()) : nullptr;
  }
  /// The names of all rows, "Ann Bob Cid", read by a query.
  std::string Names() { return NamesOf(*Rows("SELECT Name FROM People ORDER BY Id")); }
  static std::string NamesOf(Recordset& rows);
};

/// What an error says; empty without one.
inline std::string Told(const Status& status) {
  return status.ok() ? "" : status.error().description;
}

/// The text of a field; what is wrong where there is none.
std::string TextIn(Recordset& rows, const ItemKey& field);

/// A new table: People, as above.
TableDef PeopleTable();

}  // namespace zent::jet::testing
