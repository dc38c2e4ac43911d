#pragma once

#include <string>
#include <string_view>

#include "base/Status.h"

namespace zent {

/// What a link says, in ANSI; an empty text is left out.
struct LinkTexts {
  std::string target;
  std::string arguments;
  std::string working_folder;
};

/// Has the shell save a link as the file `path` (UTF-8), over one that is there. COM is in use for
/// the length of the call alone. Errors: kBadFileName for a text that the shell does not take,
/// kCannotCreateObject where it has no links, and those of saving a file.
Status SaveLinkFile(const LinkTexts& link, std::string_view path);

}  // namespace zent
