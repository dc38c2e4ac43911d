#include "jet/dao/StatementRun.h"

#include <memory>
#include <variant>

#include "base/CaseFold.h"
#include "jet/dao/DatabaseCore.h"
#include "jet/format/JetErrors.h"
#include "jet/sql/execution/Execution.h"
#include "jet/sql/syntax/Parser.h"

namespace zent::jet {
namespace {

/// The other file of a statement: one that is open already, or one of its own.
class OtherFile {
 public:
  explicit OtherFile(DatabaseCore& core) : core_(core) {}

  /// Opens it, and a transaction in it.
  Result<Catalog*> Open(std::string_view path) {
    if (SameName(path, core_.name)) return core_.catalog.get();
    if (begun_) return other_->catalog.get();
    for (DatabaseCore* const open : core_.open_databases) {
      if (open->catalog && SameName(path, open->name)) other_ = open;
    }
    if (other_ == nullptr) {
      if (Status opened = OpenFile(path); !opened.ok()) return opened.error();
    }
    if (Status writable = other_->Writable(); !writable.ok()) return writable.error();
    if (Status begun = other_->Begin(); !begun.ok()) return begun.error();
    begun_ = true;
    return other_->catalog.get();
  }

  Status Commit() {
    const bool begun = std::exchange(begun_, false);
    return begun ? other_->Commit() : Status();
  }

  ~OtherFile() {
    if (begun_) static_cast<void>(other_->Rollback());
  }
  OtherFile(const OtherFile&) = delete;
  OtherFile& operator=(const OtherFile&) = delete;

 private:
  Status OpenFile(std::string_view path) {
    own_ = std::make_unique<DatabaseCore>(core_.storage, core_.options, core_.open_databases);
    own_->name = path;
    if (Status opened = own_->Open(Sharing::Shared, {}); !opened.ok()) return opened;
    other_ = own_.get();
    return {};
  }

  DatabaseCore& core_;
  std::unique_ptr<DatabaseCore> own_;
  DatabaseCore* other_ = nullptr;
  bool begun_ = false;
};

bool OnlyReads(const Statement& statement) {
  const auto* const select = std::get_if<SelectStatement>(&statement);
  return select != nullptr && select->into.empty();
}

}  // namespace

Result<std::int64_t> RunStatement(DatabaseCore& core, std::string_view statement) {
  if (Status open = core.CheckOpen(); !open.ok()) return open.error();
  const Result<Statement> parsed = ParseStatement(statement);
  if (!parsed.ok()) return parsed.error();
  if (OnlyReads(parsed.value())) return JetError(kSelectNotExecuted);
  OtherFile other(core);
  SqlSession session{.catalog = *core.catalog, .context = core.context()};
  session.open_other = [&other](std::string_view path) { return other.Open(path); };
  std::int64_t rows = 0;
  const auto run = [&]() -> Status {
    const Result<std::int64_t> changed = jet::Execute(session, parsed.value());
    if (!changed.ok()) return changed.status();
    rows = changed.value();
    return other.Commit();
  };
  const std::string_view target = TargetFileOf(parsed.value());
  // A file that is only read need not be writable.
  const bool reads = !target.empty() && !SameName(target, core.name);
  const Status done = reads ? core.ReadWhole(run) : core.Change(run);
  if (!done.ok()) return done.error();
  return rows;
}

}  // namespace zent::jet
