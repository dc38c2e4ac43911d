#pragma once

#include <string>

#include "driver/run/UpdateRun.h"
#include "xml/Document.h"

namespace zent {

/// The two copies of one file while operations are carried out on them.
struct MergePair {
  const xml::Document& system;  ///< where new elements come from
  xml::Document& customised;    ///< what is changed
  const std::string& path;      ///< of the customised copy
};

/// Carries out one child of an entry: Insert, Replace or Delete; any other node is passed over. An
/// element that is not found is shown ("Not found - ...") and recorded, and is no error; what is
/// one ends the merge: no Node, an expression that cannot be used, a target that is no element, a
/// missing IfNotFoundInsertBefore target.
Status CarryOut(UpdateRun& run, const MergePair& pair, xml::Node operation);

/// Gives the customised copy the version element of the system copy: in place of its own, or else
/// as the first child of its document element. A system copy without a version changes nothing.
Status StampVersion(UpdateRun& run, const MergePair& pair);

/// True when both copies have a version and the versions are the same text but for blanks at their
/// ends. No version is older or newer than another.
bool HasVersionOf(const xml::Document& customised, const xml::Document& system);

}  // namespace zent
