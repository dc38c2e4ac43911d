#include "platform/prefix/settings/IniRead.h"

#include "base/Text.h"
#include "platform/prefix/settings/IniLines.h"
#include "platform/prefix/settings/IniSection.h"

namespace zent {
namespace {

/// Collects names, each with a NUL behind it, until a number of characters is reached.
class NameList {
 public:
  NameList(const IniText& file, std::size_t limit) : file_(file), free_(limit) {}

  bool IsFull() const { return free_ == 0; }

  void Add(std::string_view name) {
    if (name.empty() || IsFull()) return;
    const std::string decoded = file_.Decode(name, free_);
    names_ += decoded;
    free_ -= CountCharacters(decoded);
    if (IsFull()) return;
    names_ += '\0';
    --free_;
  }

  const std::string& names() const { return names_; }

 private:
  const IniText& file_;
  std::size_t free_;
  std::string names_;
};

}  // namespace

std::string_view StripIniQuotes(std::string_view value) {
  if (value.size() < 2 || value.front() != value.back()) return value;
  if (value.front() != '"' && value.front() != '\'') return value;
  return value.substr(1, value.size() - 2);
}

std::optional<std::string> FindIniValue(const IniText& file, std::string_view section,
                                        std::string_view key, std::size_t limit) {
  IniSection lines(file, section);
  if (!lines.found()) return std::nullopt;
  const IniName wanted(key, file);
  while (const std::optional<IniLine> line = lines.Next()) {
    if (line->kind == IniLineKind::Key && wanted.Matches(line->name)) {
      return file.Decode(StripIniQuotes(line->value), limit);
    }
  }
  return std::nullopt;
}

std::string ListIniKeys(const IniText& file, std::string_view section, std::size_t limit) {
  NameList keys(file, limit);
  IniSection lines(file, section);
  if (!lines.found()) return {};
  while (const std::optional<IniLine> line = lines.Next()) {
    if (line->kind == IniLineKind::Key) keys.Add(line->name);
    if (keys.IsFull()) break;
  }
  return keys.names();
}

std::string ListIniSections(const IniText& file, std::size_t limit) {
  NameList sections(file, limit);
  IniLines lines(file.text());
  while (const std::optional<IniLine> line = lines.Next()) {
    if (line->kind == IniLineKind::Header) sections.Add(line->name);
    if (sections.IsFull()) break;
  }
  return sections.names();
}

}  // namespace zent
