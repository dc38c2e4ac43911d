#include "differential/Differences.h"

#include <fmt/format.h>
#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

#include "scenarios/compare/Comparable.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

Lines LinesOf(const std::string& text) {
  Lines lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

/// The lines that one of two texts has alone. What they share keeps its order in both.
void CompareLines(const Lines& native, const Lines& windows, Lines& found) {
  const std::size_t rows = native.size();
  const std::size_t columns = windows.size();
  std::vector<std::vector<int>> shared(rows + 1, std::vector<int>(columns + 1));
  for (std::size_t i = rows; i-- > 0;) {
    for (std::size_t j = columns; j-- > 0;) {
      shared[i][j] = native[i] == windows[j] ? shared[i + 1][j + 1] + 1
                                             : std::max(shared[i + 1][j], shared[i][j + 1]);
    }
  }
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < rows || j < columns) {
    if (i < rows && j < columns && native[i] == windows[j]) {
      ++i, ++j;
    } else if (j == columns || (i < rows && shared[i + 1][j] >= shared[i][j + 1])) {
      found.push_back("log: only native: " + native[i++]);
    } else {
      found.push_back("log: only windows: " + windows[j++]);
    }
  }
}

std::string EventText(const Lines& lines, std::size_t at) {
  return at < lines.size() ? nlohmann::json::parse(lines[at]).dump() : "none";
}

void CompareEvents(const Lines& native, const Lines& windows, Lines& found) {
  for (std::size_t at = 0; at < std::max(native.size(), windows.size()); ++at) {
    const std::string one = EventText(native, at);
    const std::string other = EventText(windows, at);
    if (one == other) continue;
    found.push_back(fmt::format("event {}: native: {} | windows: {}", at + 1, one, other));
  }
}

void CompareFiles(const RunEnd& native, const RunEnd& windows, const std::set<std::string>& noise,
                  Lines& found) {
  for (const auto& [name, contents] : native.machine.files) {
    if (noise.count(name) != 0) continue;
    const auto other = windows.machine.files.find(name);
    if (other == windows.machine.files.end()) {
      found.push_back("file: only native: " + name);
    } else if (Comparable(name, contents) != Comparable(name, other->second)) {
      found.push_back("file: other contents: " + name);
    }
  }
  for (const auto& [name, contents] : windows.machine.files) {
    if (native.machine.files.count(name) == 0 && noise.count(name) == 0)
      found.push_back("file: only windows: " + name);
  }
}

std::string Named(const std::string& attributes) {
  return attributes.empty() ? "none" : attributes;
}

void CompareAttributes(const RunEnd& native, const RunEnd& windows, Lines& found) {
  for (const auto& [name, attributes] : native.attributes) {
    const auto other = windows.attributes.find(name);
    if (other == windows.attributes.end() || other->second == attributes) continue;
    found.push_back("attributes: " + name + ": native " + Named(attributes) + ", windows " +
                    Named(other->second));
  }
}

/// "+ key|name=data" without the sign and the data.
std::string NameOf(const std::string& change) {
  const std::size_t bar = change.find('|');
  if (bar == std::string::npos) return change.substr(2);
  const std::size_t quote = change.find("\"=", bar + 2);
  const std::size_t end = change[bar + 1] == '@' ? bar + 2 : quote + 1;
  return change.substr(2, end - 2);
}

void CompareRegistry(const RunEnd& native, const RunEnd& windows,
                     const std::set<std::string>& noise, Lines& found) {
  for (const auto& [file, registry] : native.machine.registry) {
    for (const std::string& change :
         LinesOf(RegistryChanges(registry, windows.machine.registry.at(file)))) {
      if (noise.count(file + ": " + NameOf(change)) != 0) continue;
      const char* const what = change.front() == '+'   ? ": only windows: "
                               : change.front() == '-' ? ": only native: "
                                                       : ": other data: ";
      found.push_back(file + what + change.substr(2));
    }
  }
}

/// Hidden and system, as Wine keeps them: a number in hexadecimal text.
std::string KeptAttributes(const fs::path& file) {
  std::array<char, 32> text = {};
  if (::lgetxattr(file.c_str(), "user.DOSATTRIB", text.data(), text.size() - 1) < 0) return "";
  const unsigned long bits = std::strtoul(text.data(), nullptr, 16);
  return std::string((bits & 2U) != 0 ? "h" : "") + ((bits & 4U) != 0 ? "s" : "");
}

}  // namespace

std::string WithoutMoments(const std::string& text) {
  const std::regex second(R"(\d{4}-\d\d-\d\d \d\d-\d\d-\d\d)");
  const std::regex program(R"(\(RetVal=[1-9]\d*\))");
  return std::regex_replace(std::regex_replace(text, second, "SECOND"), program, "(RetVal=N)");
}

std::map<std::string, std::string> ReadAttributes(const fs::path& prefix) {
  std::map<std::string, std::string> attributes;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(prefix / "drive_c")) {
    const bool writable =
        (entry.status().permissions() & fs::perms::owner_write) != fs::perms::none;
    std::string name = fs::relative(entry.path(), prefix).string();
    if (entry.is_directory()) name += "/";
    attributes[WithoutMoments(name)] = (writable ? "" : "r") + KeptAttributes(entry.path());
  }
  return attributes;
}

std::vector<std::string> DifferencesOf(const RunEnd& native, const RunEnd& windows,
                                       const std::set<std::string>& noise) {
  Lines found;
  CompareLines(LinesOf(native.log), LinesOf(windows.log), found);
  CompareEvents(LinesOf(native.events), LinesOf(windows.events), found);
  CompareFiles(native, windows, noise, found);
  CompareAttributes(native, windows, found);
  CompareRegistry(native, windows, noise, found);
  return found;
}

std::set<std::string> NoiseOf(const PrefixState& before, const PrefixState& after) {
  std::set<std::string> noise;
  for (const std::string& line : LinesOf(CompareTrees(before.files, after.files)))
    noise.insert(line.substr(2));
  for (const auto& [file, registry] : before.registry) {
    for (const std::string& change : LinesOf(RegistryChanges(registry, after.registry.at(file))))
      noise.insert(file + ": " + NameOf(change));
  }
  return noise;
}

}  // namespace zent::testing
