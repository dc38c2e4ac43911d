#include "fileops/RegistryCommands.h"

#include <string_view>

#include "driver/run/Messages.h"
#include "lib/AppSettings.h"
#include "lib/FuncLib.h"
#include "lib/RegFuncs.h"

namespace zent {
namespace {

constexpr std::string_view kRegistryHeadline = "Error Writing into Registry ";

struct RegistryAddress {
  std::string root;
  std::string key;
  std::string name;
};

Result<RegistryAddress> AddressOf(const std::string& text) {
  TokenList parts;
  const Result<std::size_t> split = GetTokens(text, "|", parts);
  if (!split.ok()) return split.error();
  const Result<std::string> root = parts.At(1);
  const Result<std::string> key = parts.At(2);
  const Result<std::string> name = parts.At(3);
  for (const Result<std::string>* part : {&root, &key, &name}) {
    if (!part->ok()) return part->error();
  }
  return RegistryAddress{.root = root.value(), .key = key.value(), .name = name.value()};
}

Status WriteValue(Registry& registry, KeyHandle root, const RegistryAddress& address,
                  const std::string& text) {
  KeyHandle key = KeyHandle::None;
  Status created = CreateRegKey(registry, root, address.key, key);
  if (!created.ok()) return created;
  Status written = SetRegValue(registry, key, address.name, text);
  Status closed = registry.CloseKey(key);
  return written.ok() ? closed : written;
}

}  // namespace

Status WriteRegistryText(UpdateRun& run, const std::string& address, const std::string& text) {
  const std::string headline = std::string(kRegistryHeadline) + address;
  const Result<RegistryAddress> parts = AddressOf(address);
  if (!parts.ok()) return run.ReportError(headline, parts.error());

  run.ShowMsg("Writing into Registry " + address + " ");
  const RegistryAddress& place = parts.value();
  if (place.root != "HKCU" && place.root != "HKLM") {
    const Status saved = SaveAppSetting(run.platform, place.root, place.key, place.name, text);
    return saved.ok() ? saved : run.ReportError(headline, saved.error());
  }
  const KeyHandle root = place.root == "HKCU" ? KeyHandle::CurrentUser : KeyHandle::LocalMachine;
  const Status written = WriteValue(run.platform.registry, root, place, text);
  if (written.ok()) return {};
  run.Ask({.title = {}, .text = ErrorText(headline + " ", {.number = 0, .description = {}})});
  run.Fail(written.error().description);
  return {};
}

Status WriteRegistryCommand(UpdateRun& run, const TokenList& tokens) {
  const Result<std::string> address = tokens.At(2);
  const Result<std::string> text = tokens.At(3);
  if (!address.ok()) return run.ReportError(kRegistryHeadline, address.error());
  if (!text.ok()) {
    return run.ReportError(std::string(kRegistryHeadline) + address.value(), text.error());
  }
  return WriteRegistryText(run, address.value(), text.value());
}

}  // namespace zent
