#pragma once

/// Measures that all windows share, in dialog units, as the guidelines of the system give them.
namespace zent {

inline constexpr int kMargin = 7;
inline constexpr int kGap = 4;
inline constexpr int kButtonWidth = 50;
inline constexpr int kButtonHeight = 14;

}  // namespace zent
