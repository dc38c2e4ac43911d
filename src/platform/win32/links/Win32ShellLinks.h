#pragma once

#include <string_view>

#include "platform/ShellLinks.h"
#include "platform/win32/files/Sibling.h"

namespace zent {

/// Shell links, made by the shell of Windows. A link is saved to a sibling and put in the place of
/// the old one whole, with its attributes. A text that the ANSI code page cannot spell is
/// kBadFileName: the link would lead elsewhere. COM is kept for the length of one call, in
/// whatever way the calling thread uses it.
class Win32ShellLinks : public ShellLinks {
 public:
  Status Create(std::string_view link_file, const ShellLink& link) override;

 private:
  LeftSiblings left_siblings_;
};

}  // namespace zent
