#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "jet/format/JetErrors.h"
#include "jet/format/PropertyBlob.h"
#include "jet/format/TextCodec.h"
#include "jet/format/ValueCodec.h"

namespace zent::jet {
namespace {

constexpr std::string_view kMagicJet4 = std::string_view("MR2\0", 4);
constexpr std::string_view kMagicJet3 = std::string_view("KKD\0", 4);
constexpr std::uint16_t kNameList = 0x80;
constexpr std::size_t kBlockHead = 6;   // u32 length with this head, u16 kind
constexpr std::size_t kOwnerHead = 6;   // u32 size with itself and the name, u16 length of the name
constexpr std::size_t kRecordHead = 8;  // u16 length, flags, type, u16 name, u16 length of the data

constexpr std::string_view MagicOf(JetVersion version) {
  return version == JetVersion::Jet4 ? kMagicJet4 : kMagicJet3;
}

bool ReadNames(JetVersion version, ByteView bytes, std::vector<std::string>& names) {
  while (!bytes.empty()) {
    if (bytes.size() < 2) return false;
    const std::size_t length = LoadU16(bytes, 0);
    if (!Fits(bytes, 2, length)) return false;
    names.push_back(DecodeName(version, bytes.subspan(2, length)));
    bytes = bytes.subspan(2 + length);
  }
  return true;
}

bool ReadProperty(const std::vector<std::string>& names, ByteView record, PropertySet& set) {
  const std::size_t name = LoadU16(record, 4);
  const std::size_t length = LoadU16(record, 6);
  if (name >= names.size() || kRecordHead + length != record.size()) return false;
  set.properties.push_back({.name = names[name],
                            .type = static_cast<ColumnType>(record[3]),
                            .flags = record[2],
                            .data = std::string(AsText(record.subspan(kRecordHead)))});
  return true;
}

bool ReadSet(JetVersion version, const std::vector<std::string>& names, ByteView bytes,
             PropertySet& set) {
  if (bytes.size() < kOwnerHead) return false;
  const std::size_t owner_size = LoadU32(bytes, 0);
  const std::size_t name_length = LoadU16(bytes, 4);
  if (owner_size != kOwnerHead + name_length || owner_size > bytes.size()) return false;
  set.owner = DecodeName(version, bytes.subspan(kOwnerHead, name_length));
  bytes = bytes.subspan(owner_size);
  while (!bytes.empty()) {
    if (bytes.size() < kRecordHead) return false;
    const std::size_t length = LoadU16(bytes, 0);
    if (length < kRecordHead || length > bytes.size()) return false;
    if (!ReadProperty(names, bytes.first(length), set)) return false;
    bytes = bytes.subspan(length);
  }
  return true;
}

void AppendU16(std::size_t value, std::string& bytes) {
  bytes.push_back(static_cast<char>(value));
  bytes.push_back(static_cast<char>(value >> 8U));
}

void AppendU32(std::size_t value, std::string& bytes) {
  AppendU16(value & 0xFFFFU, bytes);
  AppendU16(value >> 16U, bytes);
}

void AppendBlock(std::uint16_t kind, std::string_view contents, std::string& bytes) {
  AppendU32(kBlockHead + contents.size(), bytes);
  AppendU16(kind, bytes);
  bytes += contents;
}

/// Number of a name in the list, where it is added when it is missing.
std::size_t NameNumber(std::string_view name, std::vector<std::string>& names) {
  const auto found = std::find(names.begin(), names.end(), name);
  const auto number = static_cast<std::size_t>(found - names.begin());
  if (found == names.end()) names.emplace_back(name);
  return number;
}

std::string SetContents(JetVersion version, const PropertySet& set,
                        std::vector<std::string>& names) {
  const std::string owner = EncodeName(version, set.owner);
  std::string contents;
  AppendU32(kOwnerHead + owner.size(), contents);
  AppendU16(owner.size(), contents);
  contents += owner;
  for (const Property& property : set.properties) {
    AppendU16(kRecordHead + property.data.size(), contents);
    contents.push_back(static_cast<char>(property.flags));
    contents.push_back(static_cast<char>(property.type));
    AppendU16(NameNumber(property.name, names), contents);
    AppendU16(property.data.size(), contents);
    contents += property.data;
  }
  return contents;
}

}  // namespace

Result<PropertyBlob> ParsePropertyBlob(JetVersion version, ByteView bytes, PageNumber page) {
  PropertyBlob blob;
  if (bytes.empty()) return blob;
  const std::string_view magic = MagicOf(version);
  if (!AsText(bytes).starts_with(magic)) return Damaged(page, "no list of properties");
  bytes = bytes.subspan(magic.size());
  while (!bytes.empty()) {
    const std::size_t length = bytes.size() < kBlockHead ? 0 : LoadU32(bytes, 0);
    if (length < kBlockHead || length > bytes.size()) {
      return Damaged(page, "a list of properties is cut");
    }
    const std::uint16_t kind = LoadU16(bytes, 4);
    const ByteView contents = bytes.subspan(kBlockHead, length - kBlockHead);
    bytes = bytes.subspan(length);
    if (kind == kNameList) {
      if (!ReadNames(version, contents, blob.names)) {
        return Damaged(page, "the names of properties are cut");
      }
      continue;
    }
    PropertySet set = {.owner = {}, .kind = kind, .properties = {}};
    if (!ReadSet(version, blob.names, contents, set)) {
      return Damaged(page, "a list of properties does not hold what it says");
    }
    blob.sets.push_back(std::move(set));
  }
  return blob;
}

Result<std::string> SerialisePropertyBlob(JetVersion version, const PropertyBlob& blob) {
  constexpr std::size_t kMaxU16 = 0xFFFF;
  std::vector<std::string> names = blob.names;
  std::string sets;
  for (const PropertySet& set : blob.sets) {
    for (const Property& property : set.properties) {
      if (property.data.size() + kRecordHead > kMaxU16) {
        return JetErrorBecause(kInvalidArgument,
                               fmt::format("property {} is too long", property.name));
      }
    }
    AppendBlock(set.kind, SetContents(version, set, names), sets);
  }
  if (names.size() > kMaxU16) return JetErrorBecause(kInvalidArgument, "too many properties");

  std::string name_list;
  for (const std::string& name : names) {
    const std::string stored = EncodeName(version, name);
    AppendU16(stored.size(), name_list);
    name_list += stored;
  }
  std::string bytes(MagicOf(version));
  AppendBlock(kNameList, name_list, bytes);
  return bytes + sets;
}

Value PropertyValue(JetVersion version, const Property& property) {
  const ByteView bytes = AsBytes(property.data);
  if (IsText(property.type)) return DecodeName(version, bytes);
  if (property.type == ColumnType::Bool) return bytes.empty() ? Value(Null{}) : bytes[0] != 0;
  // Widths and orders of columns are named integers and have four bytes.
  if (property.type == ColumnType::Int && bytes.size() == 4) {
    return static_cast<std::int32_t>(LoadU32(bytes, 0));
  }
  const ColumnDefinition column = {.type = property.type};
  const Result<Value> value = DecodeField(version, column, bytes, 0);
  return value.ok() ? value.value() : Value(Null{});
}

Result<Property> MakeProperty(std::string_view name, ColumnType type, bool ddl,
                              const Value& value) {
  Property property = {
      .name = std::string(name), .type = type, .flags = ddl ? std::uint8_t{1} : std::uint8_t{0}};
  const bool* const yes = std::get_if<bool>(&value);
  const auto* const text = std::get_if<Text>(&value);
  if (type == ColumnType::Bool && yes != nullptr) {
    property.data.assign(1, *yes ? '\x01' : '\x00');
    return property;
  }
  if (IsText(type) && text != nullptr) {
    property.data = EncodeName(JetVersion::Jet4, *text);
    return property;
  }
  const ColumnDefinition column = {.type = type, .length = 0xFFFF};
  if (Status encoded = EncodeField(column, value, property.data); !encoded.ok()) {
    return encoded.error();
  }
  return property;
}

}  // namespace zent::jet
