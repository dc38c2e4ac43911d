#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace zent::testing {

/// A system call as the kernel gets it, on any processor.
struct SystemCall {
  std::uint64_t number = 0;
  std::array<std::uint64_t, 6> arguments = {};
};

/// What a changing call changes.
enum class Changes {
  Nothing,
  Descriptor,  ///< the file, or a name in the folder, of the descriptor that is its first argument
  Path,        ///< the file of a path
};

/// Whether the call may change a file or a folder: the calls that write, make, rename or remove,
/// and those that set a length, permissions, an owner, an extended attribute or times. An open
/// counts when it is for writing. What only makes a change safe (fsync) is none.
Changes ChangesOf(const SystemCall& call);

/// The name of the call, for a failing test; its number for one that changes nothing.
std::string NameOf(const SystemCall& call);

}  // namespace zent::testing
