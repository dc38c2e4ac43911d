#pragma once

#include <string>

#include "base/ErrorNumbers.h"

namespace zent {

/// A failure as the user reads it: "Description: " and "Number: ".
struct RuntimeError {
  int number = 0;  ///< 70 asks Retry or Cancel; 0 never stands for a failure
  std::string description;
  std::string source = {};  ///< "DAO" for the database engine; mostly empty
};

/// The error `number` with its standard description, for instance 53 "File not found".
/// A number without one reads "Application-defined or object-defined error".
RuntimeError StandardError(int number);

/// As StandardError, with `detail` behind the description: "Path not found: C:\Korvo".
RuntimeError StandardError(int number, const std::string& detail);

}  // namespace zent
