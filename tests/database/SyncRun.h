#pragma once

#include <string>
#include <vector>

#include "database/StructureSync.h"
#include "database/fakes/DatabaseRun.h"

namespace zent::testing {

inline constexpr const char* kSyncDatabase = R"(D:\Data\Korvo.mdb)";
inline constexpr const char* kSyncTemplate = R"(D:\Package\KorvoTPL.mdb)";
// The clock starts at this time.
inline constexpr const char* kSyncBackup = R"(D:\Data\Korvo 2006-05-04 03-02-01.mdb)";

/// A run over a database of version 3.5 and a template of version 3.6, which alone has the table
/// "Added".
struct SyncRun : DatabaseRun {
  SyncRun() {
    database().Add("Companies", {"Name"}, {{"Zent"}, {"Korvo"}});
    database().Add("version", {"Version"}, {{"3.5"}});
    pattern().Add("Companies", {"Name"});
    pattern().Add("Added", {"Name"}, {{"a row of the template"}});
    pattern().Add("version", {"Version"}, {{"3.6"}});
    machine.files.PutFile(kSyncDatabase, "database");
    machine.files.PutFile(kSyncTemplate, "template");
  }

  MemoryTables& database() { return access.Put(kSyncDatabase); }
  MemoryTables& pattern() { return access.Put(kSyncTemplate); }

  /// Runs the command; its record.
  CommandRecord Sync(const TokenList& tokens = {"stdf", kSyncTemplate, kSyncDatabase}) {
    return Call([](UpdateRun& update,
                   const TokenList& line) { return SynchroniseStructure(update, line, TopUp); },
                tokens);
  }

  /// Tells that it was called.
  static Result<std::size_t> TopUp(UpdateRun& update, OpenedDatabase& source,
                                   OpenedDatabase& target) {
    update.ShowMsg("Top-up: " + source.Name() + " > " + target.Name());
    return std::size_t{1};
  }
};

}  // namespace zent::testing
