#pragma once

#include <string>
#include <vector>

namespace marlok::test {

/// One frame of an animation in the making: a rectangle of colour numbers, row by row. Number 0 is transparent.
struct GifFrame {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    std::vector<int> numbers;
    int delay = 0;     ///< hundredths of a second
    int disposal = 0;  ///< 0 to 3
};

/// Number of a colour: 1 red, 2 green, 3 blue, 4 white.
enum GifColour { clear, red, green, blue, white };

/// A frame of one colour.
[[nodiscard]] GifFrame PlainFrame(int left, int top, int width, int height, GifColour colour);

/// The bytes of a GIF file that plays for ever.
[[nodiscard]] std::string GifBytes(int width, int height, const std::vector<GifFrame>& frames);

}  // namespace marlok::test
