#include "ui/win32/AppIcon.h"

namespace zent {

HICON AppIcon(IconSize size) {
  const bool small_one = size == IconSize::Small;
  const int width = GetSystemMetrics(small_one ? SM_CXSMICON : SM_CXICON);
  const int height = GetSystemMetrics(small_one ? SM_CYSMICON : SM_CYICON);
  const HANDLE icon = LoadImageA(GetModuleHandleA(nullptr), reinterpret_cast<LPCSTR>(INT_PTR{1}),
                                 IMAGE_ICON, width, height, LR_SHARED);
  if (icon != nullptr) return static_cast<HICON>(icon);
  return LoadIconA(nullptr, reinterpret_cast<LPCSTR>(IDI_APPLICATION));
}

}  // namespace zent
