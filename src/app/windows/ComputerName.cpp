#include "app/windows/ComputerName.h"

#include <windows.h>

#include <array>

#include "platform/win32/WideText.h"

namespace zent {

std::string ComputerName() {
  std::array<wchar_t, MAX_COMPUTERNAME_LENGTH + 1> name = {};
  auto size = static_cast<DWORD>(name.size());
  if (GetComputerNameW(name.data(), &size) == FALSE) return "localhost";
  return Utf8Of({name.data(), size});
}

}  // namespace zent
