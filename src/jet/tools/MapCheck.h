#pragma once

#include <string>
#include <vector>

#include "jet/storage/Pager.h"
#include "jet/tools/FaultLog.h"
#include "jet/tools/PageUse.h"

namespace zent::jet {

/// What the checks of one file share.
struct Checking {
  Pager& pager;
  PageUse& use;
  FaultLog& faults;
};

/// The pages of the set at `map`, ascending, those of the file alone. The map's row, its page and
/// its bitmap pages are noted as used, by `subject`; what is wrong with them is a fault.
std::vector<PageNumber> CheckMap(Checking& checking, RowPointer map, const std::string& subject);

/// As CheckMap for the set of free pages, which may reach beyond the end of the file.
std::vector<bool> CheckFreePages(Checking& checking);

}  // namespace zent::jet
