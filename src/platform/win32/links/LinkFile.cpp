#include "platform/win32/links/LinkFile.h"

#include <objbase.h>
#include <shlobj.h>
#include <windows.h>

#include <memory>

#include "base/Utf.h"
#include "platform/win32/Win32Errors.h"

namespace zent {
namespace {

/// COM for as long as this lives. A thread that uses it in another way has it already.
class ComUse {
 public:
  ComUse() : result_(CoInitialize(nullptr)) {}
  ~ComUse() {
    if (SUCCEEDED(result_)) CoUninitialize();
  }
  ComUse(const ComUse&) = delete;
  ComUse& operator=(const ComUse&) = delete;

 private:
  HRESULT result_;
};

struct Releaser {
  void operator()(IUnknown* object) const { object->Release(); }
};
template <typename Interface>
using ComPointer = std::unique_ptr<Interface, Releaser>;

/// The system error that the result carries, as those of files and storages do; else `otherwise`.
RuntimeError ErrorOfResult(HRESULT result, int otherwise) {
  const int facility = HRESULT_FACILITY(result);
  if (facility != FACILITY_WIN32 && facility != FACILITY_STORAGE) return StandardError(otherwise);
  return ErrorOfWin32(static_cast<unsigned long>(HRESULT_CODE(result)));
}

/// Fills `shell_link` and saves it as the new file `path`.
Status Save(IShellLinkA& shell_link, const LinkTexts& link, std::string_view path) {
  // S_FALSE stands for a target that does not exist.
  if (FAILED(shell_link.SetPath(link.target.c_str()))) return StandardError(kBadFileName);
  if (!link.arguments.empty() && FAILED(shell_link.SetArguments(link.arguments.c_str()))) {
    return StandardError(kBadFileName);
  }
  if (!link.working_folder.empty() &&
      FAILED(shell_link.SetWorkingDirectory(link.working_folder.c_str()))) {
    return StandardError(kBadFileName);
  }
  void* pointer = nullptr;
  const HRESULT asked = shell_link.QueryInterface(IID_IPersistFile, &pointer);
  if (FAILED(asked)) return ErrorOfResult(asked, kCannotCreateObject);
  const ComPointer<IPersistFile> file(static_cast<IPersistFile*>(pointer));
  const std::u16string wide_path = ToUtf16(path);
  const std::wstring name(wide_path.begin(), wide_path.end());
  const HRESULT saved = file->Save(name.c_str(), FALSE);
  if (FAILED(saved)) return ErrorOfResult(saved, kPathFileAccess);
  return {};
}

}  // namespace

Status SaveLinkFile(const LinkTexts& link, std::string_view path) {
  const ComUse com;
  void* pointer = nullptr;
  const HRESULT made =
      CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkA, &pointer);
  if (FAILED(made)) return StandardError(kCannotCreateObject);
  const ComPointer<IShellLinkA> shell_link(static_cast<IShellLinkA*>(pointer));
  return Save(*shell_link, link, path);
}

}  // namespace zent
