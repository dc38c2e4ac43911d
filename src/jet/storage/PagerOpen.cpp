#include <array>
#include <string>
#include <utility>

#include "jet/storage/PagerCore.h"
#include "jet/storage/StorageErrors.h"

namespace zent::jet {
namespace {

constexpr std::size_t kMostPageSize = 4096;

FileLocks::Patience PatienceOf(const PagerOptions& options) {
  return {.attempts = options.lock_attempts, .pause = options.lock_pause};
}

/// "Admin on PC1, Admin on PC2"; empty when nobody is known.
std::string NamesOfUsers(Storage& storage, const std::string& path) {
  const Result<std::vector<User>> users = LockFile::UsersOf(storage, path);
  std::string names;
  if (!users.ok()) return names;
  for (const User& user : users.value()) {
    if (!names.empty()) names += ", ";
    names += user.name + " on " + user.computer;
  }
  return names;
}

RuntimeError CannotOpen(const RuntimeError& error, Storage& storage, const std::string& path,
                        Sharing sharing) {
  RuntimeError dao = OpeningError(error, path, sharing);
  if (dao.number != kDatabaseInUse) return dao;
  const std::string names = NamesOfUsers(storage, path);
  if (!names.empty()) dao.description += " (" + names + ")";
  return dao;
}

/// The first page, as much of it as there is.
Result<std::vector<std::uint8_t>> ReadFirstPage(StoredFile& file) {
  std::vector<std::uint8_t> page(kMostPageSize);
  const Result<std::size_t> got = file.ReadAt(0, page);
  if (!got.ok()) return FileError(got.error());
  page.resize(got.value());
  return page;
}

/// The lock file of a database opened shared. Who only reads does without where none can be made.
Result<std::unique_ptr<LockFile>> EnterLockFile(Storage& storage, const std::string& path,
                                                const PagerOptions& options) {
  if (options.sharing == Sharing::Exclusive) return std::unique_ptr<LockFile>();
  Result<std::unique_ptr<LockFile>> entered = LockFile::Enter(storage, path, options.user);
  if (entered.ok() || options.sharing == Sharing::Shared) return entered;
  return std::unique_ptr<LockFile>();
}

/// As Recover, for a file that we may only read. A stamp may be that of a writer who is at it: only
/// one that stands there while we read is left over.
Status RecoverForReading(Storage& storage, const std::string& path, const PagerOptions& options,
                         StoredFile& file) {
  FileLocks locks(storage, file, false, PatienceOf(options));
  if (Status locked = locks.LockForReading(); !locked.ok()) return locked;
  const Result<std::optional<Stamp>> stamp = ReadStamp(file);
  locks.UnlockForReading();
  if (!stamp.ok()) return stamp.error();
  return stamp.value() ? RecoverByOpening(storage, path, options) : Status();
}

/// Undoes an interrupted transaction, so that the header can be trusted.
Status RecoverAtOpening(Storage& storage, const std::string& path, const PagerOptions& options,
                        StoredFile& file) {
  const Result<std::optional<Stamp>> stamp = ReadStamp(file);
  if (!stamp.ok()) return stamp.error();
  const bool exclusive = options.sharing == Sharing::Exclusive;
  if (stamp.value()) {
    if (options.sharing == Sharing::ReadOnly) {
      return RecoverForReading(storage, path, options, file);
    }
    FileLocks locks(storage, file, exclusive, PatienceOf(options));
    return Recover(storage, path, file, locks);
  }
  if (!exclusive) return {};  // one that stands there may be a writer's
  const Result<std::vector<std::uint8_t>> page = ReadFirstPage(file);
  if (!page.ok()) return page.error();
  return ClearLeftover(storage, path, DatabaseIdentity(page.value()));
}

}  // namespace

Status Recover(Storage& storage, const std::string& path, StoredFile& file, FileLocks& locks) {
  const bool had_writing = locks.writing();
  if (!had_writing) {
    if (Status locked = locks.LockForWriting(true); !locked.ok()) return locked;
  }
  Status done = locks.LockOutReaders();
  if (done.ok()) {
    // Someone else may have done it while we waited.
    const Result<std::optional<Stamp>> stamp = ReadStamp(file);
    if (!stamp.ok()) {
      done = stamp.error();
    } else if (stamp.value()) {
      done = UndoInterrupted(storage, path, *stamp.value(), file);
    }
    locks.AdmitReaders(false);
  }
  if (!had_writing) locks.UnlockForWriting();
  return done;
}

Status RecoverByOpening(Storage& storage, const std::string& path, const PagerOptions& options) {
  const Result<std::unique_ptr<StoredFile>> file = storage.Open(path, Sharing::Shared);
  if (!file.ok()) {
    return JetErrorBecause(kCannotOpenFile,
                           "a change was interrupted; undoing it needs the right to write", path);
  }
  FileLocks locks(storage, *file.value(), false, PatienceOf(options));
  return Recover(storage, path, *file.value(), locks);
}

Result<OpenedFile> OpenDatabaseFile(Storage& storage, const std::string& path,
                                    const PagerOptions& options) {
  Result<std::unique_ptr<StoredFile>> file = storage.Open(path, options.sharing);
  if (!file.ok()) return CannotOpen(file.error(), storage, path, options.sharing);
  const Result<std::vector<std::uint8_t>> start = ReadFirstPage(*file.value());
  if (!start.ok()) return start.error();
  const Result<JetVersion> version = ReadVersion(start.value());
  if (!version.ok()) return version.error();

  // Where the system does not keep others from opening the file, their slots tell of them.
  if (options.sharing == Sharing::Exclusive && LockFile::IsInUse(storage, path)) {
    return CannotOpen(StandardError(kPermissionDenied), storage, path, options.sharing);
  }
  Result<std::unique_ptr<LockFile>> lock_file = EnterLockFile(storage, path, options);
  if (!lock_file.ok()) return lock_file.error();
  if (version.value() == JetVersion::Jet4) {
    Status recovered = RecoverAtOpening(storage, path, options, *file.value());
    if (!recovered.ok()) return recovered.error();
  }
  const Result<std::vector<std::uint8_t>> page = ReadFirstPage(*file.value());
  if (!page.ok()) return page.error();
  Result<FileHeader> header = ParseFileHeader(page.value());
  if (!header.ok()) return header.error();
  return OpenedFile{.file = std::move(file.value()),
                    .lock_file = std::move(lock_file.value()),
                    .header = std::move(header.value())};
}

Pager::Core::Core(Storage& a_storage, std::string a_path, const PagerOptions& an_options,
                  OpenedFile opened)
    : storage(a_storage),
      path(std::move(a_path)),
      options(an_options),
      exclusive(an_options.sharing == Sharing::Exclusive),
      header(std::move(opened.header)),
      layout(LayoutOf(header.version)),
      file(std::move(opened.file)),
      lock_file(std::move(opened.lock_file)),
      locks(storage, *file, exclusive, PatienceOf(options)),
      pages(*file, layout.page_size, header.database_key, counters),
      cache(layout.page_size, std::max<std::size_t>(options.cache_bytes / layout.page_size, 16)),
      undo(storage, path, pages, counters) {}

Result<std::unique_ptr<Pager>> Pager::Open(Storage& storage, std::string_view path,
                                           const PagerOptions& options) {
  Result<OpenedFile> opened = OpenDatabaseFile(storage, std::string(path), options);
  if (!opened.ok()) return opened.error();
  std::unique_ptr<Pager> pager(new Pager(
      std::make_unique<Core>(storage, std::string(path), options, std::move(opened.value()))));
  // What cannot be read at all is said now.
  Core& core = *pager->core_;
  const Status readable = core.exclusive ? core.Refresh() : core.Enter();
  core.locks.UnlockForReading();
  if (!readable.ok()) return readable.error();
  return pager;
}

Result<std::unique_ptr<Pager>> Pager::Create(Storage& storage, std::string_view path,
                                             ByteView header_page, const PagerOptions& options) {
  const std::string name(path);
  {
    const Result<FileHeader> header = ParseFileHeader(header_page);
    if (!header.ok()) return header.error();
    Result<std::unique_ptr<StoredFile>> file =
        storage.Create(name, Sharing::Exclusive, options.like);
    if (!file.ok()) return CannotOpen(file.error(), storage, name, Sharing::Exclusive);
    const std::size_t page_size = LayoutOf(header.value().version).page_size;
    Status made = file.value()->WriteAt(0, header_page.first(page_size));
    if (made.ok()) made = file.value()->Flush();
    if (made.ok()) made = storage.FlushFolder(name);
    if (!made.ok()) {
      const RuntimeError error = FileError(made.error());
      file.value().reset();  // what is open cannot be deleted on every system
      static_cast<void>(storage.Delete(name));
      return error;
    }
  }
  PagerOptions exclusive = options;
  exclusive.sharing = Sharing::Exclusive;
  return Open(storage, path, exclusive);
}

}  // namespace zent::jet
