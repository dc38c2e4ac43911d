#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

/// The tables of the two sort orders. They stand as text in order/ and become arrays when the
/// project is configured.
namespace zent::jet {

/// What a character does to a key.
enum class SortClass : std::uint8_t {
  Plain,      ///< has a code
  Counted,    ///< Jet 3: plain, and counts for the places of accents
  Accented,   ///< has a code and a second weight
  Kana2,      ///< has a code and the mark 2 (small kana)
  Kana3,      ///< has a code and the mark 3 (other kana)
  Accent,     ///< no code: adds to the weight of the character before it
  Hidden,     ///< no code: counts only between texts that are otherwise the same
  Ignored,    ///< nothing at all
  Surrogate,  ///< half of a character beyond U+FFFF: its code is computed
  Mapped,     ///< Jet 3: a character outside Latin-1; the code is its byte
};

/// A run of characters whose codes are in steps.
struct SortRun {
  std::uint16_t first;
  std::uint16_t last;
  SortClass sort_class;
  std::uint8_t code_size;  ///< bytes
  std::int16_t code_step;
  std::uint32_t code;
  std::uint8_t weight_size;  ///< bytes
  std::int8_t weight_step;
  std::uint16_t weight;
};

/// What the order says of one character.
struct SortEntry {
  SortClass sort_class = SortClass::Ignored;
  std::uint8_t code_size = 0;
  std::uint8_t weight_size = 0;
  std::uint32_t code = 0;
  std::uint16_t weight = 0;
};

/// The entry of a UTF-16 unit in the order of Jet 4.
SortEntry SortEntry4(char16_t unit);

/// The code of an ASCII character in the order of Jet 4, the highest byte first. Size 0: the
/// character has more than a code, or none.
struct AsciiCode {
  std::uint8_t size = 0;
  std::array<char, 2> bytes = {};
};
const AsciiCode& AsciiCode4(char character);

/// The entry of a UTF-16 unit in the order of Jet 3, by its byte in code page 1252.
SortEntry SortEntry3(char16_t unit);

/// Appends the low `size` bytes of `code`, the highest first.
void AppendCode(std::uint32_t code, unsigned size, std::string& bytes);

/// What of a text takes part in a key: its first 255 units without the blanks at their end.
std::u16string_view KeyPart(std::u16string_view text);

}  // namespace zent::jet
