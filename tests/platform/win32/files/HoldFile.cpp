#include <windows.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/win32/files/Win32FileSystem.h"

/// hold_file MODE PATH: holds a file as MODE says, writes one byte to standard output, and ends
/// with the end of standard input.
///
/// Modes: "r0" "r1" "r3" "r7" "w3" are open for reading or writing and share what the digit says
/// (FILE_SHARE_*), "map" keeps a view mapped, "load" loads a library, "folder" makes it the current
/// folder, "run" does nothing, so that the program itself is what is held. "replace" writes it and
/// copies the file "other" beside it over it by turns, to be killed in the middle of that.
namespace zent {
namespace {

bool Map(const char* path) {
  const HANDLE file =
      CreateFileA(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const HANDLE mapping = CreateFileMappingA(file, nullptr, PAGE_READONLY, 0, 0, nullptr);
  CloseHandle(file);
  if (mapping == nullptr) return false;
  const bool mapped = MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0) != nullptr;
  CloseHandle(mapping);
  return mapped;
}

bool Open(const std::string& mode, const char* path) {
  const DWORD access = mode[0] == 'w' ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ;
  const auto share = static_cast<DWORD>(mode[1] - '0');
  return CreateFileA(path, access, share, nullptr, OPEN_EXISTING, 0, nullptr) !=
         INVALID_HANDLE_VALUE;
}

/// Ends by itself, should nobody kill us.
void ReplaceOften(const std::filesystem::path& path) {
  constexpr int kTimes = 2000;
  Win32FileSystem files(path.parent_path().string());
  for (int i = 0; i < kTimes; ++i) {
    const bool written = files.Write(path.string(), std::string(300'000, 'w')).ok();
    if (!written || !files.Copy("other", path.string()).ok()) return;
  }
}

bool Hold(const std::string& mode, const char* path) {
  if (mode == "run" || mode == "replace") return true;
  if (mode == "map") return Map(path);
  if (mode == "load") return LoadLibraryA(path) != nullptr;
  if (mode == "folder") return SetCurrentDirectoryA(path) != FALSE;
  return mode.size() == 2 && Open(mode, path);
}

}  // namespace
}  // namespace zent

int main(int argc, char** argv) {
  if (argc != 3 || !zent::Hold(argv[1], argv[2])) return EXIT_FAILURE;
  DWORD done = 0;
  WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), "h", 1, &done, nullptr);
  if (std::string(argv[1]) == "replace") zent::ReplaceOften(argv[2]);
  char end = 0;
  while (ReadFile(GetStdHandle(STD_INPUT_HANDLE), &end, 1, &done, nullptr) && done != 0) continue;
  return EXIT_SUCCESS;
}
