#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "base/Status.h"

namespace zent {

/// A program of the host and how it is started.
struct HostCommand {
  std::filesystem::path program;         ///< absolute; never searched for
  std::vector<std::string> arguments;    ///< without the program; given as they are, by no shell
  std::filesystem::path folder;          ///< its working folder
  std::vector<std::string> environment;  ///< "NAME=value", put over our own environment
};

/// Starts a program that lives on its own: not waited for and never a zombie of ours, in a session
/// of its own, so that our terminal does not stop it; its standard streams are empty, none of our
/// descriptors is open in it, every signal has its default. Returns its process id as soon as the
/// program itself has taken over, and otherwise why it did not: kFileNotFound (also the interpreter
/// of a script), kPermissionDenied (no right to execute it, or being written), kPathNotFound (the
/// folder), kInvalidProcedureCall (not a program, or a NUL in an argument).
Result<std::uint32_t> StartDetached(const HostCommand& command);

}  // namespace zent
