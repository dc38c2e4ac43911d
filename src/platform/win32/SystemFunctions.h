#pragma once

#include <windows.h>

namespace zent {

/// The function `name` of a system library that every program has loaded, or null on a Windows that
/// is older than the function. `Function` is its type, calling convention included.
template <typename Function>
Function* FindSystemFunction(const char* library, const char* name) {
  const HMODULE module = GetModuleHandleA(library);
  if (module == nullptr) return nullptr;
  // Through void*: the compiler distrusts a cast from one type of function to another.
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

}  // namespace zent
