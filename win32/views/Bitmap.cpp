#include "win32/views/Bitmap.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace marlok::win32 {

namespace {

constexpr std::uint32_t opaque = 0xFF000000U;
constexpr std::size_t channels = 4;
using Channels = std::array<float, channels>;

/// The pixels of one old row or column that make up one new pixel, and their shares, which add up to 1.
struct Taps {
    int first = 0;
    std::vector<float> shares;
};

/// A tent over each new pixel: it mixes neighbours when growing, and averages all that a new pixel covers when
/// shrinking.
std::vector<Taps> TapsFor(int from, int to) {
    const double step = static_cast<double>(from) / to;
    const double reach = std::max(step, 1.0);
    std::vector<Taps> all(static_cast<std::size_t>(to));
    for (int target = 0; target < to; ++target) {
        Taps& taps = all[static_cast<std::size_t>(target)];
        const double centre = (target + 0.5) * step - 0.5;
        taps.first = std::max(0, static_cast<int>(std::ceil(centre - reach)));
        const int last = std::min(from - 1, static_cast<int>(std::floor(centre + reach)));
        double sum = 0;
        for (int source = taps.first; source <= last; ++source) {
            const double share = std::max(0.0, 1 - std::abs(source - centre) / reach);
            taps.shares.push_back(static_cast<float>(share));
            sum += share;
        }
        for (float& share : taps.shares) {
            share = static_cast<float>(share / sum);
        }
    }
    return all;
}

Channels Split(std::uint32_t pixel) {
    return {static_cast<float>(pixel & 0xFFU), static_cast<float>((pixel >> 8U) & 0xFFU),
            static_cast<float>((pixel >> 16U) & 0xFFU), static_cast<float>(pixel >> 24U)};
}

std::uint32_t Join(const Channels& parts) {
    std::uint32_t pixel = 0;
    for (std::size_t channel = 0; channel < channels; ++channel) {
        const float part = std::clamp(parts[channel], 0.0F, 255.0F);
        pixel |= static_cast<std::uint32_t>(std::lround(part)) << (8 * channel);
    }
    return pixel;
}

void AddShare(Channels& sum, const Channels& part, float share) {
    for (std::size_t channel = 0; channel < channels; ++channel) {
        sum[channel] += part[channel] * share;
    }
}

/// The rows of the bitmap at another width.
std::vector<Channels> ScaledAcross(const Bitmap& bitmap, int newWidth) {
    const std::vector<Taps> across = TapsFor(bitmap.width, newWidth);
    const std::size_t width = across.size();
    std::vector<Channels> scaled(width * static_cast<std::size_t>(bitmap.height), Channels{});
    for (int y = 0; y < bitmap.height; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            int source = across[x].first;
            for (const float share : across[x].shares) {
                AddShare(scaled[static_cast<std::size_t>(y) * width + x], Split(bitmap.At(source++, y)), share);
            }
        }
    }
    return scaled;
}

/// `over` on `under`, both premultiplied.
std::uint32_t Blend(std::uint32_t under, std::uint32_t over) {
    const std::uint32_t through = 255 - (over >> 24U);
    if (through == 0) {
        return over;
    }
    std::uint32_t result = 0;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        const std::uint32_t below = ((under >> shift) & 0xFFU) * through;
        const std::uint32_t sum = ((over >> shift) & 0xFFU) + (below + 127) / 255;
        result |= std::min(sum, 255U) << shift;
    }
    return result;
}

}  // namespace

PixelSize LargestInside(PixelSize picture, PixelSize area) {
    const double scale = std::min(static_cast<double>(area.width) / std::max(picture.width, 1),
                                  static_cast<double>(area.height) / std::max(picture.height, 1));
    return {std::max(1, static_cast<int>(std::lround(picture.width * scale))),
            std::max(1, static_cast<int>(std::lround(picture.height * scale)))};
}

Bitmap Scaled(const Bitmap& bitmap, PixelSize size) {
    if (bitmap.IsEmpty() || size.width <= 0 || size.height <= 0) {
        return {};
    }
    if (size == PixelSize{bitmap.width, bitmap.height}) {
        return bitmap;
    }
    const std::vector<Channels> rows = ScaledAcross(bitmap, size.width);
    const std::vector<Taps> down = TapsFor(bitmap.height, size.height);
    const auto width = static_cast<std::size_t>(size.width);
    Bitmap scaled(size.width, size.height);
    for (std::size_t y = 0; y < down.size(); ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            Channels sum{};
            auto source = static_cast<std::size_t>(down[y].first);
            for (const float share : down[y].shares) {
                AddShare(sum, rows[source++ * width + x], share);
            }
            scaled.pixels[y * width + x] = Join(sum);
        }
    }
    return scaled;
}

void DrawOver(Bitmap& canvas, const Bitmap& top, int left, int above) {
    const int right = std::min(top.width, canvas.width - left);
    const int bottom = std::min(top.height, canvas.height - above);
    for (int y = std::max(0, -above); y < bottom; ++y) {
        for (int x = std::max(0, -left); x < right; ++x) {
            std::uint32_t& pixel = canvas.At(left + x, above + y);
            pixel = Blend(pixel, top.At(x, y));
        }
    }
}

void ClearArea(Bitmap& canvas, int left, int above, PixelSize size) {
    for (int y = std::max(0, above); y < std::min(canvas.height, above + size.height); ++y) {
        for (int x = std::max(0, left); x < std::min(canvas.width, left + size.width); ++x) {
            canvas.At(x, y) = 0;
        }
    }
}

Bitmap Centred(const Bitmap& bitmap, PixelSize area, std::uint32_t background) {
    Bitmap filled(area.width, area.height, background | opaque);
    if (!bitmap.IsEmpty() && !filled.IsEmpty()) {
        const Bitmap scaled = Scaled(bitmap, LargestInside({bitmap.width, bitmap.height}, area));
        DrawOver(filled, scaled, (area.width - scaled.width) / 2, (area.height - scaled.height) / 2);
    }
    return filled;
}

}  // namespace marlok::win32
