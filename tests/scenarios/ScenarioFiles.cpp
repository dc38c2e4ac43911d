#include "scenarios/ScenarioFiles.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "support/TempFolder.h"

namespace zent::testing {

namespace fs = std::filesystem;

std::vector<std::string> ListScenarios(const fs::path& folder) {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (entry.is_directory()) names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> LinesOf(const fs::path& file) {
  std::vector<std::string> lines;
  if (!fs::exists(file)) return lines;
  std::istringstream text(ReadHostFile(file));
  for (std::string line; std::getline(text, line);) {
    if (!line.empty()) lines.push_back(line);
  }
  return lines;
}

void BuildMachine(const Scenario& scenario, const fs::path& sample, const fs::path& machine) {
  const auto merge = fs::copy_options::recursive | fs::copy_options::overwrite_existing;
  fs::copy(sample, machine, merge);
  for (const std::string& name : LinesOf(scenario.folder / "remove"))
    fs::remove_all(machine / name);
  if (fs::exists(scenario.folder / "machine"))
    fs::copy(scenario.folder / "machine", machine, merge);
}

std::string WithoutCarriageReturns(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
  return text;
}

std::string RecordsOf(const fs::path& events, int exit_code) {
  std::string records;
  for (const std::string& line : LinesOf(events)) {
    const nlohmann::json event = nlohmann::json::parse(line);
    const std::string kind = event.at("event");
    if (kind == "command") {
      records += std::to_string(event.at("line").get<int>()) + " " +
                 event.at("keyword").get<std::string>() + " " +
                 event.at("record").get<std::string>();
      if (event.contains("reason")) records += ": " + event.at("reason").get<std::string>();
      records += "\n";
    } else if (kind == "box") {
      records += "box " + event.at("buttons").get<std::string>() + " -> " +
                 event.at("answer").get<std::string>() + ": " +
                 event.at("text").get<std::string>() + "\n";
    } else if (kind == "launch") {
      records += "launch " + event.at("command").get<std::string>() + "\n";
    } else if (kind == "end") {
      records += "end " + event.at("result").get<std::string>() +
                 (event.at("restart").get<bool>() ? " restart" : "") + "\n";
    }
  }
  return WithoutCarriageReturns(records) + "exit " + std::to_string(exit_code) + "\n";
}

std::vector<std::string> NamesOf(const std::string& changes) {
  std::vector<std::string> names;
  std::istringstream lines(changes);
  for (std::string line; std::getline(lines, line);) {
    if (line.front() != '-' && line.back() != '/') names.push_back(line.substr(2));
  }
  return names;
}

}  // namespace zent::testing
