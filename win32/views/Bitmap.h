#pragma once

#include <cstdint>
#include <vector>

/// Pictures as plain pixels.
namespace marlok::win32 {

/// Pixels row by row from the top. Each is 0xAARRGGBB, its colours multiplied by its alpha: what Windows calls
/// premultiplied BGRA.
struct Bitmap {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;

    Bitmap() = default;

    /// All pixels alike; the default is transparent.
    Bitmap(int wide, int high, std::uint32_t pixel = 0)
        : width(wide), height(high), pixels(static_cast<std::size_t>(wide) * static_cast<std::size_t>(high), pixel) {}

    [[nodiscard]] bool IsEmpty() const { return pixels.empty(); }
    [[nodiscard]] std::uint32_t& At(int x, int y) { return pixels[Index(x, y)]; }
    [[nodiscard]] std::uint32_t At(int x, int y) const { return pixels[Index(x, y)]; }

 private:
    [[nodiscard]] std::size_t Index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }
};

/// The largest size with the proportions of `width` x `height` that fits into an area, at least one pixel each way.
struct PixelSize {
    int width = 0;
    int height = 0;
    friend bool operator==(const PixelSize&, const PixelSize&) = default;
};
[[nodiscard]] PixelSize LargestInside(PixelSize picture, PixelSize area);

/// The bitmap at another size, smoothed. Empty when either is.
[[nodiscard]] Bitmap Scaled(const Bitmap& bitmap, PixelSize size);

/// Puts `top` over `canvas` with its corner at (left, above). What lies outside the canvas is cut off.
void DrawOver(Bitmap& canvas, const Bitmap& top, int left, int above);

/// Makes a rectangle of the canvas transparent. What lies outside the canvas is left out.
void ClearArea(Bitmap& canvas, int left, int above, PixelSize size);

/// An area of one opaque colour (0x00RRGGBB) with the bitmap in its middle, as large as fits.
[[nodiscard]] Bitmap Centred(const Bitmap& bitmap, PixelSize area, std::uint32_t background);

}  // namespace marlok::win32
