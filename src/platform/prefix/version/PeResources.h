#pragma once

#include <string>

#include "base/Status.h"
#include "platform/FileSystem.h"

namespace zent {

/// The version resource (type 16, number 1) of a program file, as stored: at most its first 65,535
/// bytes, for the outermost length in it is a 16-bit number and nothing behind it counts.
///
/// Of several languages the neutral one is taken, else American English, else the one of the lowest
/// number: the order of a system that is set to American English, as the machine is.
///
/// Errors: those of File::ReadAt; kInvalidFileFormat for a file that is no 32- or 64-bit program,
/// has no such resource or is damaged. Takes a fixed number of reads and less than 4 MB of memory,
/// whatever the file says.
Result<std::string> ReadVersionResource(File& file);

}  // namespace zent
