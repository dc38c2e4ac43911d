#include "platform/win32/files/Sibling.h"

#include <windows.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "base/CaseFold.h"
#include "platform/SystemErrors.h"
#include "platform/win32/AnsiText.h"
#include "platform/win32/UniqueHandle.h"
#include "platform/win32/files/FileErrors.h"
#include "platform/win32/files/FileState.h"
#include "platform/win32/files/FolderEntries.h"
#include "platform/win32/files/SiblingName.h"
#include "platform/win32/files/WholeFile.h"

namespace zent {
namespace {

bool NameIsTaken(DWORD error) {
  return error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS;
}

/// Calls `make` with one name beside `target` after the other until it makes a file; its path.
template <typename Make>
Result<std::string> MakeBeside(const FilePath& target, Make make) {
  constexpr int kTries = 100;
  const Result<std::string> folder = AnsiOf(target.folder());
  if (!folder.ok()) return folder.error();
  for (int i = 0; i < kTries; ++i) {
    const std::string path = folder.value() + SiblingName(GetCurrentProcessId(), i);
    if (path.size() >= MAX_PATH) return ErrorOf(SystemError::FileNameTooLong);
    if (make(path)) return path;
    if (!NameIsTaken(GetLastError())) return LastFileError();
  }
  return StandardError(kFileAlreadyExists);
}

/// A read-only file is not deleted before it is an ordinary one.
void Remove(const std::string& path) {
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  DeleteFileA(path.c_str());
}

/// `share`: how others may have the file open meanwhile.
Status Flush(const std::string& path, DWORD share) {
  const UniqueHandle file(
      CreateFileA(path.c_str(), GENERIC_WRITE, share, nullptr, OPEN_EXISTING, 0, nullptr));
  return file.ok() && FlushFileBuffers(file.get()) ? Status() : LastFileError();
}

/// The list of who may use a file; empty when the system does not tell.
std::vector<char> RightsOf(const std::string& path) {
  DWORD size = 0;
  GetFileSecurityA(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
  std::vector<char> rights(size);
  const bool told = size != 0 && GetFileSecurityA(path.c_str(), DACL_SECURITY_INFORMATION,
                                                  rights.data(), size, &size);
  return told ? rights : std::vector<char>();
}

/// Our own number was given anew after a run that had it was killed.
bool MayBeAtWork(DWORD process) {
  if (process == GetCurrentProcessId()) return false;
  const UniqueHandle handle(OpenProcess(SYNCHRONIZE, FALSE, process));
  if (!handle.ok()) return GetLastError() != ERROR_INVALID_PARAMETER;
  // One that has ended keeps its number as long as anyone has a handle of it.
  return WaitForSingleObject(handle.get(), 0) != WAIT_OBJECT_0;
}

}  // namespace

Result<Win32Sibling> Win32Sibling::OfContents(const FilePath& target, std::string_view contents) {
  UniqueHandle file;
  Result<std::string> path = MakeBeside(target, [&](const std::string& name) {
    file = UniqueHandle(CreateFileA(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
    return file.ok();
  });
  if (!path.ok()) return path.error();
  Win32Sibling sibling(std::move(path.value()));
  const Status written = WriteWhole(file.get(), contents);
  file.Close();  // before the destructor removes the file
  if (!written.ok()) return written.error();
  return sibling;
}

Result<Win32Sibling> Win32Sibling::OfCopy(const FilePath& target, const FilePath& source) {
  Result<std::string> path = MakeBeside(target, [&](const std::string& name) {
    if (CopyFileA(source.ansi.c_str(), name.c_str(), TRUE)) return true;
    const DWORD error = GetLastError();
    if (!NameIsTaken(error)) Remove(name);  // what there is of it
    SetLastError(error);
    return false;
  });
  if (!path.ok()) return path.error();
  Win32Sibling sibling(std::move(path.value()));
  SetFileAttributesA(sibling.path_.c_str(), FILE_ATTRIBUTE_NORMAL);
  // A virus scanner opens what is new.
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const Status flushed = Flush(sibling.path_, kShared);
  if (!flushed.ok()) return flushed.error();
  return sibling;
}

Result<Win32Sibling> Win32Sibling::OfFile(const FilePath& source) {
  Win32Sibling sibling(source.ansi);
  sibling.is_made_ = false;
  SetFileAttributesA(source.ansi.c_str(), FILE_ATTRIBUTE_NORMAL);
  // One that a program holds is in use, however it shares it.
  if (const Status flushed = Flush(source.ansi, 0); !flushed.ok()) return flushed.error();
  return sibling;
}

Win32Sibling::~Win32Sibling() {
  if (is_made_ && !path_.empty()) Remove(path_);
}

void Win32Sibling::TakeRightsOf(const FilePath& old) {
  std::vector<char> rights = RightsOf(old.ansi);
  // Mostly both have them of their folder.
  if (rights.empty() || rights == RightsOf(path_)) return;
  SetFileSecurityA(path_.c_str(), DACL_SECURITY_INFORMATION, rights.data());
}

Status Win32Sibling::SetAttributes(std::uint32_t attributes) {
  return StoreAttributes(path_, attributes);
}

Status Win32Sibling::PutInPlace(const FilePath& target, OldFile old_file) {
  const DWORD replace = old_file == OldFile::Replace ? MOVEFILE_REPLACE_EXISTING : 0;
  if (MoveFileExA(path_.c_str(), target.ansi.c_str(), replace | MOVEFILE_WRITE_THROUGH)) {
    path_.clear();
    return {};
  }
  // Whoever replaces has made sure that the target is a file, that it is not read-only and that we
  // have the right to delete it. What is left is a program that has it open, however it shares it.
  const bool denied = replace != 0 && GetLastError() == ERROR_ACCESS_DENIED;
  return denied ? StandardError(kPermissionDenied) : LastFileError();
}

void LeftSiblings::RemoveBeside(const FilePath& target) {
  const std::string folder(target.folder());
  if (!searched_.insert(FoldName(folder)).second) return;
  const Result<std::vector<FileEntry>> entries = EntriesOf(folder + std::string(kSiblingPattern));
  if (!entries.ok()) return;
  for (const FileEntry& entry : entries.value()) {
    const std::optional<std::uint32_t> maker = MakerOfSibling(entry.name);
    if (!maker || MayBeAtWork(*maker)) continue;
    const Result<std::string> path = AnsiOf(folder + entry.name);
    if (path.ok()) Remove(path.value());
  }
}

}  // namespace zent
