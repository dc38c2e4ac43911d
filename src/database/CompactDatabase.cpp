#include "database/CompactDatabase.h"

#include "lib/FuncLib.h"

namespace zent {
namespace {

std::string TemporaryOf(const std::string& path) { return path + "_tmp"; }

}  // namespace

Status CompactDatabase(UpdateRun& run, const std::string& path, const std::string& password) {
  run.ShowMsg("Compacting " + path);
  if (run.database.access == nullptr) return StandardError(kCannotCreateObject);
  if (Status removed = RemoveLeftovers(run, path); !removed.ok()) return removed;
  const std::string temporary = TemporaryOf(path);
  const std::string connect = password.empty() ? "" : ";pwd=" + password;
  Status compacted = run.database.access->Compact(path, temporary, connect);
  if (!compacted.ok()) return compacted;

  // A move does not replace, and a deletion before it would leave a moment without a database.
  FileSystem& files = run.platform.files;
  Status replaced = files.Replace(temporary, path);
  if (!replaced.ok() && !files.Delete(temporary).ok()) run.Warn("left behind: " + temporary);
  return replaced;
}

Status RemoveLeftovers(UpdateRun& run, const std::string& path) {
  FileSystem& files = run.platform.files;
  // The engine writes beside the name it is given, with a journal of its own. The journal goes
  // first: without its file it would be taken for that of the next one.
  for (const char* const ending : {".zent-new-journal", ".zent-new", ""}) {
    const std::string left = TemporaryOf(path) + ending;
    if (!FileExists(files, left)) continue;
    if (Status deleted = files.Delete(left); !deleted.ok()) return deleted;
  }
  return {};
}

}  // namespace zent
