#pragma once

#include <string>

namespace zent {

/// What a command set out to do with an XML file.
enum class XmlAction {
  Load,    ///< told only when it fails
  Skip,    ///< the whole file: it has its version already
  Insert,  ///< an element
  Replace,
  Delete,
  Tab,    ///< a new tab of extra fields
  Field,  ///< a new extra field
  Stamp,  ///< the version
  Save,
};

/// What became of it.
enum class XmlOutcome {
  Done,
  InsertedBefore,  ///< right before the element at `place`
  Appended,        ///< at the end of the element at `place`
  Replaced,        ///< took the place of the element at `place`
  NotFound,        ///< `place`, or else `node`, selects nothing: this operation was passed over
  Nothing,         ///< nothing was to be done, or nothing was said to do
  Failed,
};

/// One step of a change to an XML file, told as it happens. The file on disk changes with the step
/// Save and never without it.
struct XmlOperation {
  std::string file;  ///< full path of the file that is to change
  XmlAction action = XmlAction::Load;
  std::string node = {};   ///< what it is about: an expression, a tab, a field's ID, a version
  std::string place = {};  ///< where in the file: the expression that counted; empty for none
  XmlOutcome outcome = XmlOutcome::Done;
  std::string reason = {};  ///< of a failure
};

}  // namespace zent
