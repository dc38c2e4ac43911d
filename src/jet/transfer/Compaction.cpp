#include "jet/transfer/Compaction.h"

#include "jet/catalog/Catalog.h"
#include "jet/format/FileHeader.h"
#include "jet/format/JetErrors.h"
#include "jet/storage/Journal.h"
#include "jet/storage/StorageErrors.h"
#include "jet/transfer/FileCopier.h"
#include "jet/transfer/NewFile.h"

namespace zent::jet {
namespace {

constexpr std::string_view kNewEnding = ".zent-new";

RuntimeError TargetExists(const std::string& path) {
  return {.number = kDatabaseExists,
          .description = "Database already exists. (" + path + ")",
          .source = "DAO"};
}

Status CheckTarget(Storage& storage, const std::string& path) {
  const Result<bool> exists = storage.Exists(path);
  if (!exists.ok()) return OpeningError(exists.error(), path, Sharing::Exclusive);
  return exists.value() ? Status(TargetExists(path)) : Status();
}

/// Deletes what an interrupted run or a failed one left.
Status RemoveLeftover(Storage& storage, const std::string& path) {
  for (const std::string& name : {Journal::PathFor(path), path}) {
    const Result<bool> exists = storage.Exists(name);
    if (!exists.ok()) return OpeningError(exists.error(), name, Sharing::Exclusive);
    if (!exists.value()) continue;
    if (Status deleted = storage.Delete(name); !deleted.ok()) {
      return OpeningError(deleted.error(), name, Sharing::Exclusive);
    }
  }
  return {};
}

Result<FileHeader> HeaderOf(Pager& pager) {
  const Result<PageView> page = pager.Read(0);
  if (!page.ok()) return page.error();
  return ParseFileHeader(page.value().bytes());
}

/// The file of the copy, closed and on disk.
Status WriteCopy(Storage& storage, Catalog& source, const FileHeader& header,
                 const std::string& path, const Compaction& compaction) {
  PagerOptions options;
  options.cache_bytes = compaction.cache_bytes;
  options.like = compaction.source;
  const Result<std::unique_ptr<Pager>> target = MakeNewFile(storage, path, header, options);
  if (!target.ok()) return target.status();
  FileCopier copier(source, *target.value(), compaction.sort_bytes);
  if (Status copied = copier.Run(); !copied.ok()) return copied;
  return target.value()->Commit();
}

/// Gives the finished file its name, unless someone else came first.
Status Publish(Storage& storage, const std::string& new_path, const std::string& target) {
  if (Status is_new = CheckTarget(storage, target); !is_new.ok()) return is_new;
  if (Status renamed = storage.Rename(new_path, target); !renamed.ok()) return renamed;
  return storage.FlushFolder(target);
}

/// The header of the new file, once it is known that the source may be copied.
Result<FileHeader> CheckSource(Pager& pager, const Compaction& compaction) {
  Result<FileHeader> header = HeaderOf(pager);
  if (!header.ok()) return header;
  if (Status known = CheckPassword(header.value(), compaction.password); !known.ok()) {
    return known.error();
  }
  if (header.value().version != JetVersion::Jet4) {
    return JetErrorBecause(kReadOnly, "a database of Access 97 cannot be compacted");
  }
  if (compaction.new_password) header.value().password = *compaction.new_password;
  return header;
}

}  // namespace

Status CompactDatabase(Storage& storage, const Compaction& compaction) {
  if (Status is_new = CheckTarget(storage, compaction.target); !is_new.ok()) return is_new;
  PagerOptions options;
  options.cache_bytes = compaction.cache_bytes;
  const Result<std::unique_ptr<Pager>> pager = Pager::Open(storage, compaction.source, options);
  if (!pager.ok()) return pager.status();
  const Result<FileHeader> header = CheckSource(*pager.value(), compaction);
  if (!header.ok()) return header.status();
  const Result<std::unique_ptr<Catalog>> source = Catalog::Open(*pager.value());
  if (!source.ok()) return source.status();

  const std::string new_path = compaction.target + std::string(kNewEnding);
  if (Status removed = RemoveLeftover(storage, new_path); !removed.ok()) return removed;
  Status done = WriteCopy(storage, *source.value(), header.value(), new_path, compaction);
  if (done.ok()) done = Publish(storage, new_path, compaction.target);
  if (done.ok()) return {};
  static_cast<void>(RemoveLeftover(storage, new_path));
  return AsFileStatus(done);
}

}  // namespace zent::jet
