#pragma once

#include "database/fakes/FakeEngines.h"
#include "fakes/run/RunBuilder.h"

namespace zent::testing {

/// A run over an installed Korvo, with engines of both kinds.
struct DatabaseRun : RunBuilder {
  explicit DatabaseRun(RunOptions options = {}) : RunBuilder(options) {
    machine.InstallKorvo();
    run.database.access = &access;
    run.database.server = &server;
    // A database is a file, too: one that is copied, or comes of a compaction, is a database.
    machine.files.on_copied = [this](std::string_view source, std::string_view target) {
      const auto found = access.world.databases.find(std::string(source));
      if (found != access.world.databases.end()) {
        access.world.databases[std::string(target)] = MemoryTables(found->second);
      }
    };
    access.on_compacted = [this](std::string_view target) {
      machine.files.PutFile(target, "compacted");
    };
  }

  /// Adds a database with its file.
  MemoryTables& PutDatabase(const std::string& path) {
    machine.files.PutFile(path, "database");
    return access.Put(path);
  }

  /// Sets `IsOracle` where the application keeps it.
  void SetIsOracle(const std::string& text) {
    machine.files.PutFile(R"(C:\Ini\Korvo.ini)", "[General]\r\nIsOracle=" + text + "\r\n");
  }

  FakeAccessEngine access;
  FakeServerEngine server;
};

}  // namespace zent::testing
