// A Windows program for tests: holds a file open until a file named "release" lies in its folder, a
// minute at most. `HoldFile FILE` shares it with nobody; `HoldFile FILE shared` as the system holds
// a library that is loaded: it can be read and renamed, not written. Without an argument it ends at
// once.
#include <windows.h>

int main(int argc, char** argv) {
  if (argc < 2) return 0;
  const DWORD share = argc > 2 ? FILE_SHARE_READ | FILE_SHARE_DELETE : 0;
  HANDLE file = ::CreateFileA(argv[1], GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return 1;
  ::CloseHandle(::CreateFileA("held", GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
  for (int i = 0; i < 3000; ++i) {
    if (::GetFileAttributesA("release") != INVALID_FILE_ATTRIBUTES) break;
    ::Sleep(20);
  }
  ::CloseHandle(file);
  return 0;
}
