#pragma once

#include <cstdint>

#include "base/Status.h"
#include "platform/prefix/session/HostCommand.h"

namespace zent {

/// Starts a program that lives on its own: not waited for and never a zombie of ours, in a session
/// of its own, so that our terminal does not stop it; its standard streams are empty, none of our
/// descriptors is open in it, every signal has its default. Returns its process id as soon as the
/// program itself has taken over, and otherwise why it did not: kFileNotFound (also the interpreter
/// of a script), kPermissionDenied (no right to execute it, or being written), kPathNotFound (the
/// folder), kInvalidProcedureCall (not a program, or a NUL in an argument).
Result<std::uint32_t> StartDetached(const HostCommand& command);

}  // namespace zent
