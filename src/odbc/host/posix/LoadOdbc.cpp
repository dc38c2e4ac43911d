#include "odbc/LoadOdbc.h"

#include <dlfcn.h>

#include <string>

#include "odbc/OdbcErrors.h"

namespace zent::odbc {
namespace {

/// unixODBC, by the name that its interface has had since version 2.3.
constexpr const char* kLibrary = "libodbc.so.2";

RuntimeError NotThere(const std::string& reason) {
  return EngineError(kNoDriverManager,
                     "Servers cannot be reached: unixODBC is not installed (" + reason + ")");
}

}  // namespace

Result<std::unique_ptr<OdbcCalls>> LoadOdbc() {
  void* const library = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return NotThere(dlerror());
  auto calls = std::make_unique<OdbcCalls>();
  const char* const missing =
      FindCalls([library](const char* name) { return dlsym(library, name); }, *calls);
  if (missing != nullptr) return NotThere(std::string(missing) + " is missing");
  return calls;
}

}  // namespace zent::odbc
