#include <gtest/gtest.h>

#include "platform/win32/UniqueHandle.h"

namespace zent {
namespace {

bool IsOpen(HANDLE handle) {
  DWORD flags = 0;
  return GetHandleInformation(handle, &flags) != FALSE;
}

TEST(UniqueHandle, ClosesWhatItOwnsOnce) {
  const HANDLE raw = CreateEventA(nullptr, FALSE, FALSE, nullptr);
  {
    UniqueHandle first(raw);
    UniqueHandle second(std::move(first));
    EXPECT_FALSE(first.ok());  // NOLINT(bugprone-use-after-move): what a moved-from one holds
    EXPECT_TRUE(second.ok());
    EXPECT_TRUE(IsOpen(raw));
  }
  EXPECT_FALSE(IsOpen(raw));
}

TEST(UniqueHandle, TakesBothValuesForNoHandle) {
  EXPECT_FALSE(UniqueHandle().ok());
  EXPECT_FALSE(UniqueHandle(INVALID_HANDLE_VALUE).ok());
}

}  // namespace
}  // namespace zent
