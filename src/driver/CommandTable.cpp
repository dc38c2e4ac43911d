#include "driver/CommandTable.h"

#include <algorithm>
#include <array>

#include "base/Text.h"
#include "driver/BasicCommands.h"
#include "driver/Checks.h"
#include "driver/Relocation.h"
#include "fileops/Registration.h"
#include "fileops/RegistryCommands.h"
#include "fileops/Shortcuts.h"

namespace zent {
namespace {

constexpr std::array kCommands = {
    Command{.keyword = "BeginVista", .marker = BlockMarker::Begin},
    Command{.keyword = "EndVista", .marker = BlockMarker::End},
    Command{"SS2000ToSS2005", RelocateDataSource},
    Command{"msg", ShowText},
    Command{"wait", WaitSeconds},
    Command{"cte", CheckBrowser},
    Command{"cdp", CheckDataFolder},
    Command{"ep", CloseProgram},
    Command{"del", CommandNotAvailable, "2"},
    Command{"copy", CommandNotAvailable, "3"},
    Command{"cc", CommandNotAvailable, "3"},
    Command{"copyl", CommandNotAvailable, "23"},
    Command{"bkpf", CommandNotAvailable, "2"},
    Command{"ccl", CommandNotAvailable, "23"},
    Command{"cslk", CreateGroupShortcut, "3"},
    Command{"csld", CreateDesktopShortcut, "3"},
    Command{"regw", WriteRegistryCommand},
    Command{"ureg", UnregisterCommand, "2"},
    Command{"reg", RegisterCommand, "2"},
    Command{"cr", CommandNotAvailable, "3"},
    Command{"ccr", CommandNotAvailable, "3"},
    Command{"crie", CommandNotAvailable, "3"},
    Command{"CopyRegIfNotSameVersion", CommandNotAvailable, "3"},
    Command{"CopyRegIfNewerVersion", CommandNotAvailable, "3"},
    Command{"CloseOutlookMessageIfRunning", AskToCloseMailProgram},
    Command{"CheckMinVersion", CheckMinVersion, "3"},
    Command{"stdf", CommandNotAvailable, "234"},
    Command{"importlookup", CommandNotAvailable, "2"},
    Command{"mkdr", CommandNotAvailable, "2"},
    Command{"ren", CommandNotAvailable, "23"},
    Command{"cren", CommandNotAvailable, "23"},
    Command{"rcw", CommandNotAvailable, "2"},
    Command{"crcw", CommandNotAvailable, "2"},
    Command{"xupd", CommandNotAvailable, "2"},
    Command{"upddb", CommandNotAvailable, "2"},
    Command{"updxfields", CommandNotAvailable, "2"},
    Command{"wrtnetupdini", WriteSetting, "2"},
    Command{"wrttoini", WriteSetting, "2"},
    Command{"run", RunCommand, "2"},
};

}  // namespace

std::span<const Command> CommandTable() { return kCommands; }

const Command* FindCommand(std::string_view keyword) {
  const std::string_view trimmed = TrimBlanks(keyword);
  const auto* const found = std::find_if(
      kCommands.begin(), kCommands.end(),
      [&](const Command& command) { return EqualsIgnoringCase(command.keyword, trimmed); });
  return found == kCommands.end() ? nullptr : found;
}

}  // namespace zent
