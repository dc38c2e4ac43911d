#include "fileops/prefix/PrefixRun.h"

#include <gtest/gtest.h>

namespace zent::testing {

PrefixRun::PrefixRun(RunOptions options)
    : files(disk.Open(R"(C:\Package\)")),
      versions(files),
      platform{files,      rest.registry, rest.settings, rest.system, rest.processes,
               rest.shell, rest.clock,    versions,      rest.links},
      run(platform, window, observer, options) {
  run.state.AppPath = R"(C:\Korvo\)";
  run.state.CurrDir = R"(C:\Package\)";
  disk.Put("Package/new.txt", "new");
  disk.Put("Korvo/target.txt", "old");
}

CommandRecord PrefixRun::Call(Status (*handler)(UpdateRun&, const TokenList&),
                              const TokenList& tokens) {
  run.BeginCommand({.line = 1, .keyword = tokens.At(1).value_or("")});
  EXPECT_TRUE(handler(run, tokens).ok());
  run.EndCommand();
  return observer.records.back();
}

void PrefixRun::MakeReadOnly(std::string_view path) {
  EXPECT_TRUE(files.SetAttributes(path, kAttributeReadOnly).ok());
}

}  // namespace zent::testing
