#include <algorithm>
#include <array>
#include <vector>

#include "base/Utf.h"
#include "jet/format/Layout.h"
#include "jet/format/SortOrder.h"
#include "jet/format/TextCodec.h"
#include "jet/format/TextKey.h"

namespace zent::jet {
namespace {

constexpr char kEndOfCodes = '\x01';
constexpr char kEndOfKey = '\x00';
constexpr char kNoWeight = '\x02';  // of a character without accent
constexpr char kSurrogateWeight = '\x3F';
constexpr char kHiddenMark = '\x06';
constexpr unsigned kKana3 = 3;
constexpr std::string_view kEndOfMarks = "\xFF\x02\x80\xFF\x80";

/// Code of half a character beyond U+FFFF: its number less a distance that grows with the gaps of
/// the ranges below.
std::uint32_t SurrogateCode(char16_t unit) {
  if (unit < 0xDC00) return static_cast<std::uint32_t>(unit - 10238);
  const int offset = unit - 0xDC00;
  if (offset < 8) return static_cast<std::uint32_t>(unit - 9992);
  if (offset < 262) return static_cast<std::uint32_t>(unit - 9990);
  if (offset < 516) return static_cast<std::uint32_t>(unit - 9988);
  if (offset < 770) return static_cast<std::uint32_t>(unit - 9986);
  return static_cast<std::uint32_t>(unit - 9984);
}

/// The streams of one key: codes, second weights, kana marks and hidden characters.
class KeyStreams {
 public:
  explicit KeyStreams(std::string& codes) : codes_(codes) {}

  void Add(char16_t unit) {
    const SortEntry entry = SortEntry4(unit);
    switch (entry.sort_class) {
      case SortClass::Ignored:
      case SortClass::Counted:
      case SortClass::Mapped:
        return;
      case SortClass::Accent:
        AddAccent(entry);
        return;
      case SortClass::Hidden:
        AddHidden(entry);
        return;
      case SortClass::Surrogate:
        AppendCode(SurrogateCode(unit), 2, codes_);
        FillWeights();
        weights_.push_back(kSurrogateWeight);
        ++weighted_;
        break;
      case SortClass::Plain:
      case SortClass::Accented:
      case SortClass::Kana2:
      case SortClass::Kana3:
        AddCoded(entry);
        break;
    }
    ++characters_;
  }

  /// Everything behind the codes, without the end of the key.
  void Finish() {
    codes_.push_back(kEndOfCodes);
    while (!weights_.empty() && static_cast<unsigned char>(weights_.back()) <= 2)
      weights_.pop_back();
    codes_ += weights_;
    if (marks_.empty() && hidden_.empty()) return;
    codes_ += "\x01\x01";
    if (!marks_.empty()) {
      AppendMarks();
      codes_ += kEndOfMarks;
      if (!hidden_.empty()) codes_.push_back('\xFF');
    }
    if (!hidden_.empty()) {
      codes_.push_back('\x01');
      codes_ += hidden_;
    }
  }

 private:
  void AddCoded(const SortEntry& entry) {
    AppendCode(entry.code, entry.code_size, codes_);
    if (entry.weight_size > 0) {
      FillWeights();
      AppendCode(entry.weight, entry.weight_size, weights_);
      ++weighted_;
    }
    if (entry.sort_class == SortClass::Kana2) marks_.push_back(2);
    if (entry.sort_class == SortClass::Kana3) marks_.push_back(kKana3);
  }

  void AddAccent(const SortEntry& entry) {
    FillWeights();
    if (weights_.empty()) {  // an accent before any character: it has no place of its own
      AppendCode(entry.weight, entry.weight_size, weights_);
      unplaced_ = 1;
      return;
    }
    weights_.back() = static_cast<char>(weights_.back() + entry.weight);
  }

  void AddHidden(const SortEntry& entry) {
    const std::size_t place =
        weights_.empty() ? characters_ : weights_.size() + (characters_ - weighted_) - unplaced_;
    AppendCode(static_cast<std::uint32_t>(0x8000U | (7 + 4 * place)), 2, hidden_);
    hidden_.push_back(kHiddenMark);
    AppendCode(entry.weight, entry.weight_size, hidden_);
  }

  /// Weights reach up to the present character.
  void FillWeights() {
    if (weighted_ >= characters_) return;
    weights_.append(characters_ - weighted_, kNoWeight);
    weighted_ = characters_;
  }

  /// Three marks a byte; the last ones are left out while they are 3.
  void AppendMarks() {
    while (!marks_.empty() && marks_.back() == kKana3) marks_.pop_back();
    for (std::size_t i = 0; i < marks_.size(); i += 3) {
      unsigned byte = 0x80;
      for (std::size_t k = 0; k < 3 && i + k < marks_.size(); ++k)
        byte |= marks_[i + k] << (4 - 2 * k);
      codes_.push_back(static_cast<char>(byte));
    }
  }

  std::string& codes_;
  std::string weights_;
  std::string hidden_;
  std::vector<unsigned> marks_;
  std::size_t characters_ = 0;  ///< that have a code
  std::size_t weighted_ = 0;    ///< of these, how many have their place in the weights
  std::size_t unplaced_ = 0;    ///< bytes of weight before the first place
};

/// The streams of a text whose characters are ASCII and codes alone, as most are; `unit_at` gives
/// its UTF-16 units. False, and nothing appended, for any other.
template <typename UnitAt>
bool AppendAsciiStreams(std::size_t length, UnitAt unit_at, std::string& key) {
  length = std::min(length, kMaxTextUnits);
  while (length > 0 && unit_at(length - 1) == u' ') --length;
  std::array<char, 2 * kMaxTextUnits + 1> codes;
  std::size_t size = 0;
  for (std::size_t i = 0; i < length; ++i) {
    const char16_t unit = unit_at(i);
    if (unit == 0 || unit > 0x7F) return false;
    const AsciiCode& code = AsciiCode4(static_cast<char>(unit));
    if (code.size == 0) return false;
    codes[size++] = code.bytes[0];
    if (code.size == 2) codes[size++] = code.bytes[1];
  }
  codes[size++] = kEndOfCodes;
  key.append(codes.data(), size);
  return true;
}

/// As AppendAsciiStreams, of a field. A zero byte among compressed characters is no character.
bool AppendStoredStreams(ByteView stored, std::string& key) {
  if (AsText(stored).starts_with(kCompressedMark)) {
    const ByteView bytes = stored.subspan(kCompressedMark.size());
    return AppendAsciiStreams(
        bytes.size(), [bytes](std::size_t i) { return char16_t{bytes[i]}; }, key);
  }
  return AppendAsciiStreams(
      stored.size() / 2,
      [stored](std::size_t i) { return static_cast<char16_t>(LoadU16(stored, 2 * i)); }, key);
}

void AppendStreams(std::string_view utf8, std::string& key) {
  const std::u16string text = ToUtf16(utf8);
  KeyStreams streams(key);
  for (const char16_t unit : KeyPart(text)) streams.Add(unit);
  streams.Finish();
}

/// Ends the key that begins at `begin` and turns it.
void EndKey(std::size_t begin, bool ascending, std::string& key) {
  if (!ascending) {
    key.push_back(kEndOfKey);
    std::transform(key.begin() + static_cast<std::ptrdiff_t>(begin), key.end(),
                   key.begin() + static_cast<std::ptrdiff_t>(begin),
                   [](char c) { return static_cast<char>(~c); });
  }
  key.push_back(kEndOfKey);
}

}  // namespace

void AppendTextKey4(std::string_view utf8, bool ascending, std::string& key) {
  const std::size_t begin = key.size();
  const auto unit_at = [utf8](std::size_t i) {
    return char16_t{static_cast<unsigned char>(utf8[i])};
  };
  if (!AppendAsciiStreams(utf8.size(), unit_at, key)) AppendStreams(utf8, key);
  EndKey(begin, ascending, key);
}

void AppendStoredTextKey4(ByteView stored, bool ascending, std::string& key) {
  const std::size_t begin = key.size();
  if (!AppendStoredStreams(stored, key)) {
    AppendStreams(DecodeText(JetVersion::Jet4, stored), key);
  }
  EndKey(begin, ascending, key);
}

bool SameKey(std::string_view a, std::string_view b) {
  std::string a_key;
  std::string b_key;
  AppendTextKey4(a, true, a_key);
  AppendTextKey4(b, true, b_key);
  return a_key == b_key;
}

}  // namespace zent::jet
