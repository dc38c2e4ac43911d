#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "fakes/run/RunBuilder.h"
#include "platform/prefix/files/TestMachine.h"

namespace zent::testing {

/// A run over a machine on disk: the package in C:\Package\, Korvo in C:\Korvo\. All but the files
/// are fakes.
class PrefixRun {
 public:
  explicit PrefixRun(RunOptions options = {});

  TestMachine disk;
  MemoryMachine rest;
  PrefixFileSystem& files;
  PrefixVersionResources versions;
  Platform platform;
  RecordingWindow window;
  RecordingObserver observer;
  UpdateRun run;

  /// Runs a handler with a record of its own, and returns that record.
  CommandRecord Call(Status (*handler)(UpdateRun&, const TokenList&), const TokenList& tokens);
  /// Sets the read-only attribute of a file.
  void MakeReadOnly(std::string_view path);
};

}  // namespace zent::testing
