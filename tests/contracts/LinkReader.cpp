#include "contracts/LinkReader.h"

#include <cstddef>
#include <stdexcept>

#include "base/CodePage.h"
#include "base/Utf.h"

namespace zent::testing {
namespace {

/// Reads fields off a span of bytes; a field that is not there ends the reading.
class Fields {
 public:
  explicit Fields(std::string_view bytes) : bytes_(bytes) {}

  std::string_view Take(std::size_t count) {
    if (count > bytes_.size()) throw std::runtime_error("too short");
    const std::string_view taken = bytes_.substr(0, count);
    bytes_.remove_prefix(count);
    return taken;
  }
  std::uint32_t Number(std::size_t size) {
    std::uint32_t value = 0;
    const std::string_view taken = Take(size);
    for (std::size_t i = taken.size(); i > 0; --i) {
      value = value << 8U | static_cast<unsigned char>(taken[i - 1]);
    }
    return value;
  }
  std::string_view rest() const { return bytes_; }

 private:
  std::string_view bytes_;
};

void Require(bool holds) {
  if (!holds) throw std::runtime_error("does not hold together");
}

std::string AnsiAt(std::string_view block, std::size_t offset) {
  Require(offset < block.size());
  const std::size_t end = block.find('\0', offset);
  Require(end != std::string_view::npos);
  return FromAnsi(block.substr(offset, end - offset));
}

std::string Utf16At(std::string_view block, std::size_t offset) {
  Require(offset < block.size());
  const std::string text = FromUtf16Bytes(block.substr(offset));
  const std::size_t end = text.find('\0');
  Require(end != std::string::npos);
  return text.substr(0, end);
}

LinkItem ReadItem(std::string_view data) {
  LinkItem item;
  item.kind = static_cast<std::uint8_t>(Fields(data).Number(1));
  if (item.kind >= 0x20 && item.kind <= 0x2F) item.ansi_name = AnsiAt(data, 1);
  if (item.kind != 0x31 && item.kind != 0x32) return item;
  item.ansi_name = AnsiAt(data, 12);
  // The last field tells where the Unicode block begins, counted from the size before `data`.
  Require(data.size() > 14);
  const std::size_t block = Fields(data.substr(data.size() - 2)).Number(2) - 2;
  Require(block < data.size());
  Require(Fields(data.substr(block)).Number(2) == data.size() - block);
  item.name = Utf16At(data, block + 20);
  return item;
}

std::vector<LinkItem> ReadItems(std::string_view list) {
  std::vector<LinkItem> items;
  Fields fields(list);
  while (const std::uint32_t size = fields.Number(2)) {
    Require(size > 2);
    items.push_back(ReadItem(fields.Take(size - 2)));
  }
  Require(fields.rest().empty());
  return items;
}

/// `block` with its size field.
std::string ReadPath(std::string_view block) {
  Fields fields(block);
  fields.Take(4);
  const std::uint32_t header = fields.Number(4);
  Require(fields.Number(4) == 1);
  const std::uint32_t volume = fields.Number(4);
  const std::uint32_t path = fields.Number(4);
  Require(fields.Number(4) == 0);
  const std::uint32_t suffix = fields.Number(4);
  Require(AnsiAt(block, suffix).empty());
  Require(header == 0x1C && Fields(block.substr(volume)).Number(4) + volume <= path);
  return AnsiAt(block, path);
}

/// A counted text; one whose closing NUL is counted, too, loses it.
std::string ReadText(Fields& fields) {
  std::string text = FromUtf16Bytes(fields.Take(std::size_t{2} * fields.Number(2)));
  while (text.ends_with('\0')) text.pop_back();
  return text;
}

LinkFile Read(std::string_view bytes) {
  LinkFile link;
  Fields fields(bytes);
  Require(fields.Number(4) == 0x4C);
  Require(fields.Take(16) == std::string_view("\x01\x14\x02\0\0\0\0\0\xC0\0\0\0\0\0\0\x46", 16));
  link.flags = fields.Number(4);
  fields.Take(0x4C - 24);
  if ((link.flags & 0x01U) != 0) link.items = ReadItems(fields.Take(fields.Number(2)));
  if ((link.flags & 0x02U) != 0) {
    const std::uint32_t size = Fields(fields.rest()).Number(4);
    link.path = ReadPath(fields.Take(size));
  }
  if ((link.flags & 0x04U) != 0) link.description = ReadText(fields);
  if ((link.flags & 0x10U) != 0) link.working_folder = ReadText(fields);
  if ((link.flags & 0x20U) != 0) link.arguments = ReadText(fields);
  if ((link.flags & 0x40U) != 0) link.icon = ReadText(fields);
  Require(fields.Number(4) == 0);
  Require(fields.rest().empty());
  return link;
}

}  // namespace

std::string LinkFile::PathOfItems() const {
  std::string text;
  for (const LinkItem& item : items) {
    if (item.kind >= 0x20 && item.kind <= 0x2F) text = item.ansi_name;
    if (item.kind != 0x31 && item.kind != 0x32) continue;
    if (!text.ends_with('\\')) text += '\\';
    text += item.name;
  }
  return text;
}

std::optional<LinkFile> ReadLink(std::string_view bytes) {
  try {
    return Read(bytes);
  } catch (const std::runtime_error&) {
    return std::nullopt;
  }
}

}  // namespace zent::testing
