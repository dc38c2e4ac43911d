#include <windows.h>

#include <exception>

#include "app/jetdb/windows/WindowsHost.h"
#include "app/windows/LibrarySearch.h"
#include "component/Customisation.h"
#include "platform/win32/WideText.h"

int wmain(int argc, wchar_t** argv) {
  zent::LimitLibrarySearch();
  zent::WindowsJetdbHost host;
  if (argc != 4) {
    host.errors() << "usage: ZentCustomize.exe DATABASE CUSTOMIZE_FOLDER TEMP_FOLDER" << std::endl;
    return zent::kComponentFailed;
  }
  try {
    return zent::ApplyCustomisations(host, zent::Utf8Of(argv[1]), zent::Utf8Of(argv[2]));
  } catch (const std::exception& defect) {
    host.errors() << defect.what() << std::endl;
    return zent::kComponentFailed;
  }
}
