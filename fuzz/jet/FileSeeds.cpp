// Writes the seeds of the fuzz target of whole files into a folder: small databases that the engine
// makes. FileSeeds FOLDER
#include <cstdio>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "jet/catalog/Catalog.h"
#include "jet/catalog/Transaction.h"
#include "jet/fakes/MemoryStorage.h"
#include "jet/schema/NewDatabase.h"
#include "jet/sql/execution/Execution.h"
#include "jet/sql/syntax/Parser.h"

namespace zent::jet {
namespace {

constexpr std::string_view kPath = "C:\\Korvo.mdb";

using Statements = std::initializer_list<std::string_view>;

bool Run(Catalog& catalog, std::string_view text) {
  const Result<Statement> statement = ParseStatement(text);
  SqlSession session{.catalog = catalog, .context = {.now = {38383.75}}};
  Result<Transaction> transaction = Transaction::Begin(catalog);
  return statement.ok() && transaction.ok() && Execute(session, statement.value()).ok() &&
         transaction.value().Commit().ok();
}

/// Writes a file that such statements make; whether that went well.
bool Write(const std::string& path, Statements statements) {
  testing::MemoryStorage storage;
  if (!CreateDatabase(storage, kPath, {}).ok()) return false;
  {
    const Result<std::unique_ptr<Pager>> pager =
        Pager::Open(storage, kPath, {.sharing = Sharing::Exclusive});
    if (!pager.ok()) return false;
    const Result<std::unique_ptr<Catalog>> catalog = Catalog::Open(*pager.value());
    if (!catalog.ok()) return false;
    for (const std::string_view statement : statements) {
      if (!Run(*catalog.value(), statement)) return false;
    }
  }
  std::ofstream file(path, std::ios::binary);
  file << storage.Bytes(kPath);
  return file.good();
}

bool WriteAll(const std::string& folder) {
  const std::string memo =
      "INSERT INTO t VALUES (3, 'z', TRUE, NULL, '" + std::string(6000, 'm') + "')";
  return Write(folder + "/empty", {}) &&
         Write(folder + "/tables",
               {"CREATE TABLE t (a LONG PRIMARY KEY, b TEXT(20), c YESNO, d DATETIME, e MEMO)",
                "CREATE INDEX i ON t (b, c DESC)", "CREATE TABLE u (a COUNTER, b TEXT(20))",
                "INSERT INTO t VALUES (1, 'x', TRUE, #1/2/2005#, 'memo')",
                "INSERT INTO t VALUES (2, NULL, FALSE, NULL, NULL)", memo,
                "INSERT INTO u (b) VALUES ('y')"});
}

}  // namespace
}  // namespace zent::jet

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("FileSeeds FOLDER\n", stderr);
    return 64;
  }
  return zent::jet::WriteAll(argv[1]) ? 0 : 1;
}
