#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fakes/CallLog.h"
#include "platform/FileSystem.h"

namespace zent::testing {

/// The files of a machine, in memory: the contract of FileSystem on drive letters, with case,
/// attributes and wildcards. Times are not kept. Starts with an empty folder "C:\", which is the
/// current folder.
class MemoryFileSystem : public FileSystem {
 public:
  MemoryFileSystem();

  // What the test sets up and looks at. These calls are not recorded and never fail.

  /// Makes a folder with all its parents; a drive is the folder "D:\".
  void PutFolder(std::string_view path);
  /// Makes or replaces a file, with the folders it needs.
  void PutFile(std::string_view path, std::string_view contents, std::uint32_t attributes = 0);
  /// The contents of a file; nothing when there is no file of that name.
  std::optional<std::string> Contents(std::string_view path) const;
  /// True for a file or folder of that name.
  bool Exists(std::string_view path) const;
  /// The paths of all files, spelled as made, sorted without regard to case.
  std::vector<std::string> AllFiles() const;
  void SetCurrentFolder(std::string_view path);
  /// Another process holds the file open: it cannot be written, deleted, renamed or, unless it is
  /// shared for reading, read. Ends with Release.
  void HoldOpen(std::string_view path, bool shared_for_reading = true);
  /// Another process has the library or program loaded: it cannot be written or deleted, but read
  /// and renamed. Ends with Release.
  void HoldLoaded(std::string_view path);
  void Release(std::string_view path);

  /// Called after each copy or replacement that succeeds, with both paths as they were given: for
  /// fakes that keep beside a file what it stands for.
  std::function<void(std::string_view source, std::string_view target)> on_copied;

  /// What was called ("Write C:\a.ini", "Copy C:\a.ini > C:\b.ini") and what is to fail.
  CallLog& log() { return log_; }

  // FileSystem

  Result<std::string> FullPath(std::string_view path) override;
  Result<std::uint32_t> Attributes(std::string_view path) override;
  Status SetAttributes(std::string_view path, std::uint32_t attributes) override;
  Result<std::vector<FileEntry>> Find(std::string_view pattern) override;
  Result<std::unique_ptr<File>> OpenForReading(std::string_view path) override;
  Status Write(std::string_view path, std::string_view contents) override;
  Status Copy(std::string_view source, std::string_view target) override;
  Status Move(std::string_view old_path, std::string_view new_path) override;
  Status Replace(std::string_view source, std::string_view target) override;
  Status Delete(std::string_view path) override;
  Status CreateFolder(std::string_view path) override;

 private:
  enum class Sharing { Free, ReadingAndRenaming, ReadingOnly, Nothing };

  struct Node {
    std::string path;  ///< full, as it was spelled when made, without a trailing backslash
    std::uint32_t attributes = 0;
    std::string contents = {};
    Sharing sharing = Sharing::Free;

    bool IsFolder() const { return (attributes & kAttributeFolder) != 0; }
  };

  /// The full path without a trailing backslash: the form in which nodes are kept.
  Result<std::string> NodePath(std::string_view path) const;
  Result<std::string> Normalized(std::string_view path) const;
  const Node* Look(std::string_view path) const;
  /// The node of a path, or why there is none.
  Result<Node*> Existing(std::string_view path);
  Result<Node*> ExistingFile(std::string_view path);
  /// Success when the folder that is to hold `node_path` exists.
  Status CheckParent(const std::string& node_path) const;
  /// Makes sure that a file can be put at `path`; its present node or nullptr.
  Result<Node*> Target(std::string_view path);

  std::map<std::string, Node> nodes_;  // by folded path
  std::string current_folder_ = R"(C:\)";
  CallLog log_;
};

}  // namespace zent::testing
