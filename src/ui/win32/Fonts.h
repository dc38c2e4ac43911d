#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <type_traits>

namespace zent {

/// Deletes a font when its owner goes.
struct FontDeleter {
  void operator()(HFONT font) const { DeleteObject(font); }
};
using UniqueFont = std::unique_ptr<std::remove_pointer_t<HFONT>, FontDeleter>;

/// Lengths in dialog units: a quarter of the width and an eighth of the height of a letter, so that
/// a layout grows with its font.
struct DialogUnits {
  int letter_width = 0;   ///< pixels, the mean of the letters
  int letter_height = 0;  ///< pixels, of a line

  int X(int units) const { return MulDiv(units, letter_width, 4); }
  int Y(int units) const { return MulDiv(units, letter_height, 8); }
};

/// The fonts of a window, those that the user has chosen for the system.
class Fonts {
 public:
  /// For a screen of `dpi` dots per inch.
  explicit Fonts(int dpi);

  /// For labels, buttons and questions.
  HFONT text() const { return text_.get(); }
  /// Of even width, as large as the other.
  HFONT log() const { return log_.get(); }

 private:
  UniqueFont text_;
  UniqueFont log_;
};

DialogUnits UnitsOf(HFONT font);

/// Pixels that `text` (ANSI) takes in one line; an "&" counts as written.
SIZE TextSize(HFONT font, const std::string& text);

}  // namespace zent
