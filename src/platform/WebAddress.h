#pragma once

#include <string_view>

namespace zent {

/// True for an http or https address without blanks and controls, which never belong to a written
/// address and have split or ended the commands of many an opener.
bool IsWebAddress(std::string_view address);

}  // namespace zent
