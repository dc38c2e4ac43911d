// Any bytes as a registry file: it is refused, or a value that is set is there after the file is
// written and read again, and every other value is what it was.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

#include "platform/prefix/registry/RegistryFile.h"

namespace {

constexpr std::uint64_t kNow = 0x1dd799bcbb4dcc2;

void Require(bool holds) {
  if (!holds) std::abort();
}

std::optional<zent::RegistryValue> Find(const zent::RegistryFile& file, const zent::KeyPath& path,
                                        const std::string& name) {
  const std::optional<zent::KeyId> key = file.FindKey(path);
  return key ? file.FindValue(*key, name) : std::nullopt;
}

bool Same(const std::optional<zent::RegistryValue>& a,
          const std::optional<zent::RegistryValue>& b) {
  if (!a || !b) return a.has_value() == b.has_value();
  return a->type == b->type && a->data == b->data;
}

void CheckEdit(const std::string& text, const zent::KeyPath& path, const std::string& name) {
  const zent::Result<zent::RegistryFile> before = zent::RegistryFile::Parse(text, "before");
  zent::Result<zent::RegistryFile> edited = zent::RegistryFile::Parse(text, "edited");
  if (!before.ok() || !edited.ok()) return;
  const zent::RegistryEdit edit = edited.value().EditText(path, name, "text", kNow);
  std::string after = edited.value().TextAfter(edit);
  zent::Result<zent::RegistryFile> again = zent::RegistryFile::Parse(after, "again");
  if (!edit.empty()) edited.value().Apply(edit, std::move(after));

  Require(again.ok());
  Require(again.value().text() == edited.value().text());
  for (const zent::RegistryFile* file : {&edited.value(), &again.value()}) {
    const std::optional<zent::RegistryValue> value = Find(*file, path, name);
    Require(value && value->type == zent::kRegSz && value->data == std::string("text\0", 5));
    for (const zent::KeyPath& key :
         {zent::KeyPath{}, zent::KeyPath{"a"}, zent::KeyPath{"a", "b"}}) {
      for (const char* other : {"", "v", "w"}) {
        if (key == path && name == other) continue;
        Require(Same(Find(*file, key, other), Find(before.value(), key, other)));
      }
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(data, data + size);
  // Most inputs would end at the first line; it is put before them, and they are tried without.
  for (const std::string& text : {bytes, "WINE REGISTRY Version 2\n" + bytes}) {
    CheckEdit(text, {"a"}, "v");
    CheckEdit(text, {"a", "b"}, "");
    CheckEdit(text, {"A", "c"}, "x");
  }
  return 0;
}
