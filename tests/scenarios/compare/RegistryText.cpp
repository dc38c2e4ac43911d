#include "scenarios/compare/RegistryText.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <sstream>

namespace zent::testing {
namespace {

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

/// The end of a quoted text that begins at `begin`, behind its closing quote.
std::size_t EndOfQuoted(std::string_view line, std::size_t begin) {
  std::size_t at = begin + 1;
  while (at < line.size() && line[at] != '"') at += line[at] == '\\' ? 2U : 1U;
  return std::min(at + 1, line.size());
}

void AddValue(std::string_view line, RegistryKeyText& key) {
  const std::size_t end = line.front() == '@' ? 1 : EndOfQuoted(line, 0);
  if (end >= line.size()) return;
  key.values[Lower(std::string(line.substr(0, end)))] = line.substr(end + 1);
}

/// One line, with the ones that a backslash at its end continues.
bool NextLine(std::istream& lines, std::string& line) {
  if (!std::getline(lines, line)) return false;
  if (!line.empty() && line.back() == '\r') line.pop_back();
  std::string more;
  while (!line.empty() && line.back() == '\\' && std::getline(lines, more)) {
    line.pop_back();
    line += more.substr(std::min(more.find_first_not_of(' '), more.size()));
  }
  return true;
}

/// Keys by the name that they have in a prefix: there the current control set is a link to its
/// number.
std::string NameOf(const std::string& heading) {
  const std::string link = R"(system\\currentcontrolset\\)";
  std::string name = Lower(heading.substr(1, heading.rfind(']') - 1));
  if (name.rfind(link, 0) == 0) name.replace(0, link.size(), R"(system\\controlset001\\)");
  return name;
}

bool MadeAtEveryStart(const std::string& key) { return key == "volatile environment"; }

/// Keys and values by one name each, to be compared.
std::map<std::string, std::string> Flat(const RegistryText& text) {
  std::map<std::string, std::string> flat;
  for (const auto& [name, key] : text.keys) {
    const auto next = text.keys.upper_bound(name);
    const bool has_keys = next != text.keys.end() && next->first.rfind(name + "\\\\", 0) == 0;
    if (key.values.empty() && !has_keys) flat[name] = "";
    for (const auto& [value, data] : key.values)
      flat[fmt::format("{}|{}", name, value)] = "=" + data;
  }
  return flat;
}

}  // namespace

RegistryText RegistryText::Read(std::string_view text) {
  RegistryText read;
  RegistryKeyText* key = nullptr;
  std::istringstream lines{std::string(text)};
  for (std::string line; NextLine(lines, line);) {
    if (!line.empty() && line.front() == '[') {
      key = &read.keys[NameOf(line)];
      key->heading = line;
    } else if (key == nullptr) {
      read.head += line + "\n";
    } else if (!line.empty() && line.front() == '#') {
      key->notes.push_back(line);
    } else if (!line.empty()) {
      AddValue(line, *key);
    }
  }
  return read;
}

std::string RegistryText::Write() const {
  std::string text = head;
  for (const auto& [name, key] : keys) {
    text += key.heading + "\n";
    for (const std::string& note : key.notes) text += note + "\n";
    for (const auto& [value, data] : key.values)
      text.append(value).append("=").append(data) += "\n";
    text += "\n";
  }
  return text;
}

void LayOver(const RegistryText& sample, const RegistryText& machine, RegistryText& prefix) {
  for (const auto& [name, key] : sample.keys) {
    const auto kept = machine.keys.find(name);
    for (const auto& [value, data] : key.values) {
      const bool is_kept = kept != machine.keys.end() && kept->second.values.count(value) != 0;
      if (!is_kept && prefix.keys.count(name) != 0) prefix.keys[name].values.erase(value);
    }
  }
  for (const auto& [name, key] : machine.keys) {
    if (MadeAtEveryStart(name)) continue;
    RegistryKeyText& target = prefix.keys[name];
    if (target.heading.empty()) target.heading = "[" + name + "] 1133000000";
    for (const auto& [value, data] : key.values) target.values[value] = data;
  }
}

std::string RegistryChanges(const RegistryText& before, const RegistryText& after) {
  const std::map<std::string, std::string> old_values = Flat(before);
  const std::map<std::string, std::string> new_values = Flat(after);
  std::string changes;
  for (const auto& [name, data] : old_values) {
    const auto found = new_values.find(name);
    if (found == new_values.end()) {
      // A key that got its first value is not gone.
      if (data.empty() && after.keys.count(name) != 0) continue;
      changes += fmt::format("- {}{}\n", name, data);
    } else if (found->second != data) {
      changes += fmt::format("~ {}{}\n", name, found->second);
    }
  }
  for (const auto& [name, data] : new_values) {
    if (old_values.count(name) == 0) changes += fmt::format("+ {}{}\n", name, data);
  }
  return changes;
}

}  // namespace zent::testing
