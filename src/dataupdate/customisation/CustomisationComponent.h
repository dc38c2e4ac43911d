#pragma once

#include <string>

#include "base/Status.h"

namespace zent {

/// What a customisation is about. Folders end with a backslash; either may be missing.
struct CustomisationTask {
  std::string database;          ///< full path of an Access file, or a connect text
  std::string customize_folder;  ///< where the customisations are recorded
  std::string temp_folder;       ///< for work files
};

enum class CustomisationOutcome {
  Applied,
  DatabaseNotOpened,  ///< nothing was done
};

/// What knows how the application is customised: it opens a database of the application and
/// re-applies to it the customisations that are recorded.
class CustomisationComponent {
 public:
  virtual ~CustomisationComponent() = default;
  /// The error is the component's own, or kCannotCreateObject when there is no component.
  virtual Result<CustomisationOutcome> Apply(const CustomisationTask& task) = 0;
};

}  // namespace zent
