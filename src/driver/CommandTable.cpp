#include "driver/CommandTable.h"

#include <algorithm>
#include <array>

#include "base/Text.h"
#include "database/StructureSync.h"
#include "database/UpdateScript.h"
#include "dataupdate/LookupImport.h"
#include "dataupdate/LookupItems.h"
#include "dataupdate/customisation/Customize.h"
#include "driver/BasicCommands.h"
#include "driver/Checks.h"
#include "driver/Relocation.h"
#include "fileops/Backup.h"
#include "fileops/CopyAndRegister.h"
#include "fileops/CopyCommands.h"
#include "fileops/DeleteAndRename.h"
#include "fileops/Registration.h"
#include "fileops/RegistryCommands.h"
#include "fileops/Shortcuts.h"
#include "fileops/VersionedCopy.h"
#include "xmlupdate/XmlCommands.h"

namespace zent {
namespace {

/// "stdf": the lookup items of a template are added by another folder than its structure is.
Status BringUpToTemplate(UpdateRun& run, const TokenList& tokens) {
  return SynchroniseStructure(run, tokens, UpdateLookupItems);
}

constexpr std::array kCommands = {
    Command{.keyword = "BeginVista", .marker = BlockMarker::Begin},
    Command{.keyword = "EndVista", .marker = BlockMarker::End},
    Command{"SS2000ToSS2005", RelocateDataSource},
    Command{"msg", ShowText},
    Command{"wait", WaitSeconds},
    Command{"cte", CheckBrowser},
    Command{"cdp", CheckDataFolder},
    Command{"ep", CloseProgram},
    Command{"del", DeleteFiles, "2"},
    Command{"copy", CopyFromPackage, "3"},
    Command{"cc", CopyFromPackageIfMissing, "3"},
    Command{"copyl", CopyOnMachine, "23"},
    Command{"bkpf", BackUpFile, "2"},
    Command{"ccl", CopyOnMachineIfMissing, "23"},
    Command{"cslk", CreateGroupShortcut, "3"},
    Command{"csld", CreateDesktopShortcut, "3"},
    Command{"regw", WriteRegistryCommand},
    Command{"ureg", UnregisterCommand, "2"},
    Command{"reg", RegisterCommand, "2"},
    Command{"cr", CopyAndRegister, "3"},
    Command{"ccr", CopyAndRegister, "3"},
    Command{"crie", CopyAndRegister, "3"},
    Command{"CopyRegIfNotSameVersion", CopyByVersion, "3"},
    Command{"CopyRegIfNewerVersion", CopyByVersion, "3"},
    Command{"CloseOutlookMessageIfRunning", AskToCloseMailProgram},
    Command{"CheckMinVersion", CheckMinVersion, "3"},
    Command{.keyword = "stdf", .handler = BringUpToTemplate, .paths = "234", .last_token = 4},
    Command{"importlookup", ImportLookupItems, "2"},
    Command{"mkdr", MakeFolder, "2"},
    Command{"ren", RenameCommand, "23"},
    Command{"cren", RenameCommand, "23"},
    Command{"rcw", RunCustomisation, "2"},
    Command{"crcw", RunCustomisationOnce, "2"},
    Command{"xupd", UpdateXmlFiles, "2"},
    Command{"upddb", UpdateDatabase, "2"},
    Command{"updxfields", UpdateExtraFields, "2"},
    Command{"wrtnetupdini", WriteSetting, "2"},
    Command{"wrttoini", WriteSetting, "2"},
    Command{"run", RunCommand, "2"},
};

}  // namespace

std::span<const Command> CommandTable() { return kCommands; }

TokenList TokensFor(const Command& command, const TokenList& tokens) {
  if (command.last_token == 0 || tokens.Count() <= command.last_token) return tokens;
  TokenList passed;
  for (const std::string& token : tokens) {
    if (passed.Count() < command.last_token) passed.Add(token);
  }
  return passed;
}

const Command* FindCommand(std::string_view keyword) {
  const std::string_view trimmed = TrimBlanks(keyword);
  const auto* const found = std::find_if(
      kCommands.begin(), kCommands.end(),
      [&](const Command& command) { return EqualsIgnoringCase(command.keyword, trimmed); });
  return found == kCommands.end() ? nullptr : found;
}

}  // namespace zent
