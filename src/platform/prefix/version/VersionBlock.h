#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/VersionResources.h"

namespace zent {

/// A version resource: a tree of blocks, each with a name, a value and blocks below it, in the
/// Unicode form or in the older one of 16-bit tools, whose texts are ANSI.
///
/// Bytes of any kind are taken. No block reaches beyond the one that holds it, no value beyond its
/// block: a length that says more is cut, and a search ends at a block too short to be one. Texts
/// are cut by their length, so they need no NUL.
class VersionBlock : public VersionInfo {
 public:
  explicit VersionBlock(std::string bytes);

  std::optional<std::string> QueryBytes(std::string_view path) const override;
  std::optional<std::string> QueryText(std::string_view path) const override;

 private:
  struct Block {
    std::string key;
    bool is_utf16 = false;     ///< the value; otherwise ANSI text or plain bytes
    std::string_view value;    ///< as stored
    std::size_t children = 0;  ///< where the first block below begins
    std::size_t end = 0;       ///< of the block, so of the last block below
    std::size_t next = 0;      ///< where the next block beside it begins
  };

  /// The block that begins at `at`, in a parent that ends at `limit`.
  std::optional<Block> BlockAt(std::size_t at, std::size_t limit) const;
  std::optional<Block> ChildNamed(const Block& parent, std::string_view name) const;
  std::optional<Block> Find(std::string_view path) const;

  std::string bytes_;
  bool is_unicode_;
};

}  // namespace zent
