#include "xmlupdate/XmlMachine.h"

#include <algorithm>
#include <regex>

#include "xmlupdate/XmlCommands.h"

namespace zent::testing {

std::string Compact(std::string text) {
  static const std::regex declaration(R"(^<\?xml[^>]*\?>)");
  static const std::regex between(R"(>\s+<)");
  static const std::regex end(R"(>\s+$)");
  text = std::regex_replace(text, declaration, "");
  text.erase(0, std::min(text.find('<'), text.size()));
  text = std::regex_replace(text, between, "><");
  return std::regex_replace(text, end, ">");
}

XmlMachine::XmlMachine(RunOptions options) : RunBuilder(options) {
  PutSystem("Forms.xml", R"(<Forms><Version>3.06.0000</Version><Form ID="new">n</Form></Forms>)");
  PutCustomised("Forms.xml",
                R"(<Forms><Version>3.05.0000</Version><Form ID="own">o</Form></Forms>)");
}

void XmlMachine::Describe(std::string_view entries) {
  machine.files.PutFile(R"(D:\Package\Update.xml)",
                        "<XMLUpdates>" + std::string(entries) + "</XMLUpdates>");
}

void XmlMachine::DescribeForms(std::string_view operations) {
  Describe("<XMLUpdate FileName=\"Forms.xml\">" + std::string(operations) + "</XMLUpdate>");
}

void XmlMachine::PutSystem(std::string_view name, std::string_view text) {
  machine.files.PutFile(R"(D:\Data\Sys\)" + std::string(name), text);
}

void XmlMachine::PutCustomised(std::string_view name, std::string_view text) {
  machine.files.PutFile(R"(D:\Data\Customize\)" + std::string(name), text);
}

std::string XmlMachine::Customised(std::string_view name) const {
  return Compact(machine.files.Contents(R"(D:\Data\Customize\)" + std::string(name)).value_or(""));
}

CommandRecord XmlMachine::Xupd() { return Call(UpdateXmlFiles, {"xupd", "Update.xml"}); }

CommandRecord XmlMachine::UpdXFields(std::string_view description) {
  machine.files.PutFile(R"(D:\Package\Fields.xml)", description);
  return Call(UpdateExtraFields, {"updxfields", "Fields.xml"});
}

std::vector<std::string> XmlMachine::MergeMessages() const {
  const auto begin = std::find(messages().begin(), messages().end(), "Updating XML files.");
  return begin == messages().end() ? std::vector<std::string>()
                                   : std::vector<std::string>(begin + 1, messages().end());
}

}  // namespace zent::testing
