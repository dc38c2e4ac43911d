#include "jet/dao/Database.h"

#include <algorithm>

#include "jet/dao/DatabaseCore.h"
#include "jet/dao/StatementRun.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

constexpr int kMostLevels = 5;

}  // namespace

Database::Database(std::unique_ptr<DatabaseCore> core) : core_(std::move(core)) {}

Database::~Database() {
  std::erase(core_->open_databases, core_.get());
  core_->Close();
}

const std::string& Database::name() const { return core_->name; }

std::string Database::version() const {
  return core_->pager && core_->pager->version() == JetVersion::Jet3 ? "3.0" : "4.0";
}

bool Database::updatable() const { return core_->Writable().ok(); }

Catalog* Database::catalog() { return core_->catalog.get(); }

Status Database::Close() {
  if (Status open = core_->CheckOpen(); !open.ok()) return open;
  std::erase(core_->open_databases, core_.get());
  core_->Close();
  return {};
}

Status Database::Execute(std::string_view statement) {
  core_->records_affected = 0;
  const Result<std::int64_t> rows = RunStatement(*core_, statement);
  if (!rows.ok()) return rows.status();
  core_->records_affected = rows.value();
  return {};
}

std::int64_t Database::records_affected() const { return core_->records_affected; }

Status Database::BeginTrans() {
  if (Status writable = core_->Writable(); !writable.ok()) return writable;
  if (core_->levels == kMostLevels) return JetError(kTransactionsTooDeep);
  if (Status begun = core_->Begin(); !begun.ok()) return begun;
  ++core_->levels;
  return {};
}

Status Database::CommitTrans() {
  if (Status open = core_->CheckOpen(); !open.ok()) return open;
  if (core_->levels == 0) return JetError(kNoTransaction);
  --core_->levels;
  return core_->Commit();
}

Status Database::Rollback() {
  if (Status open = core_->CheckOpen(); !open.ok()) return open;
  if (core_->levels == 0) return JetError(kNoTransaction);
  --core_->levels;
  return core_->Rollback();
}

}  // namespace zent::jet
