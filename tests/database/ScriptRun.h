#pragma once

#include <string>

#include "database/UpdateScript.h"
#include "database/fakes/DatabaseRun.h"

namespace zent::testing {

/// A database of version 3.5, its template, and a document that adds two fields.
struct ScriptRun : DatabaseRun {
  static constexpr const char* kDatabase = R"(D:\Data\Korvo.mdb)";
  static constexpr const char* kTemplate = R"(C:\Korvo\Customize\KorvoTPL.mdb)";
  static constexpr const char* kBackup = R"(D:\Data\Korvo 2006-05-04 03-02-01.mdb)";

  ScriptRun() {
    run.state.KorvoDataBaseName = kDatabase;
    for (const char* path : {kDatabase, kTemplate}) {
      PutDatabase(path).Add("Companies", {"Name"});
      access.Put(path).Add("version", {"Version"}, {{"3.5"}});
    }
    database().Find("Companies")->rows = {{"Zent"}};
    PutDocument("3.6",
                "<AddField><Name>Active</Name><Type>yes/no</Type><Size>1</Size></AddField>"
                "<AddField><Name>My Note</Name><Type>Text</Type><Size>80</Size></AddField>");
  }

  void PutDocument(const std::string& version, const std::string& fields,
                   const std::string& script = "") {
    machine.files.PutFile(R"(D:\Package\db.xml)",
                          "<UpdateDB><Version>" + version + "</Version><SQLServerScript>" + script +
                              "</SQLServerScript><Table><Name>Companies</Name>" + fields +
                              "</Table></UpdateDB>");
  }
  MemoryTables& database() { return access.Put(kDatabase); }
  MemoryTables& pattern() { return access.Put(kTemplate); }
  /// `call` fails in that database alone.
  void Refuse(const char* path, const std::string& call, RuntimeError error) {
    access.world.failures[std::string(path) + ": " + call] = std::move(error);
  }
  CommandRecord Update() { return Call(UpdateDatabase, {"upddb", "db.xml"}); }
};

}  // namespace zent::testing
