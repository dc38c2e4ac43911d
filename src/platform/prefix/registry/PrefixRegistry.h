#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/Clock.h"
#include "platform/Registry.h"
#include "platform/posix/UniqueFd.h"
#include "platform/prefix/registry/FileTime.h"
#include "platform/prefix/registry/KeyPath.h"
#include "platform/prefix/registry/RegistryStore.h"
#include "platform/prefix/registry/WineServer.h"

namespace zent {

/// The registry of a machine kept on disk in the layout of a Wine prefix: system.reg is
/// HKEY_LOCAL_MACHINE, user.reg HKEY_CURRENT_USER, userdef.reg HKEY_USERS\.Default, which is only
/// read and may be missing. HKEY_CLASSES_ROOT is Software\Classes of the machine. Keys that are
/// symbolic links lead to their target; a link that leads nowhere is a missing key.
///
/// A value is on disk when SetText returns; a key that CreateKey made is stored with its first
/// value, or by CloseKey when none came. Nothing is stored while a Wine server serves the machine,
/// which would overwrite it (kPermissionDenied), nor in a file that nobody may write
/// (kPathFileAccess). Reading goes on from what was loaded.
class PrefixRegistry : public Registry {
 public:
  /// Loads the registry of the folder `machine`. A missing folder is kPathNotFound, a missing
  /// system.reg or user.reg kFileNotFound, a damaged one kInvalidFileFormat with its name and the
  /// line. `clock` outlives the registry; `temp_folder` is where Wine's server folders lie.
  static Result<std::unique_ptr<PrefixRegistry>> Open(const std::string& machine, Clock& clock,
                                                      FileTimeSource now,
                                                      const std::string& temp_folder = "/tmp");

  Result<KeyHandle> OpenKey(KeyHandle parent, std::string_view path) override;
  Result<KeyHandle> CreateKey(KeyHandle parent, std::string_view path) override;
  Status CloseKey(KeyHandle key) override;
  Result<RegistryValue> QueryValue(KeyHandle key, std::string_view name) override;
  Status SetText(KeyHandle key, std::string_view name, std::string_view text) override;

  /// Call before a program is started under Wine, whose server then holds the registry: stores the
  /// keys that wait for a value. The next access of any kind waits for the server to end, 30
  /// seconds at most (then kPermissionDenied), and reads the files again. Open keys stay open.
  Status HandOver();

 private:
  /// Which tree a key is in. Users is HKEY_USERS itself, which has no file.
  enum class Hive { Machine, User, DefaultUser, Users };
  struct KeyPlace {
    Hive hive = Hive::Users;
    KeyPath path;
  };
  struct OpenedKey {
    KeyPlace place;
    bool is_new = false;  ///< not stored yet
  };

  PrefixRegistry(const std::string& machine, UniqueFd folder, Clock& clock, FileTimeSource now,
                 const std::string& temp_folder);

  Status TakeBack();
  RegistryStore& StoreOf(Hive hive);
  Result<KeyPlace> Locate(KeyHandle parent, std::string_view path);
  Result<KeyPlace> FollowLinks(KeyPlace place);
  Result<KeyPlace> EnterUsers(KeyPlace place);
  bool IsStored(const KeyPlace& place);
  bool Exists(const KeyPlace& place);
  Status CheckWritable(Hive hive);
  Status Store(Hive hive, const RegistryEditor& editor);
  Status StoreNewKey(OpenedKey& key);
  KeyHandle Remember(KeyPlace place);

  UniqueFd folder_;
  Clock& clock_;
  FileTimeSource now_;
  WineServer wine_server_;
  RegistryStore machine_;
  RegistryStore user_;
  RegistryStore default_user_;
  bool handed_over_ = false;
  std::map<KeyHandle, OpenedKey> opened_;
  std::uint64_t last_handle_ = 0;
};

}  // namespace zent
