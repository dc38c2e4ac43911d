// Any text as a statement: it is refused, or printed and parsed again it is the same; then it runs
// on a small file in memory, whatever comes of it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

#include "jet/catalog/Catalog.h"
#include "jet/catalog/Transaction.h"
#include "jet/fakes/MemoryStorage.h"
#include "jet/format/JetErrors.h"
#include "jet/schema/NewDatabase.h"
#include "jet/sql/execution/Execution.h"
#include "jet/sql/syntax/Parser.h"
#include "jet/sql/syntax/Printer.h"

namespace zent::jet {
namespace {

constexpr std::string_view kPath = "C:\\Korvo.mdb";
constexpr int kMostRows = 1000;

constexpr std::string_view kTables[] = {
    "CREATE TABLE t (a LONG PRIMARY KEY, b TEXT(20), c YESNO, d DATETIME, e MEMO)",
    "CREATE INDEX i ON t (b, c DESC)",
    "CREATE TABLE u (a LONG, b TEXT(20))",
    "INSERT INTO t VALUES (1, 'x', TRUE, #1/2/2005#, 'memo')",
    "INSERT INTO t VALUES (2, NULL, FALSE, NULL, NULL)",
    "INSERT INTO u VALUES (1, 'y')",
};

void Require(bool holds) {
  if (!holds) std::abort();
}

/// A file with two tables, made once.
const std::string& SmallFile();

class RunningFile {
 public:
  explicit RunningFile(const std::string* bytes) {
    if (bytes == nullptr) {
      Require(CreateDatabase(storage_, kPath, {}).ok());
    } else {
      storage_.Put(kPath, *bytes);
    }
    Result<std::unique_ptr<Pager>> pager =
        Pager::Open(storage_, kPath, {.sharing = Sharing::Exclusive});
    Require(pager.ok());
    pager_ = std::move(pager.value());
    Result<std::unique_ptr<Catalog>> catalog = Catalog::Open(*pager_);
    Require(catalog.ok());
    catalog_ = std::move(catalog.value());
  }

  bool Run(const Statement& statement) {
    SqlSession session{.catalog = *catalog_, .context = {.now = {38383.75}}};
    if (const auto* const select = std::get_if<SelectStatement>(&statement);
        select != nullptr && select->into.empty()) {
      const Result<std::unique_ptr<ResultSet>> rows = OpenQuery(session, *select);
      for (int i = 0; rows.ok() && i < kMostRows; ++i) {
        const Result<bool> found = rows.value()->Next();
        if (!found.ok() || !found.value()) break;
      }
      return rows.ok();
    }
    Result<Transaction> transaction = Transaction::Begin(*catalog_);
    Require(transaction.ok());
    return Execute(session, statement).ok() && transaction.value().Commit().ok();
  }

  std::string Close() {
    catalog_.reset();
    pager_.reset();
    return storage_.Bytes(kPath);
  }

 private:
  testing::MemoryStorage storage_;
  std::unique_ptr<Pager> pager_;
  std::unique_ptr<Catalog> catalog_;
};

const std::string& SmallFile() {
  static const std::string bytes = [] {
    RunningFile file(nullptr);
    for (const std::string_view statement : kTables) {
      Require(file.Run(ParseStatement(statement).value()));
    }
    return file.Close();
  }();
  return bytes;
}

}  // namespace
}  // namespace zent::jet

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const zent::Result<zent::jet::Statement> parsed = zent::jet::ParseStatement(text);
  if (!parsed.ok()) return 0;
  const zent::Result<zent::jet::Statement> again =
      zent::jet::ParseStatement(zent::jet::PrintStatement(parsed.value()));
  // The printed form may have brackets more, so that what was at the limit is beyond it.
  if (again.number() != zent::jet::kQueryTooComplex &&
      (!again.ok() || again.value() != parsed.value())) {
    std::abort();
  }
  zent::jet::RunningFile file(&zent::jet::SmallFile());
  (void)file.Run(parsed.value());
  return 0;
}
