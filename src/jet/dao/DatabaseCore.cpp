#include "jet/dao/DatabaseCore.h"

#include "jet/format/FileHeader.h"
#include "jet/format/JetErrors.h"
#include "jet/sql/execution/ValidationRules.h"

namespace zent::jet {
namespace {

Status CheckPasswordOf(Pager& pager, const std::string& password) {
  const Result<PageView> page = pager.Read(0);
  if (!page.ok()) return page.status();
  const Result<FileHeader> header = ParseFileHeader(page.value().bytes());
  if (!header.ok()) return header.status();
  return CheckPassword(header.value(), password);
}

}  // namespace

Status DatabaseCore::Open(Sharing sharing, const std::string& password) {
  PagerOptions how;
  how.sharing = sharing;
  how.user = options.user;
  how.cache_bytes = options.cache_bytes;
  how.lock_attempts = options.lock_attempts;
  Result<std::unique_ptr<Pager>> opened = Pager::Open(storage, name, how);
  if (!opened.ok()) return opened.status();
  if (Status known = CheckPasswordOf(*opened.value(), password); !known.ok()) return known;
  Result<std::unique_ptr<Catalog>> read = Catalog::Open(*opened.value());
  if (!read.ok()) return read.status();
  pager = std::move(opened.value());
  catalog = std::move(read.value());
  catalog->SetTableHook([this](Table& table) {
    AddValidationRules(table, context());
    return Status();
  });
  return {};
}

Status DatabaseCore::CheckOpen() const {
  return catalog ? Status() : Status(JetError(kObjectInvalid));
}

Status DatabaseCore::Writable() const {
  if (Status open = CheckOpen(); !open.ok()) return open;
  return read_only ? Status(JetError(kReadOnly)) : pager->Writable();
}

EvaluationContext DatabaseCore::context() const {
  EvaluationContext context;
  context.now = now();
  return context;
}

void DatabaseCore::Close() {
  catalog.reset();
  pager.reset();
  levels = 0;
}

Status DatabaseCore::Begin() {
  if (pager->in_transaction()) return pager->BeginPart();
  if (Status begun = pager->Begin(); !begun.ok()) return begun;
  // Our rows must also go into the indexes that another user has made meanwhile.
  Status current = catalog->Refresh();
  if (current.ok()) return current;
  const Status undone = Rollback();
  return undone.ok() ? current : undone;
}

Status DatabaseCore::Commit() {
  Status done = pager->Commit();
  if (!done.ok()) catalog->Forget();
  return done;
}

Status DatabaseCore::Rollback() {
  Status done = pager->Rollback();
  catalog->Forget();
  return done;
}

Status DatabaseCore::ReadWhole(const std::function<Status()>& step) {
  const ReadScope scope(*pager);
  return scope.status().ok() ? step() : scope.status();
}

Status DatabaseCore::Change(const std::function<Status()>& change) {
  if (Status writable = Writable(); !writable.ok()) return writable;
  if (Status begun = Begin(); !begun.ok()) return begun;
  Status changed = change();
  if (changed.ok()) return Commit();
  const Status undone = Rollback();
  return undone.ok() ? changed : undone;
}

}  // namespace zent::jet
