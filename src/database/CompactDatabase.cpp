#include "database/CompactDatabase.h"

#include "lib/FuncLib.h"

namespace zent {

Status CompactDatabase(UpdateRun& run, const std::string& path, const std::string& password) {
  run.ShowMsg("Compacting " + path);
  if (run.database.access == nullptr) return StandardError(kCannotCreateObject);
  FileSystem& files = run.platform.files;
  const std::string temporary = path + "_tmp";
  if (FileExists(files, temporary)) {
    if (Status deleted = files.Delete(temporary); !deleted.ok()) return deleted;
  }
  const std::string connect = password.empty() ? "" : ";pwd=" + password;
  Status compacted = run.database.access->Compact(path, temporary, connect);
  if (!compacted.ok()) return compacted;

  // A move does not replace, and a deletion before it would leave a moment without a database: a
  // copy takes the old file's place whole.
  Status replaced = files.Copy(temporary, path);
  if (const Status deleted = files.Delete(temporary); !deleted.ok()) {
    run.Warn("left behind: " + temporary);
  }
  return replaced;
}

}  // namespace zent
