// A console program for the tests to wait for. Files beside it say what it does: it waits while
// "NAME.hold" is there, writes what is in "NAME.text" to its standard error, writes to and reads
// from its other streams, and ends with the number in "NAME.code". "arguments" as its first
// argument makes it write what it was given instead, its streams and its command line.
#include <windows.h>

#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

namespace {

constexpr DWORD kStep = 10;         // milliseconds
constexpr int kLongestLife = 3000;  // steps

std::string TextOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void Write(DWORD stream, const std::string& text) {
  DWORD written = 0;
  WriteFile(GetStdHandle(stream), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

}  // namespace

int main(int count, char** arguments) {
  char path[MAX_PATH] = {};
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  const std::string name = path;
  for (int step = 0; step < kLongestLife; ++step) {
    if (GetFileAttributesA((name + ".hold").c_str()) == INVALID_FILE_ATTRIBUTES) break;
    Sleep(kStep);
  }
  if (count > 1 && std::strcmp(arguments[1], "arguments") == 0) {
    for (int i = 1; i < count; ++i) std::cerr << "<" << arguments[i] << ">\n";
    char folder[MAX_PATH] = {};
    GetCurrentDirectoryA(MAX_PATH, folder);
    std::cerr << folder << "\n";
    return 0;
  }
  char byte = 0;
  DWORD read = 1;
  const BOOL can_read = ReadFile(GetStdHandle(STD_INPUT_HANDLE), &byte, 1, &read, nullptr);
  if (can_read != FALSE && read != 0) return 250;  // the input is not empty
  Write(STD_OUTPUT_HANDLE, "output that nobody reads\n");
  Write(STD_ERROR_HANDLE, TextOf(name + ".text"));
  const std::string code = TextOf(name + ".code");
  return code.empty() ? 0 : std::stoi(code);
}
