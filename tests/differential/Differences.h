#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "scenarios/wine/WinePrefix.h"

namespace zent::testing {

/// What one run of the sample package left behind.
struct RunEnd {
  std::string log;
  std::string events;  ///< one JSON object a line
  PrefixState machine;
  std::map<std::string, std::string> attributes;  ///< of the files, by the names in `machine`
};

/// The attributes of the files below `prefix`/drive_c: "r" read-only, "h" hidden, "s" system.
std::map<std::string, std::string> ReadAttributes(const std::filesystem::path& prefix);

/// Without what no two runs share: the second at which a copy was made, the number of a started
/// program.
std::string WithoutMoments(const std::string& text);

/// Everything in which the end of the Windows run is another one than the native run's, one a line:
///   log: only native: TEXT          event 7: native: JSON | windows: JSON
///   file: only windows: NAME        file: other contents: NAME
///   attributes: NAME: native r, windows none
///   system.reg: only native: KEY|VALUE=DATA         system.reg: other data: KEY|VALUE=DATA
/// A file or value in `noise` does not count: Wine itself has changed it.
std::vector<std::string> DifferencesOf(const RunEnd& native, const RunEnd& windows,
                                       const std::set<std::string>& noise);

/// What a start of Wine alone changes: names of files, and "FILE.reg: KEY|VALUE".
std::set<std::string> NoiseOf(const PrefixState& before, const PrefixState& after);

}  // namespace zent::testing
