#include <windows.h>

#include <exception>
#include <string>
#include <vector>

#include "app/jetdb/windows/WindowsHost.h"
#include "app/windows/LibrarySearch.h"
#include "platform/win32/WideText.h"

// Nothing is done about Ctrl+C: a transaction that it cuts off is undone by the next opening.
int wmain(int argc, wchar_t** argv) {
  zent::LimitLibrarySearch();
  std::vector<std::string> arguments;
  arguments.reserve(static_cast<std::size_t>(argc));
  for (int i = 0; i < argc; ++i) arguments.push_back(zent::Utf8Of(argv[i]));
  std::vector<const char*> pointers;
  pointers.reserve(arguments.size());
  for (const std::string& argument : arguments) pointers.push_back(argument.c_str());
  zent::WindowsJetdbHost host;
  try {
    return zent::RunJetdb(host, argc, pointers.data());
  } catch (const std::exception& defect) {
    host.errors() << "jetdb: " << defect.what() << std::endl;
    return zent::kJetdbFailed;
  }
}
