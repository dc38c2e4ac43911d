#include "lib/AppSettings.h"

#include "lib/Dates.h"
#include "lib/RegFuncs.h"

namespace zent {
namespace {

std::string SectionKey(std::string_view app, std::string_view section) {
  std::string path = R"(Software\VB and VBA Program Settings\)";
  return path.append(app).append("\\").append(section);
}

bool IsAddress(std::string_view app, std::string_view section, std::string_view key) {
  return !app.empty() && !section.empty() && !key.empty();
}

}  // namespace

std::string GetAppSetting(const Platform& machine, std::string_view app, std::string_view section,
                          std::string_view key, std::string_view default_text) {
  std::string text(default_text);
  KeyHandle handle = KeyHandle::None;
  if (!IsAddress(app, section, key) ||
      !OpenRegKey(machine.registry, KeyHandle::CurrentUser, SectionKey(app, section), handle)) {
    return text;
  }
  GetRegValue(machine, handle, key, text);
  CloseRegKey(machine.registry, handle);
  return text;
}

Status SaveAppSetting(const Platform& machine, std::string_view app, std::string_view section,
                      std::string_view key, std::string_view value) {
  if (!IsAddress(app, section, key)) return StandardError(kInvalidProcedureCall);
  const Result<KeyHandle> handle =
      machine.registry.CreateKey(KeyHandle::CurrentUser, SectionKey(app, section));
  if (!handle.ok()) return handle.error();
  Status saved = machine.registry.SetText(handle.value(), key, value);
  Status closed = machine.registry.CloseKey(handle.value());
  return saved.ok() ? closed : saved;
}

bool HasNeverRun(const Platform& machine, std::string_view app) {
  return !IsDate(GetAppSetting(machine, app, "Settings", "LastRunDateTime"),
                 machine.clock.Now().year);
}

}  // namespace zent
