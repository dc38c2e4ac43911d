#include <algorithm>
#include <vector>

#include "base/Utf.h"
#include "jet/format/SortOrder.h"
#include "jet/format/TextKey.h"

namespace zent::jet {
namespace {

/// Places and weights of the accents, four bits each: 2 for every counted code before an accent.
class AccentNibbles {
 public:
  void Count(unsigned codes) { counted_ += codes; }
  void Add(unsigned weight) {
    nibbles_.insert(nibbles_.end(), counted_, 2);
    nibbles_.push_back(weight);
    counted_ = 0;
  }
  /// A zero before them and one behind, in whole bytes; one zero byte when there are none.
  void AppendTo(std::string& key) {
    if (nibbles_.size() > 1) nibbles_.push_back(0);
    if (nibbles_.size() % 2 != 0) nibbles_.push_back(0);
    for (std::size_t i = 0; i < nibbles_.size(); i += 2) {
      key.push_back(static_cast<char>((nibbles_[i] << 4U) | nibbles_[i + 1]));
    }
  }

 private:
  std::vector<unsigned> nibbles_ = {0};
  std::size_t counted_ = 0;
};

}  // namespace

void AppendTextKey3(std::string_view utf8, bool ascending, std::string& key) {
  const auto begin = static_cast<std::ptrdiff_t>(key.size());
  const std::u16string text = ToUtf16(utf8);
  AccentNibbles accents;
  for (const char16_t unit : KeyPart(text)) {
    const SortEntry entry = SortEntry3(unit);
    AppendCode(entry.code, entry.code_size, key);
    if (entry.sort_class == SortClass::Counted) accents.Count(entry.code_size);
    if (entry.sort_class == SortClass::Accented) accents.Add(entry.weight);
  }
  accents.AppendTo(key);
  if (ascending) return;
  std::transform(key.begin() + begin, key.end(), key.begin() + begin,
                 [](char c) { return static_cast<char>(~c); });
}

}  // namespace zent::jet
