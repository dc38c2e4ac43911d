#include "ui/win32/Fonts.h"

#include <cstddef>
#include <string_view>

#include "ui/win32/Dpi.h"

namespace zent {
namespace {

/// A screen to measure on, with a font chosen.
class Ruler {
 public:
  explicit Ruler(HFONT font) : screen_(GetDC(nullptr)), before_(SelectObject(screen_, font)) {}
  ~Ruler() {
    SelectObject(screen_, before_);
    ReleaseDC(nullptr, screen_);
  }
  Ruler(const Ruler&) = delete;
  Ruler& operator=(const Ruler&) = delete;

  HDC screen() const { return screen_; }

 private:
  HDC screen_;
  HGDIOBJ before_;
};

/// The system's font for messages, made for SystemDpi().
LOGFONTA MessageFont() {
  NONCLIENTMETRICSA metrics{};
  // The structure as Windows 2000 knows it, without what later systems put behind: all take that.
  metrics.cbSize = offsetof(NONCLIENTMETRICSA, lfMessageFont) + sizeof(LOGFONTA);
  if (SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0) != FALSE) {
    return metrics.lfMessageFont;
  }
  LOGFONTA font{};
  GetObjectA(GetStockObject(DEFAULT_GUI_FONT), sizeof font, &font);
  return font;
}

void SetFace(LOGFONTA& font, std::string_view face) {
  font.lfFaceName[face.copy(font.lfFaceName, LF_FACESIZE - 1)] = '\0';
}

/// True when the system has the very face that `font` asks for.
bool HasFace(const LOGFONTA& font) {
  const UniqueFont made(CreateFontIndirectA(&font));
  const Ruler ruler(made.get());
  char face[LF_FACESIZE] = {};
  GetTextFaceA(ruler.screen(), LF_FACESIZE, face);
  return lstrcmpiA(face, font.lfFaceName) == 0;
}

}  // namespace

Fonts::Fonts(int dpi) {
  LOGFONTA font = MessageFont();
  font.lfHeight = MulDiv(font.lfHeight, dpi, SystemDpi());
  font.lfWidth = 0;
  text_.reset(CreateFontIndirectA(&font));

  font.lfWeight = FW_NORMAL;
  font.lfPitchAndFamily = FIXED_PITCH | FF_MODERN;
  SetFace(font, "Consolas");
  if (!HasFace(font)) SetFace(font, "Courier New");
  log_.reset(CreateFontIndirectA(&font));
}

DialogUnits UnitsOf(HFONT font) {
  const Ruler ruler(font);
  constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  constexpr int kCount = static_cast<int>(kLetters.size());
  SIZE size{};
  GetTextExtentPoint32A(ruler.screen(), kLetters.data(), kCount, &size);
  TEXTMETRICA metrics{};
  GetTextMetricsA(ruler.screen(), &metrics);
  return {.letter_width = static_cast<int>(size.cx + kCount / 2) / kCount,
          .letter_height = static_cast<int>(metrics.tmHeight)};
}

SIZE TextSize(HFONT font, const std::string& text) {
  const Ruler ruler(font);
  SIZE size{};
  GetTextExtentPoint32A(ruler.screen(), text.data(), static_cast<int>(text.size()), &size);
  return size;
}

}  // namespace zent
