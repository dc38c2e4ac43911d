#include "scenarios/Scenario.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "scenarios/HostProgram.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> LinesOf(const fs::path& file) {
  std::vector<std::string> lines;
  if (!fs::exists(file)) return lines;
  std::istringstream text(ReadHostFile(file));
  for (std::string line; std::getline(text, line);) {
    if (!line.empty()) lines.push_back(line);
  }
  return lines;
}

void BuildMachine(const Scenario& scenario, const fs::path& machine) {
  const auto merge = fs::copy_options::recursive | fs::copy_options::overwrite_existing;
  fs::copy(ZENT_SAMPLE_MACHINE, machine, merge);
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

}  // namespace

std::vector<std::string> ListScenarios(const fs::path& folder) {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (entry.is_directory()) names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

ScenarioEnd RunScenario(const Scenario& scenario, const fs::path& workplace) {
  const fs::path machine = workplace / "machine";
  const fs::path package = workplace / "package";
  BuildMachine(scenario, machine);
  fs::copy(scenario.folder / "package", package, fs::copy_options::recursive);
  const MachineTree before = ReadTree(machine);

  std::vector<std::string> arguments = {ZENT_PROGRAM, package.string(),
                                        "--machine",  machine.string(),
                                        "--console",  "--unattended",
                                        "--log",      (workplace / "log").string(),
                                        "--events",   (workplace / "events").string()};
  if (fs::exists(scenario.folder / "answers")) {
    arguments.insert(arguments.end(), {"--answers", (scenario.folder / "answers").string()});
  }
  for (const std::string& option : LinesOf(scenario.folder / "options"))
    arguments.push_back(option);
  const ProgramEnd ended = RunHostProgram(arguments, workplace.string());

  ScenarioEnd end;
  end.output = ended.output;
  end.log = WithoutCarriageReturns(ReadHostFile(workplace / "log"));
  end.records = RecordsOf(workplace / "events", ended.exit_code);
  end.machine = ReadTree(machine);
  end.changes = CompareTrees(before, end.machine);
  return end;
}

}  // namespace zent::testing
