#include "platform/win32/files/Win32FileSystem.h"

#include <windows.h>

#include <utility>

#include "platform/win32/AnsiText.h"
#include "platform/win32/files/FileErrors.h"
#include "platform/win32/files/FileState.h"
#include "platform/win32/files/FolderEntries.h"
#include "platform/win32/files/WholeFile.h"

namespace zent {
namespace {

FilePath WithoutBackslash(FilePath path) {
  if (path.names_a_folder() && !path.text.ends_with(R"(:\)")) {
    path.text.pop_back();
    path.ansi.pop_back();
  }
  return path;
}

/// The path with its last part spelled as on disk, and in full where it is a short name: a rename
/// over a file would spell it anew.
FilePath Respelled(const FilePath& path) {
  const Result<std::vector<FileEntry>> entries = EntriesOf(path.text);
  if (!entries.ok() || entries.value().size() != 1) return path;
  FilePath spelled{.text = std::string(path.folder()) + entries.value()[0].name, .ansi = {}};
  Result<std::string> ansi = AnsiOf(spelled.text);
  if (!ansi.ok()) return path;
  spelled.ansi = std::move(ansi.value());
  return spelled;
}

/// Deletes an existing file, read-only or not.
Status DeleteAnyway(const FilePath& file, std::uint32_t attributes) {
  SetFileAttributesA(file.ansi.c_str(), FILE_ATTRIBUTE_NORMAL);
  if (DeleteFileA(file.ansi.c_str())) return {};
  const RuntimeError error =
      GetLastError() == ERROR_ACCESS_DENIED ? ReasonForDenial(file.ansi) : LastFileError();
  const Status restored = StoreAttributes(file.ansi, attributes);
  return restored.ok() ? Status(error) : restored;
}

}  // namespace

Win32FileSystem::Win32FileSystem(std::string current_folder)
    : current_folder_(std::move(current_folder)) {}

Result<std::string> Win32FileSystem::FullPath(std::string_view path) {
  return FullPathOf(path, current_folder_);
}

Result<std::uint32_t> Win32FileSystem::Attributes(std::string_view path) {
  const Result<FilePath> place = Parse(path);
  if (!place.ok()) return place.error();
  return AttributesOf(place.value().ansi);
}

Status Win32FileSystem::SetAttributes(std::string_view path, std::uint32_t attributes) {
  const Result<FilePath> place = Parse(path);
  if (!place.ok()) return place.error();
  return StoreAttributes(place.value().ansi, attributes);
}

Result<std::vector<FileEntry>> Win32FileSystem::Find(std::string_view pattern) {
  const Result<FilePattern> search = ParseFilePattern(pattern, current_folder_);
  if (!search.ok()) return search.error();
  return FindEntries(search.value());
}

Result<std::unique_ptr<File>> Win32FileSystem::OpenForReading(std::string_view path) {
  const Result<FilePath> file = LocateFile(path);
  if (!file.ok()) return file.error();
  return OpenToRead(file.value().ansi);
}

Status Win32FileSystem::Write(std::string_view path, std::string_view contents) {
  const Result<Target> target = LocateTarget(path);
  if (!target.ok()) return target.error();
  if (Status replaceable = CheckOld(target.value()); !replaceable.ok()) return replaceable;
  left_siblings_.RemoveBeside(target.value().path);
  Result<Win32Sibling> sibling = Win32Sibling::OfContents(target.value().path, contents);
  if (!sibling.ok()) return sibling.error();
  const std::uint32_t attributes = target.value().old_attributes.value_or(kAttributeArchive);
  return PutInPlace(target.value(), sibling.value(), attributes);
}

Status Win32FileSystem::Copy(std::string_view source, std::string_view target) {
  const Result<FilePath> from = LocateFile(source);
  if (!from.ok()) return from.error();
  const Result<std::uint32_t> attributes = AttributesOf(from.value().ansi);
  if (!attributes.ok()) return attributes.error();
  const Result<Target> to = LocateTarget(target);
  if (!to.ok()) return to.error();
  const FilePath& place = to.value().path;
  if (IsSameFile(from.value().ansi, place.ansi)) return StandardError(kPermissionDenied);
  if (Status replaceable = CheckOld(to.value()); !replaceable.ok()) return replaceable;
  const bool hidden = (to.value().old_attributes.value_or(0) & kAttributeHidden) != 0;
  if (hidden) return StandardError(kPathFileAccess);
  left_siblings_.RemoveBeside(place);
  Result<Win32Sibling> copy = Win32Sibling::OfCopy(place, from.value());
  if (!copy.ok()) return copy.error();
  return PutInPlace(to.value(), copy.value(), attributes.value());
}

Status Win32FileSystem::Move(std::string_view old_path, std::string_view new_path) {
  const Result<FilePath> from = Parse(old_path);
  if (!from.ok()) return from.error();
  const Result<FilePath> to = Parse(new_path);
  if (!to.ok()) return to.error();
  const Result<std::uint32_t> attributes = AttributesOf(from.value().ansi);
  if (!attributes.ok()) return attributes.error();
  if (from.value().text.ends_with(R"(:\)")) return StandardError(kPathFileAccess);
  if (MoveFileExA(from.value().ansi.c_str(), to.value().ansi.c_str(), MOVEFILE_WRITE_THROUGH)) {
    return {};
  }
  if (GetLastError() != ERROR_NOT_SAME_DEVICE) return LastFileError();
  const bool folder = (attributes.value() & kAttributeFolder) != 0;
  return folder ? StandardError(kCannotRenameAcrossDrives)
                : MoveByCopy(from.value(), to.value(), attributes.value());
}

Status Win32FileSystem::Replace(std::string_view source, std::string_view target) {
  const Result<FilePath> from = LocateFile(source);
  if (!from.ok()) return from.error();
  const Result<Target> to = LocateTarget(target);
  if (!to.ok()) return to.error();
  const std::optional<std::uint32_t> attributes = to.value().old_attributes;
  if (!attributes) return StandardError(kFileNotFound);
  const FilePath& place = to.value().path;
  if (IsSameFile(from.value().ansi, place.ansi)) return StandardError(kPermissionDenied);
  if (Status replaceable = CheckOld(to.value()); !replaceable.ok()) return replaceable;
  const Result<std::uint32_t> own = AttributesOf(from.value().ansi);
  if (!own.ok()) return own.error();
  if (Status movable = CheckMovable(from.value().ansi); !movable.ok()) return movable;
  Result<Win32Sibling> sibling = Win32Sibling::OfFile(from.value());
  Status put =
      sibling.ok() ? PutInPlace(to.value(), sibling.value(), *attributes) : Status(sibling.error());
  // Why it was refused is told, whether or not its attributes can be stored.
  if (!put.ok()) static_cast<void>(StoreAttributes(from.value().ansi, own.value()));
  return put;
}

Status Win32FileSystem::Delete(std::string_view path) {
  const Result<FilePath> file = LocateFile(path);
  if (!file.ok()) return file.error();
  const Result<std::uint32_t> attributes = AttributesOf(file.value().ansi);
  if (!attributes.ok()) return attributes.error();
  // Told here too, as the super-user of the host that Wine runs on may delete everything.
  if ((attributes.value() & kAttributeReadOnly) != 0) return StandardError(kPathFileAccess);
  if (DeleteFileA(file.value().ansi.c_str())) return {};
  return GetLastError() == ERROR_ACCESS_DENIED ? ReasonForDenial(file.value().ansi)
                                               : LastFileError();
}

Status Win32FileSystem::CreateFolder(std::string_view path) {
  const Result<FilePath> place = Parse(path);
  if (!place.ok()) return place.error();
  if (CreateDirectoryA(place.value().ansi.c_str(), nullptr)) return {};
  // MkDir tells an existing name in its own way: not kFileAlreadyExists.
  const RuntimeError error = LastFileError();
  return error.number == kFileAlreadyExists ? StandardError(kPathFileAccess) : error;
}

Result<FilePath> Win32FileSystem::Parse(std::string_view path) const {
  return ParseFilePath(path, current_folder_);
}

Result<FilePath> Win32FileSystem::LocateFile(std::string_view path) const {
  Result<FilePath> parsed = Parse(path);
  if (!parsed.ok()) return parsed;
  const FilePath file = WithoutBackslash(parsed.value());
  const Result<std::uint32_t> attributes = AttributesOf(file.ansi);
  if (!attributes.ok()) return attributes.error();
  if ((attributes.value() & kAttributeFolder) != 0) return StandardError(kPathFileAccess);
  if (parsed.value().names_a_folder()) return StandardError(kBadFileName);
  return file;
}

Result<Win32FileSystem::Target> Win32FileSystem::LocateTarget(std::string_view path) const {
  const Result<FilePath> parsed = Parse(path);
  if (!parsed.ok()) return parsed.error();
  const FilePath place = WithoutBackslash(parsed.value());
  const Result<std::uint32_t> attributes = AttributesOf(place.ansi);
  const bool missing = attributes.number() == kFileNotFound;
  if (!attributes.ok() && !missing) return attributes.error();
  if (!missing && (attributes.value() & kAttributeFolder) != 0) {
    return StandardError(kPathFileAccess);
  }
  if (parsed.value().names_a_folder()) return StandardError(kBadFileName);
  if (missing) return Target{.path = place, .old_attributes = std::nullopt};
  return Target{.path = Respelled(place), .old_attributes = attributes.value()};
}

Status Win32FileSystem::CheckOld(const Target& target) {
  return target.old_attributes ? CheckReplaceable(target.path.ansi) : Status();
}

Status Win32FileSystem::PutInPlace(const Target& target, Win32Sibling& sibling,
                                   std::uint32_t attributes) {
  if (target.old_attributes) sibling.TakeRightsOf(target.path);
  if (Status stored = sibling.SetAttributes(attributes); !stored.ok()) return stored;
  return sibling.PutInPlace(target.path, OldFile::Replace);
}

Status Win32FileSystem::MoveByCopy(const FilePath& from, const FilePath& to,
                                   std::uint32_t attributes) {
  if (to.names_a_folder()) return StandardError(kBadFileName);
  left_siblings_.RemoveBeside(to);
  Result<Win32Sibling> copy = Win32Sibling::OfCopy(to, from);
  if (!copy.ok()) return copy.error();
  if (Status stored = copy.value().SetAttributes(attributes); !stored.ok()) return stored;
  if (Status put = copy.value().PutInPlace(to, OldFile::Keep); !put.ok()) return put;
  Status deleted = DeleteAnyway(from, attributes);
  if (!deleted.ok()) {
    SetFileAttributesA(to.ansi.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileA(to.ansi.c_str());
  }
  return deleted;
}

}  // namespace zent
