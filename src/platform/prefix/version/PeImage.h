#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "base/Status.h"
#include "platform/FileSystem.h"

namespace zent {

/// A 32- or 64-bit program file, as far as it takes to find the bytes at an address of the program.
/// Only the headers are kept; they take at most 2.6 MB, and a few hundred bytes in a sound file.
class PeImage {
 public:
  /// Reads the headers of `file`, which must outlive the image. Errors: those of File::ReadAt;
  /// kInvalidFileFormat for a file that is no such program or ends too early.
  static Result<PeImage> Open(File& file);

  /// The address of the resources; 0 when the program has none.
  std::uint32_t resource_address() const { return resource_address_; }

  /// `size` bytes from `address` (relative to the program's base) on. All of them must be stored in
  /// the file as part of one section. Errors as for Open.
  Result<std::string> Read(std::uint64_t address, std::size_t size) const;

 private:
  PeImage(File& file, std::string sections, std::uint32_t resource_address)
      : file_(file), sections_(std::move(sections)), resource_address_(resource_address) {}

  File& file_;
  std::string sections_;  ///< the section table as stored
  std::uint32_t resource_address_;
};

}  // namespace zent
