#pragma once

#include <gtest/gtest.h>

#include <iosfwd>
#include <memory>
#include <string>

#include "platform/FileSystem.h"

/// What every FileSystem promises. A test program of an adapter adds FileSystemContract.cpp to its
/// sources and names its subject:
///
///   INSTANTIATE_TEST_SUITE_P(Prefix, FileSystemContract,
///                            ::testing::Values(FileSystemMaker{"prefix", &MakePrefixSubject}));
namespace zent::testing {

/// An adapter over a folder of its own.
class FileSystemSubject {
 public:
  virtual ~FileSystemSubject() = default;
  virtual FileSystem& files() = 0;
  /// The full path of an empty folder, which is the current folder; no trailing backslash.
  virtual std::string folder() const = 0;
  /// Lets another process hold the file `name` of the folder open for reading, until the result is
  /// destroyed.
  virtual std::shared_ptr<void> HoldOpen(const std::string& name) = 0;
};

/// Makes subjects, one for each test.
struct FileSystemMaker {
  const char* name;  ///< of the adapter, for the list of tests
  std::unique_ptr<FileSystemSubject> (*make)();
};
void PrintTo(const FileSystemMaker& maker, std::ostream* out);

class FileSystemContract : public ::testing::TestWithParam<FileSystemMaker> {
 protected:
  FileSystem& files() { return subject_->files(); }
  std::string Full(const std::string& name) const { return subject_->folder() + "\\" + name; }
  /// Writes a file, with the attributes given.
  void Put(const std::string& name, std::string_view contents, std::uint32_t attributes = 0);
  /// The contents of a file; "error NUMBER" when it cannot be read.
  std::string Get(const std::string& name);
  /// "NAME NAME" of what Find finds; "error NUMBER" when it fails.
  std::string Found(const std::string& pattern);
  /// The attribute bits that both kinds of system report alike: without the archive bit.
  std::uint32_t Bits(const std::string& name);
  std::shared_ptr<void> HoldOpen(const std::string& name) { return subject_->HoldOpen(name); }

 private:
  std::unique_ptr<FileSystemSubject> subject_ = GetParam().make();
};

}  // namespace zent::testing
