#include "fakes/ui/FakeShell.h"

#include <algorithm>
#include <utility>

#include "base/Text.h"

namespace zent::testing {

Status FakeShell::OpenAddress(std::string_view address) {
  addresses.emplace_back(address);
  return open_address;
}

WindowHandle FakeShell::FindWindowByTitle(std::string_view title) {
  searched.emplace_back(title);
  const auto found = std::find_if(windows.begin(), windows.end(), [&](const Window& window) {
    return EqualsIgnoringCase(window.title, title);
  });
  if (found == windows.end()) return WindowHandle::None;
  if (found->asked_to_close && found->looks_until_closed == 0) {
    windows.erase(found);
    return WindowHandle::None;
  }
  if (found->asked_to_close && found->looks_until_closed > 0) --found->looks_until_closed;
  return found->handle;
}

Status FakeShell::PostClose(WindowHandle window) {
  const auto found = std::find_if(windows.begin(), windows.end(),
                                  [&](const Window& each) { return each.handle == window; });
  if (found == windows.end()) return StandardError(kInvalidProcedureCall);
  closed.push_back(found->title);
  if (post_close.ok()) found->asked_to_close = true;
  return post_close;
}

bool FakeShell::AcquireShutdownPrivilege() {
  ++privilege_calls;
  return privilege;
}

Status FakeShell::EndSession(std::uint32_t action) {
  sessions.push_back(action);
  return end_session;
}

void FakeShell::AddWindow(std::string title, int looks_until_closed) {
  windows.push_back({.title = std::move(title),
                     .handle = WindowHandle{next_handle_++},
                     .looks_until_closed = looks_until_closed});
}

}  // namespace zent::testing
