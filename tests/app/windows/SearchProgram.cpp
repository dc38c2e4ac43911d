#include <windows.h>

#include <cstdio>

#include "app/windows/LibrarySearch.h"
#include "odbc/LoadOdbc.h"

namespace {

struct Library {
  const char* what;
  const char* name;
};

// All but the system's are planted, each in the folder that it is named after.
constexpr Library kLibraries[] = {
    {"program", "zentprogram.dll"}, {"current", "zentcurrent.dll"},   {"path", "zentpath.dll"},
    {"system", "version.dll"},      {"relative", "zentrelative.dll"}, {"driver", "zentdriver.dll"},
};

/// Says which libraries are found by their names alone. None is kept: one that is loaded is found
/// wherever it lies.
void TellWhatIsFound(const char* when) {
  std::printf("%s:", when);
  for (const Library& library : kLibraries) {
    const HMODULE module = LoadLibraryA(library.name);
    if (module == nullptr) continue;
    std::printf(" %s", library.what);
    FreeLibrary(module);
  }
  std::printf(".\n");
}

}  // namespace

/// Tells on its output where a program finds its libraries, and where it does after each step that
/// it takes.
int main() {
  TellWhatIsFound("as started");
  zent::LimitLibrarySearch();
  TellWhatIsFound("limited");
  // Whether there is a driver manager does not matter.
  static_cast<void>(zent::odbc::LoadOdbc());
  TellWhatIsFound("with drivers");
  return 0;
}
