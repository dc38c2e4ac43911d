// A Windows program for tests: holds a file open, which nobody else may use, until its input ends.
// Without an argument it ends at once.
#include <windows.h>

#include <cstdio>

int main(int argc, char** argv) {
  if (argc < 2) return 0;
  HANDLE file = ::CreateFileA(argv[1], GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  std::printf(file == INVALID_HANDLE_VALUE ? "failed\n" : "held\n");
  std::fflush(stdout);
  while (std::getchar() != EOF) continue;
  return file == INVALID_HANDLE_VALUE ? 1 : 0;
}
