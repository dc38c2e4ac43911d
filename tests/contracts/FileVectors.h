#pragma once

#include <cstdint>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "base/ErrorNumbers.h"
#include "platform/SystemErrors.h"

/// The recorded answers of the Windows calls on files, which every adapter's tests replay in their
/// own surroundings and with their own list of what they do otherwise.
namespace zent::testing {

/// The rows of `list` in the file `name` ("paths.json") of the test data.
inline nlohmann::json FileVectors(const std::string& name, const std::string& list) {
  std::ifstream file(std::string(ZENT_TEST_DATA) + "/files/" + name);
  return nlohmann::json::parse(file).at(list);
}

/// The run-time error number of a recorded system error; 0 stays 0.
inline int RunTimeNumber(const nlohmann::json& system_error) {
  const auto number = system_error.get<std::uint32_t>();
  return number == 0 ? 0 : RuntimeErrorNumber(static_cast<SystemError>(number));
}

/// The same for `call` of the recorded operations: a folder that exists has a number of its own.
inline int RunTimeNumberOf(const std::string& call, const nlohmann::json& system_error) {
  const auto error = static_cast<SystemError>(system_error.get<std::uint32_t>());
  if (call == "folder" && error == SystemError::AlreadyExists) return kPathFileAccess;
  return RunTimeNumber(system_error);
}

}  // namespace zent::testing
