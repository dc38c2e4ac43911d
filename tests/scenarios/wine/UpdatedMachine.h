#pragma once

#include <filesystem>
#include <future>
#include <string>
#include <vector>

#include "scenarios/wine/WinePrefix.h"
#include "support/TempFolder.h"

namespace zent::testing {

/// True as soon as the file is there, within ten seconds.
bool ComesUp(const std::filesystem::path& file);

/// The sample machine under Wine, a package of these lines, and the program for Windows.
class UpdatedMachine {
 public:
  explicit UpdatedMachine(const std::vector<std::string>& lines);

  ProgramEnd Run(std::vector<std::string> more = {}, double seconds = 60) const;
  /// The log of the last run, with LF as line end.
  std::string Log() const;
  /// Its questions and commands, in the form of a scenario's expected records, without the exit
  /// code.
  std::string Records() const;

  /// A file of the machine, by its path below drive C: with slashes.
  std::filesystem::path File(const std::string& name) const { return prefix_.drive_c() / name; }
  const TempFolder& folder() const { return folder_; }
  const WinePrefix& prefix() const { return prefix_; }

 private:
  TempFolder folder_;
  WinePrefix prefix_;
};

/// Another Windows program that holds a file of the machine, from the end of the constructor until
/// Release or the destructor.
class HeldFile {
 public:
  HeldFile(const UpdatedMachine& machine, const std::string& windows_path, bool shared);
  ~HeldFile();
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;

  void Release();
  bool held() const { return held_; }

 private:
  const UpdatedMachine& machine_;
  std::future<ProgramEnd> holder_;
  bool held_ = false;
};

}  // namespace zent::testing
