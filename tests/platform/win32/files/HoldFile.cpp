#include <windows.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>

/// hold_file MODE PATH: holds a file as MODE says, writes one byte to standard output, and ends
/// with the end of standard input.
///
/// Modes: "r0" "r1" "r3" "r7" "w3" are open for reading or writing and share what the digit says
/// (FILE_SHARE_*), "map" keeps a view mapped, "load" loads a library, "folder" makes it the current
/// folder, "run" does nothing, so that the program itself is what is held.
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

bool Hold(const std::string& mode, const char* path) {
  if (mode == "run") return true;
  if (mode == "map") return Map(path);
  if (mode == "load") return LoadLibraryA(path) != nullptr;
  if (mode == "folder") return SetCurrentDirectoryA(path) != FALSE;
  return mode.size() == 2 && Open(mode, path);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3 || !Hold(argv[1], argv[2])) return EXIT_FAILURE;
  DWORD done = 0;
  WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), "h", 1, &done, nullptr);
  char end = 0;
  while (ReadFile(GetStdHandle(STD_INPUT_HANDLE), &end, 1, &done, nullptr) && done != 0) continue;
  return EXIT_SUCCESS;
}
