#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Registry.h"

/// What the functions of the Windows registry answered, measured with Wine 8.
///
/// Left out: calls with a buffer that is too small (the port has no buffers), a null pointer as the
/// value's name (the port has none), texts stored with a size other than their own and a write
/// through a key opened for reading (the port knows neither). Key names of 255 characters failed
/// there and are good on Windows. A key made directly below HKEY_USERS was stored nowhere there.
namespace zent::testing {

/// The answer of a key that holds these values, and no other, to a question after one of them.
/// Texts are UTF-8.
struct RegistryQuery {
  std::string name;
  int error;
  std::uint32_t type;
  std::string data;
};
std::vector<RegistryQuery> RegistryQueries();

/// A key opened or created, one after the other.
struct RegistryStep {
  bool create;
  KeyHandle root;
  std::string path;
  int error;
};
std::vector<RegistryStep> RegistrySteps();

/// The subkeys of Software\K that the steps leave, in the order in which they are listed.
inline constexpr const char* kKeysOfSteps[] = {" blank ", "Double", "New", "Trail", "Trail2"};

}  // namespace zent::testing
