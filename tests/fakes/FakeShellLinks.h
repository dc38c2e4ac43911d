#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/ShellLinks.h"

namespace zent::testing {

/// Keeps what links were made, and puts a file of one readable line in the place of each.
class FakeShellLinks : public ShellLinks {
 public:
  struct Created {
    std::string file;
    ShellLink link;
  };

  /// `files` outlives this.
  explicit FakeShellLinks(FileSystem& files) : files_(files) {}

  Status Create(std::string_view link_file, const ShellLink& link) override {
    if (link.target.find(":\\") != 1) return StandardError(kBadFileName);
    Status written = files_.Write(link_file, "link to " + link.target);
    if (written.ok()) created.push_back({std::string(link_file), link});
    return written;
  }

  std::vector<Created> created;

 private:
  FileSystem& files_;
};

}  // namespace zent::testing
