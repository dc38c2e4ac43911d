#include "platform/win32/files/FolderEntries.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <tuple>
#include <utility>

#include "base/CaseFold.h"
#include "base/Utf.h"
#include "platform/Wildcard.h"
#include "platform/win32/files/FileErrors.h"
#include "platform/win32/files/FileState.h"

namespace zent {
namespace {

struct FindCloser {
  void operator()(HANDLE search) const { FindClose(search); }
};
using SearchHandle = std::unique_ptr<void, FindCloser>;

/// The path for a wide call; on a drive in the literal form, which may be longer than a plain one
/// by the pattern behind a folder.
std::wstring WidePath(std::string_view path) {
  const std::u16string utf16 = ToUtf16(path);
  std::wstring wide(utf16.begin(), utf16.end());
  return path.starts_with(R"(\\)") ? wide : LR"(\\?\)" + wide;
}

std::string NameOf(const WIN32_FIND_DATAW& data) {
  const std::wstring_view wide = data.cFileName;
  return FromUtf16(std::u16string(wide.begin(), wide.end()));
}

FileEntry EntryOf(const WIN32_FIND_DATAW& data) {
  constexpr std::uint32_t kKnown = kAttributeReadOnly | kAttributeHidden | kAttributeSystem |
                                   kAttributeFolder | kAttributeArchive;
  const bool folder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  const std::uint64_t size = std::uint64_t{data.nFileSizeHigh} << 32U | data.nFileSizeLow;
  return {.name = NameOf(data),
          .attributes = data.dwFileAttributes & kKnown,
          .size = folder ? 0 : size};
}

/// kPathNotFound when a wildcard is asked for in what is no folder; the rest is told by the search.
Status CheckFolder(const FilePath& folder) {
  const Result<std::uint32_t> attributes = AttributesOf(folder.ansi);
  if (attributes.number() == kFileNotFound) return StandardError(kPathNotFound);
  return attributes.status();
}

/// As FindEntries for a pattern that is empty, and so finds nothing in whatever folder there is.
Status CheckParent(const FilePath& folder) {
  // A root is there: its drive has been asked for. Without its backslash it would be another
  // folder.
  if (folder.text.ends_with(R"(:\)")) return {};
  const std::string path = folder.ansi.substr(0, folder.ansi.size() - 1);
  const Result<std::uint32_t> attributes = AttributesOf(path);
  return attributes.number() == kFileNotFound ? Status() : attributes.status();
}

}  // namespace

Result<std::vector<FileEntry>> EntriesOf(std::string_view pattern) {
  std::vector<FileEntry> found;
  WIN32_FIND_DATAW data = {};
  const HANDLE first = FindFirstFileW(WidePath(pattern).c_str(), &data);
  if (first == INVALID_HANDLE_VALUE) {
    if (GetLastError() == ERROR_FILE_NOT_FOUND) return found;
    return LastFileError();
  }
  const SearchHandle search(first);
  do {
    FileEntry entry = EntryOf(data);
    if (entry.name != "." && entry.name != "..") found.push_back(std::move(entry));
  } while (FindNextFileW(search.get(), &data));
  if (GetLastError() != ERROR_NO_MORE_FILES) return LastFileError();
  return found;
}

Result<std::vector<FileEntry>> FindEntries(const FilePattern& search) {
  if (search.pattern.empty()) {
    if (Status parent = CheckParent(search.folder); !parent.ok()) return parent.error();
    return std::vector<FileEntry>();
  }
  // A plain name is looked up, so that asking for each of many files does not list them all.
  const bool plain = !Wildcard::IsIn(search.pattern);
  if (!plain) {
    if (Status folder = CheckFolder(search.folder); !folder.ok()) return folder.error();
  }
  Result<std::vector<FileEntry>> entries =
      EntriesOf(search.folder.text + (plain ? search.pattern : "*"));
  if (!entries.ok()) return entries.error();

  const Wildcard wildcard(search.pattern);
  std::vector<std::pair<std::string, FileEntry>> found;  // by the folded name
  for (FileEntry& entry : entries.value()) {
    if (!wildcard.Matches(entry.name) || !IsReachableName(entry.name)) continue;
    std::string folded = FoldName(entry.name);
    found.emplace_back(std::move(folded), std::move(entry));
  }
  std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
    return std::tie(a.first, a.second.name) < std::tie(b.first, b.second.name);
  });
  std::vector<FileEntry> sorted;
  sorted.reserve(found.size());
  for (auto& [folded, entry] : found) sorted.push_back(std::move(entry));
  return sorted;
}

}  // namespace zent
