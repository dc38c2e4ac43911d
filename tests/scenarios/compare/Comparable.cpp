#include "scenarios/compare/Comparable.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <sstream>

#include "contracts/LinkReader.h"

namespace zent::testing {
namespace {

std::string Trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t\r");
  if (begin == std::string_view::npos) return "";
  return std::string(text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1));
}

std::string SettingsOf(std::string_view bytes) {
  std::string settings;
  std::istringstream lines{std::string(bytes)};
  for (std::string line; std::getline(lines, line);) {
    const std::string text = Trimmed(line);
    if (text.empty() || text.front() == ';') continue;
    const std::size_t equals = text.find('=');
    if (text.front() == '[' || equals == std::string::npos) {
      settings += text + "\n";
    } else {
      settings += Trimmed(text.substr(0, equals)) + "=" + Trimmed(text.substr(equals + 1)) + "\n";
    }
  }
  return settings;
}

std::string LinkOf(std::string_view bytes) {
  const std::optional<LinkFile> link = ReadLink(bytes);
  if (!link) return "not a link: " + std::string(bytes);
  return "target " + link->PathOfItems() + "\npath " + link->path + "\ndescription " +
         link->description + "\nfolder " + link->working_folder + "\narguments " + link->arguments +
         "\nicon " + link->icon + "\n";
}

}  // namespace

std::string Comparable(std::string_view name, std::string_view bytes) {
  std::string extension = std::filesystem::path(name).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  // A name that is all extension, ".ini", has none by the host's rules.
  if (extension == ".ini" || name.ends_with("/.ini")) return SettingsOf(bytes);
  if (extension == ".lnk") return LinkOf(bytes);
  return std::string(bytes);
}

}  // namespace zent::testing
