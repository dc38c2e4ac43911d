#include "platform/win32/version/Win32VersionResources.h"

#include <windows.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/win32/AnsiText.h"
#include "platform/win32/FileChecks.h"
#include "platform/win32/Win32Errors.h"
#include "platform/win32/version/VersionLibrary.h"

namespace zent {
namespace {

/// The system trusts the lengths in a resource, of 16 bits each, and writes the ANSI form of a text
/// behind the outermost block: so far may each of four nested blocks, and the text, lead it.
constexpr std::size_t kSlack = 0x50000;

/// The bytes of a version resource as the system gave them.
class LoadedVersion : public VersionInfo {
 public:
  LoadedVersion(const VersionLibrary& library, std::vector<char> data)
      : library_(library), data_(std::move(data)) {}

  std::optional<std::string> QueryBytes(std::string_view path) const override {
    Result<std::string> block_path = AnsiOf(path);
    if (!block_path.ok()) return std::nullopt;
    // A fresh copy for each question, zeros behind it: the system writes into what it searches.
    std::vector<char> block(data_.size() + kSlack);
    std::copy(data_.begin(), data_.end(), block.begin());
    void* value = nullptr;
    UINT length = 0;
    if (library_.query(block.data(), block_path.value().c_str(), &value, &length) == FALSE) {
      return std::nullopt;
    }
    const auto start = reinterpret_cast<ULONG_PTR>(block.data());
    const auto at = reinterpret_cast<ULONG_PTR>(value);
    if (at < start || at - start >= block.size()) return std::string();
    const std::size_t available = block.size() - (at - start);
    return std::string(static_cast<const char*>(value), std::min<std::size_t>(length, available));
  }

  std::optional<std::string> QueryText(std::string_view path) const override {
    const std::optional<std::string> bytes = QueryBytes(path);
    if (!bytes) return std::nullopt;
    return TextOfAnsi(std::string_view(*bytes).substr(0, bytes->find('\0')));
  }

 private:
  VersionLibrary library_;
  std::vector<char> data_;
};

/// The full form of a path, in ANSI: a bare name would be searched for in the system's folders.
Result<std::string> FullPathOf(std::string_view path) {
  Result<std::string> ansi = AnsiOf(path);
  if (!ansi.ok()) return ansi;
  std::string full(MAX_PATH, '\0');
  const auto size = static_cast<DWORD>(full.size());
  const DWORD length = GetFullPathNameA(ansi.value().c_str(), size, full.data(), nullptr);
  if (length == 0) return LastError();
  if (length >= size) return ErrorOfWin32(ERROR_FILENAME_EXCED_RANGE);
  full.resize(length);
  return full;
}

/// True when the last part of `path` has no dot.
bool HasNoExtension(std::string_view path) {
  return path.find('.', path.find_last_of(R"(\/:)") + 1) == std::string_view::npos;
}

}  // namespace

Result<std::unique_ptr<VersionInfo>> Win32VersionResources::Open(std::string_view path) const {
  Result<std::string> full = FullPathOf(path);
  if (!full.ok()) return full.error();
  if (Status readable = CheckFile(full.value(), GENERIC_READ); !readable.ok()) {
    return readable.error();
  }
  const Result<VersionLibrary> library = LoadVersionLibrary();
  if (!library.ok()) return library.error();
  std::string name = std::move(full.value());
  // To a name without a dot the system would add ".dll", and read another file. The full name
  // counts: a dot at the end of the path has no place in it.
  if (HasNoExtension(TextOfAnsi(name))) name += '.';

  DWORD ignored = 0;
  const DWORD size = library.value().size_of(name.c_str(), &ignored);
  if (size == 0) return StandardError(kInvalidFileFormat);
  std::vector<char> data(size);
  if (library.value().read(name.c_str(), 0, size, data.data()) == FALSE) {
    return StandardError(kInvalidFileFormat);
  }
  return std::unique_ptr<VersionInfo>(
      std::make_unique<LoadedVersion>(library.value(), std::move(data)));
}

}  // namespace zent
