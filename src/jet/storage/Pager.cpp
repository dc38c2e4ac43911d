#include "jet/storage/Pager.h"

#include <utility>

#include "jet/storage/PagerCore.h"

namespace zent::jet {

Pager::Pager(std::unique_ptr<Core> core) : core_(std::move(core)) {}

Pager::~Pager() {
  Core& core = *core_;
  // What cannot be undone now is undone at the next open, by the journal.
  if (core.depth > 0) static_cast<void>(core.Abandon({}));
  if (!core.broken) core.undo.RemoveJournal();
}

JetVersion Pager::version() const { return core_->header.version; }
const Layout& Pager::layout() const { return core_->layout; }
std::size_t Pager::page_size() const { return core_->layout.page_size; }
PageNumber Pager::page_count() const { return core_->page_count; }
const std::string& Pager::path() const { return core_->path; }
Sharing Pager::sharing() const { return core_->options.sharing; }
const PagerCounters& Pager::counters() const { return core_->counters; }
bool Pager::in_transaction() const { return core_->depth > 0; }

Status Pager::Writable() const {
  if (core_->options.sharing == Sharing::ReadOnly) {
    return JetErrorBecause(kReadOnly, "it was opened to be read only");
  }
  if (core_->header.version == JetVersion::Jet3) {
    return JetErrorBecause(kReadOnly, "databases of Access 97 can only be read");
  }
  return {};
}

Result<std::vector<User>> Pager::Users() {
  if (core_->exclusive) return std::vector<User>();
  if (core_->lock_file) return core_->lock_file->Users();
  return LockFile::UsersOf(core_->storage, core_->path);
}

}  // namespace zent::jet
