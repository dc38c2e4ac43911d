#include "app/jetdb/FakeHost.h"

namespace zent::testing {

Result<std::string> FakeJetdbHost::ReadText(const std::string& path) {
  const auto found = texts.find(path);
  if (found == texts.end()) return StandardError(kFileNotFound, path);
  return found->second;
}

std::optional<std::string> FakeJetdbHost::Variable(const std::string& name) {
  const auto found = variables.find(name);
  return found == variables.end() ? std::nullopt : std::optional<std::string>(found->second);
}

int FakeJetdbHost::Run(const std::vector<std::string>& arguments) {
  std::vector<const char*> argv = {"jetdb"};
  for (const std::string& argument : arguments) argv.push_back(argument.c_str());
  output_.str("");
  errors_.str("");
  const int code = RunJetdb(*this, static_cast<int>(argv.size()), argv.data());
  printed = output_.str();
  complained = errors_.str();
  return code;
}

}  // namespace zent::testing
