#pragma once

/// The grid on which all windows are laid out, in twips (15 to the pixel at 96 dots to the inch). Wide and high enough
/// for the message fonts of Windows (Segoe UI, 9 points) and of older systems (Tahoma, 8 points).
namespace marlok::forms::measure {

inline constexpr int margin = 180;      ///< between controls and the edge of a window or tab
inline constexpr int gap = 120;         ///< between neighbours
inline constexpr int smallGap = 60;     ///< between a heading and what it heads
inline constexpr int lineHeight = 270;  ///< one line of text
inline constexpr int buttonHeight = 390;
inline constexpr int comboHeight = 345;
inline constexpr int buttonWidth = 2250;

}  // namespace marlok::forms::measure
