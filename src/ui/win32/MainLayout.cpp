#include "ui/win32/MainLayout.h"

#include <algorithm>

#include "ui/win32/DialogUnits.h"

namespace zent {
namespace {

// Dialog units, as the system's own windows have them.
constexpr int kLine = 8;
constexpr int kBarHeight = 10;
constexpr int kSmallestBar = 60;
constexpr int kButtonPadding = 12;

RECT Box(int left, int top, int width, int height) {
  return {left, top, left + width, top + height};
}

int ButtonWidth(const LayoutSizes& sizes) {
  return std::max(sizes.text.X(kButtonWidth), sizes.button_width + sizes.text.X(kButtonPadding));
}

/// All that stands above and below the message box.
int FixedHeight(const DialogUnits& units) {
  return 2 * units.Y(kMargin) + units.Y(kLine) + 3 * units.Y(kGap) + units.Y(kBarHeight) +
         units.Y(kButtonHeight);
}

/// An inside with a message box of so many characters and lines.
SIZE ClientFor(const LayoutSizes& sizes, int columns, int lines) {
  const DialogUnits& units = sizes.text;
  const int log = columns * sizes.log.letter_width + GetSystemMetrics(SM_CXVSCROLL);
  const int progress = sizes.step_width + units.X(kGap) + units.X(kSmallestBar);
  const int buttons = 3 * ButtonWidth(sizes) + 2 * units.X(kGap);
  return {2 * units.X(kMargin) + std::max({log, progress, buttons}),
          FixedHeight(units) + lines * sizes.log.letter_height};
}

}  // namespace

MainLayout LayOutMain(SIZE client, const LayoutSizes& sizes) {
  const DialogUnits& units = sizes.text;
  const int left = units.X(kMargin);
  const int right = static_cast<int>(client.cx) - left;
  const int width = std::max(right - left, 0);
  const int button = ButtonWidth(sizes);
  const int button_height = units.Y(kButtonHeight);
  const int buttons_top = static_cast<int>(client.cy) - units.Y(kMargin) - button_height;
  const int bar_height = units.Y(kBarHeight);
  const int bar_top = buttons_top - units.Y(kGap) - bar_height;
  const int caption_height = units.Y(kLine);
  const int log_top = units.Y(kMargin) + caption_height + units.Y(kGap) / 2;
  const int log_height = std::max(bar_top - units.Y(kGap) - log_top, 0);
  const int bar_left = left + sizes.step_width + units.X(kGap);
  const int step_top = bar_top + (bar_height - units.letter_height) / 2;
  const int step_back = button + units.X(kGap);
  return {.caption = Box(left, units.Y(kMargin), width, caption_height),
          .log = Box(left, log_top, width, log_height),
          .step = Box(left, step_top, sizes.step_width, units.letter_height),
          .bar = Box(bar_left, bar_top, std::max(right - bar_left, 0), bar_height),
          .install = Box(right - button - 2 * step_back, buttons_top, button, button_height),
          .go_on = Box(right - button - step_back, buttons_top, button, button_height),
          .close = Box(right - button, buttons_top, button, button_height)};
}

SIZE SmallestClient(const LayoutSizes& sizes) { return ClientFor(sizes, 48, 8); }

SIZE UsualClient(const LayoutSizes& sizes) { return ClientFor(sizes, 92, 30); }

}  // namespace zent
