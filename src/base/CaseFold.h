#pragma once

#include <string>
#include <string_view>

/// Case of names that people give: files, folders, registry keys, settings. One character folds to
/// one character, as in the upper-case table of the file systems (so the sharp s is not "SS").
namespace zent {

/// `name` in the form by which two names are compared.
std::string FoldName(std::string_view name);

/// True when the system takes both for the same name.
bool SameName(std::string_view a, std::string_view b);

}  // namespace zent
