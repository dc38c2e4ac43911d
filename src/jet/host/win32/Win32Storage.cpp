#include "jet/host/win32/Win32Storage.h"

#include <windows.h>

#include <string>

#include "base/Utf.h"
#include "jet/host/win32/Win32File.h"

namespace zent::jet {
namespace {

/// A path as a wide call takes it.
class WidePath {
 public:
  explicit WidePath(std::string_view path) : text_(ToUtf16(path)) {}
  /// A NUL would cut the name short: another file.
  bool ok() const { return text_.find(u'\0') == std::u16string::npos; }
  LPCWSTR get() const { return reinterpret_cast<LPCWSTR>(text_.c_str()); }

 private:
  std::u16string text_;
};

Result<std::unique_ptr<StoredFile>> OpenAs(std::string_view path, Sharing sharing,
                                           DWORD disposition) {
  const WidePath wide(path);
  if (!wide.ok()) return StandardError(kBadFileName);
  const DWORD access = sharing == Sharing::ReadOnly ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE;
  const DWORD share = sharing == Sharing::Exclusive ? 0 : FILE_SHARE_READ | FILE_SHARE_WRITE;
  const HANDLE handle =
      CreateFileW(wide.get(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return ErrorOfLastCall();
  return std::unique_ptr<StoredFile>(new Win32File(handle, sharing != Sharing::ReadOnly));
}

}  // namespace

Result<std::unique_ptr<StoredFile>> Win32Storage::Open(std::string_view path, Sharing sharing) {
  return OpenAs(path, sharing, OPEN_EXISTING);
}

// A new file has the rights that its folder hands down.
Result<std::unique_ptr<StoredFile>> Win32Storage::Create(std::string_view path, Sharing sharing,
                                                         std::string_view /*like*/) {
  return OpenAs(path, sharing, CREATE_NEW);
}

Status Win32Storage::Delete(std::string_view path) {
  const WidePath wide(path);
  if (!wide.ok()) return StandardError(kBadFileName);
  if (DeleteFileW(wide.get()) == 0) return ErrorOfLastCall();
  return {};
}

Result<bool> Win32Storage::Exists(std::string_view path) {
  const WidePath wide(path);
  if (!wide.ok()) return StandardError(kBadFileName);
  const DWORD attributes = GetFileAttributesW(wide.get());
  if (attributes != INVALID_FILE_ATTRIBUTES) return (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
  const RuntimeError error = ErrorOfLastCall();
  if (error.number == kFileNotFound || error.number == kPathNotFound) return false;
  return error;
}

Status Win32Storage::Rename(std::string_view path, std::string_view new_path) {
  const WidePath wide(path);
  const WidePath wide_new(new_path);
  if (!wide.ok() || !wide_new.ok()) return StandardError(kBadFileName);
  constexpr DWORD kHow = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
  if (MoveFileExW(wide.get(), wide_new.get(), kHow) == 0) return ErrorOfLastCall();
  return {};
}

Status Win32Storage::FlushFolder(std::string_view /*path*/) { return {}; }

void Win32Storage::Pause(std::chrono::milliseconds time) {
  Sleep(static_cast<DWORD>(time.count()));
}

}  // namespace zent::jet
