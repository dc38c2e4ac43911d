#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "contracts/PeBuilder.h"
#include "driver/run/CommandRecord.h"
#include "driver/run/Messages.h"
#include "fakes/run/RunBuilder.h"

namespace zent::testing {

/// A run whose package and application folder hold a file of each kind that a file command meets.
struct FileMachine : RunBuilder {
  explicit FileMachine(RunOptions options = {}) : RunBuilder(options) {
    MemoryFileSystem& files = machine.files;
    files.PutFile(R"(D:\Package\new.txt)", "new");
    files.PutFile(R"(D:\Package\Sub\deep.txt)", "new");
    files.PutFile(R"(D:\Outside.txt)", "new");
    files.PutFile(R"(C:\Korvo\plain.txt)", "old");
    files.PutFile(R"(C:\Korvo\readonly.txt)", "old", kAttributeReadOnly);
    files.PutFile(R"(C:\Korvo\hidden.txt)", "old", kAttributeHidden);
    files.PutFile(R"(C:\Korvo\system.txt)", "old", kAttributeSystem);
    files.PutFile(R"(C:\Korvo\held.txt)", "old");
    files.HoldOpen(R"(C:\Korvo\held.txt)");
    files.PutFolder(R"(C:\Korvo\folder)");
  }
};

/// A library of that version. `mark` stands behind it and tells two libraries apart.
inline std::string Library(std::string_view version, std::string_view mark) {
  return LibraryOfVersion(version) + std::string(mark);
}

/// The text of a box about a failure.
inline std::string ErrorBox(std::string_view headline, int number) {
  return ErrorText(headline, StandardError(number));
}

/// One line of a setup list and what comes of it on a FileMachine.
struct FileCommandCase {
  const char* what;
  std::vector<std::string> tokens;
  std::vector<std::string> messages;
  std::vector<std::string> boxes;
  Outcome outcome = Outcome::Done;
  const char* path = "";      ///< of a file afterwards
  const char* contents = "";  ///< its contents; "-" when it is not there
};

/// Runs each row through `handler`. Only a box sets ErrorOccurred.
void ExpectCases(Status (*handler)(UpdateRun&, const TokenList&),
                 const std::vector<FileCommandCase>& rows);

}  // namespace zent::testing
