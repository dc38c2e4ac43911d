#pragma once

#include <istream>
#include <string>

#include "base/Status.h"

namespace zent {

/// The bytes of a file of the host that the command line names in UTF-8. Errors: kFileNotFound, and
/// kOutOfStringSpace for one above 16 MB.
Result<std::string> ReadHostFile(const std::string& name);

/// All bytes that `input` gives. Error: kOutOfStringSpace for more than 16 MB.
Result<std::string> ReadAll(std::istream& input);

}  // namespace zent
