#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "base/Text.h"
#include "base/Utf.h"
#include "platform/prefix/version/PeResources.h"
#include "platform/prefix/version/VersionBlock.h"

// A program file, or a version resource, of any bytes: every answer is a text of bounded length,
// and no more of the file is read than the reader promises.

namespace {

constexpr std::size_t kMostBytesAsked = 4'000'000;
constexpr std::size_t kLongestText = 3 * 0xFFFF;

void Require(bool kept) {
  if (!kept) std::abort();
}

class InputFile : public zent::File {
 public:
  explicit InputFile(std::string_view contents) : contents_(contents) {}

  zent::Result<std::uint64_t> Size() override { return std::uint64_t{contents_.size()}; }
  zent::Result<std::size_t> ReadAt(std::uint64_t offset, std::span<char> buffer) override {
    asked_ += buffer.size();
    Require(asked_ <= kMostBytesAsked);
    if (offset >= contents_.size()) return std::size_t{0};
    const std::string_view bytes =
        contents_.substr(static_cast<std::size_t>(offset), buffer.size());
    std::copy(bytes.begin(), bytes.end(), buffer.begin());
    return bytes.size();
  }

 private:
  std::string_view contents_;
  std::size_t asked_ = 0;
};

void AskForAll(std::string bytes) {
  const zent::VersionBlock block(std::move(bytes));
  for (const char* path :
       {"\\", R"(\VarFileInfo\Translation)", R"(\StringFileInfo\040904B0)",
        R"(\StringFileInfo\040904B0\FileVersion)", R"(\StringFileInfo\040904B0\ProductVersion)"}) {
    const std::optional<std::string> text = block.QueryText(path);
    Require(text.has_value() == block.QueryBytes(path).has_value());
    if (!text) continue;
    Require(zent::IsUtf8(*text) && text->size() <= kLongestText);
    Require(text->find('\0') == std::string::npos);
    Require(block.QueryText(zent::ToLower(path)) == text);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  InputFile file(input);
  zent::Result<std::string> resource = zent::ReadVersionResource(file);
  if (resource.ok()) AskForAll(std::move(resource.value()));
  AskForAll(std::string(input));
  return 0;
}
