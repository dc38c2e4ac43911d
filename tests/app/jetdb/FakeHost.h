#pragma once

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "app/jetdb/JetdbHost.h"
#include "jet/fakes/MemoryStorage.h"

namespace zent::testing {

/// jetdb on a machine in memory.
class FakeJetdbHost final : public JetdbHost {
 public:
  jet::Storage& storage() override { return storage_; }
  std::ostream& output() override { return output_; }
  std::ostream& errors() override { return errors_; }
  bool IsSameFile(const std::string& a, const std::string& b) override { return a == b; }
  Result<std::string> ReadText(const std::string& path) override;
  std::optional<std::string> Variable(const std::string& name) override;
  jet::User user() override { return {.computer = "PC1"}; }
  jet::Date Now() override { return {37803.5}; }  // 2003-07-01 12:00

  jet::testing::MemoryStorage& files() { return storage_; }
  std::map<std::string, std::string> texts;      ///< "-" is standard input
  std::map<std::string, std::string> variables;  ///< of the environment

  /// Runs jetdb; the exit code. What it printed is in `printed` and `complained`.
  int Run(const std::vector<std::string>& arguments);
  std::string printed;
  std::string complained;

 private:
  jet::testing::MemoryStorage storage_;
  std::ostringstream output_;
  std::ostringstream errors_;
};

}  // namespace zent::testing
