#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <fstream>

#include "tests/windows/GifBytes.h"
#include "win32/views/Bitmap.h"
#include "win32/views/Picture.h"

namespace marlok::test {
namespace {

using win32::Bitmap;
using win32::Picture;
using win32::PixelSize;

constexpr std::uint32_t opaqueRed = 0xFFFF0000U;
constexpr std::uint32_t opaqueGreen = 0xFF00FF00U;
constexpr std::uint32_t opaqueBlue = 0xFF0000FFU;
constexpr std::uint32_t opaqueWhite = 0xFFFFFFFFU;
constexpr std::uint32_t transparent = 0;

/// A red screen of 4 x 4, a green spot of 2 x 2 on it that goes as `disposal` says, then a blue pixel in the corner.
std::vector<GifFrame> SpotFrames(int disposal) {
    GifFrame spot = PlainFrame(1, 1, 2, 2, green);
    spot.disposal = disposal;
    spot.delay = 25;
    return {PlainFrame(0, 0, 4, 4, red), spot, PlainFrame(3, 3, 1, 1, blue)};
}

TEST(PictureTest, AnAnimationIsComposedFrameByFrame) {
    const Picture picture = Picture::FromBytes(GifBytes(4, 4, SpotFrames(1)));
    ASSERT_EQ(picture.Frames().size(), 3U);
    EXPECT_TRUE(picture.IsAnimated());
    for (const Picture::Frame& frame : picture.Frames()) {
        EXPECT_EQ(frame.bitmap.width, 4);
        EXPECT_EQ(frame.bitmap.height, 4);
        EXPECT_EQ(frame.bitmap.At(0, 0), opaqueRed) << "every frame is complete";
    }
    EXPECT_EQ(picture.Frames()[0].bitmap.At(1, 1), opaqueRed);
    EXPECT_EQ(picture.Frames()[1].bitmap.At(1, 1), opaqueGreen);
    EXPECT_EQ(picture.Frames()[1].bitmap.At(2, 2), opaqueGreen);
    EXPECT_EQ(picture.Frames()[1].bitmap.At(3, 3), opaqueRed);
    EXPECT_EQ(picture.Frames()[2].bitmap.At(1, 1), opaqueGreen) << "it was to stay";
    EXPECT_EQ(picture.Frames()[2].bitmap.At(3, 3), opaqueBlue);
}

TEST(PictureTest, AFrameMayClearItsAreaOrBringBackWhatWasThere) {
    const Picture cleared = Picture::FromBytes(GifBytes(4, 4, SpotFrames(2)));
    ASSERT_EQ(cleared.Frames().size(), 3U);
    EXPECT_EQ(cleared.Frames()[2].bitmap.At(1, 1), transparent);
    EXPECT_EQ(cleared.Frames()[2].bitmap.At(0, 1), opaqueRed);
    const Picture restored = Picture::FromBytes(GifBytes(4, 4, SpotFrames(3)));
    ASSERT_EQ(restored.Frames().size(), 3U);
    EXPECT_EQ(restored.Frames()[1].bitmap.At(1, 1), opaqueGreen);
    EXPECT_EQ(restored.Frames()[2].bitmap.At(1, 1), opaqueRed);
    EXPECT_EQ(restored.Frames()[2].bitmap.At(3, 3), opaqueBlue);
}

TEST(PictureTest, TransparentPixelsShowTheFrameBelow) {
    GifFrame veil = PlainFrame(0, 0, 4, 4, clear);
    veil.numbers[5] = white;
    const Picture picture = Picture::FromBytes(GifBytes(4, 4, {PlainFrame(0, 0, 4, 4, red), veil}));
    ASSERT_EQ(picture.Frames().size(), 2U);
    EXPECT_EQ(picture.Frames()[1].bitmap.At(1, 1), opaqueWhite);
    EXPECT_EQ(picture.Frames()[1].bitmap.At(2, 1), opaqueRed);
    const Picture only = Picture::FromBytes(GifBytes(4, 4, {veil}));
    ASSERT_EQ(only.Frames().size(), 1U);
    EXPECT_FALSE(only.IsAnimated());
    EXPECT_EQ(only.Frames()[0].bitmap.At(0, 0), transparent);
}

TEST(PictureTest, DelaysAreMillisecondsAndNoneIsShorterThanViewersGive) {
    std::vector<GifFrame> frames(4, PlainFrame(0, 0, 2, 2, red));
    frames[0].delay = 0;
    frames[1].delay = 1;
    frames[2].delay = 2;
    frames[3].delay = 300;
    const Picture picture = Picture::FromBytes(GifBytes(2, 2, frames));
    ASSERT_EQ(picture.Frames().size(), 4U);
    EXPECT_EQ(picture.Frames()[0].delay, 100U);
    EXPECT_EQ(picture.Frames()[1].delay, 100U);
    EXPECT_EQ(picture.Frames()[2].delay, 20U);
    EXPECT_EQ(picture.Frames()[3].delay, 3000U);
}

TEST(PictureTest, AFrameThatReachesBeyondTheScreenIsCut) {
    const Picture picture = Picture::FromBytes(
        GifBytes(3, 3, {PlainFrame(0, 0, 3, 3, red), PlainFrame(2, 2, 9, 9, green), PlainFrame(50, 60, 2, 2, blue)}));
    ASSERT_EQ(picture.Frames().size(), 3U);
    EXPECT_EQ(picture.Frames()[2].bitmap.width, 3);
    EXPECT_EQ(picture.Frames()[2].bitmap.At(2, 2), opaqueGreen);
    EXPECT_EQ(picture.Frames()[2].bitmap.At(1, 2), opaqueRed);
}

TEST(PictureTest, AFileCutAnywhereIsNothingOrAllThatWasThere) {
    const std::string whole = GifBytes(4, 4, SpotFrames(3));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const Picture picture = Picture::FromBytes(whole.substr(0, length));
        EXPECT_LE(picture.Frames().size(), 3U) << length;
        for (const Picture::Frame& frame : picture.Frames()) {
            EXPECT_EQ(frame.bitmap.width, 4) << length;
            EXPECT_EQ(frame.bitmap.pixels.size(), 16U) << length;
        }
    }
    EXPECT_TRUE(Picture::FromBytes(whole.substr(0, 12)).IsEmpty()) << "not even a palette";
}

TEST(PictureTest, ADamagedByteAnywhereDoesNoHarm) {
    const std::string whole = GifBytes(4, 4, SpotFrames(2));
    for (std::size_t place = 0; place < whole.size(); ++place) {
        if (place >= 28 && place < 13 + 3 * 128) {
            continue;  // colours that nothing uses
        }
        for (const char damage : {'\x00', '\x7F', '\xFF'}) {
            std::string damaged = whole;
            damaged[place] = damage;
            const Picture picture = Picture::FromBytes(damaged);
            for (const Picture::Frame& frame : picture.Frames()) {
                EXPECT_LE(frame.bitmap.width, 4096) << place;
                EXPECT_LE(frame.bitmap.height, 4096) << place;
                EXPECT_FALSE(frame.bitmap.IsEmpty()) << place;
            }
        }
    }
}

TEST(PictureTest, WhatIsTooLargeIsNotShown) {
    EXPECT_TRUE(Picture::FromBytes(GifBytes(5000, 10, {PlainFrame(0, 0, 2, 2, red)})).IsEmpty());
    EXPECT_TRUE(Picture::FromBytes(GifBytes(2, 2, std::vector<GifFrame>(1001, PlainFrame(0, 0, 1, 1, red)))).IsEmpty());
    EXPECT_EQ(
        Picture::FromBytes(GifBytes(2, 2, std::vector<GifFrame>(1000, PlainFrame(0, 0, 1, 1, red)))).Frames().size(),
        1000U);
    // Each frame alone would do; together they would take gigabytes.
    EXPECT_TRUE(
        Picture::FromBytes(GifBytes(4000, 4000, std::vector<GifFrame>(20, PlainFrame(0, 0, 1, 1, red)))).IsEmpty());
}

TEST(PictureTest, StillPicturesAndWhatIsNone) {
    const std::string bitmapFile(
        "BM\x46\0\0\0\0\0\0\0\x36\0\0\0"
        "\x28\0\0\0\x02\0\0\0\x02\0\0\0\x01\0\x18\0\0\0\0\0\x10\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
        "\xFF\0\0\xFF\xFF\xFF\0\0"  // the lower row: blue, white
        "\0\0\xFF\0\xFF\0\0\0",     // the upper one: red, green
        70);
    const Picture still = Picture::FromBytes(bitmapFile);
    ASSERT_EQ(still.Frames().size(), 1U);
    EXPECT_EQ(still.Frames()[0].bitmap.pixels,
              (std::vector<std::uint32_t>{opaqueRed, opaqueGreen, opaqueBlue, opaqueWhite}));
    EXPECT_TRUE(Picture::FromBytes("").IsEmpty());
    EXPECT_TRUE(Picture::FromBytes("no picture at all").IsEmpty());
    EXPECT_TRUE(Picture::FromFile("C:\\no such folder\\picture.gif").IsEmpty());
    EXPECT_TRUE(Picture::FromFile("C:\\windows").IsEmpty());
    EXPECT_TRUE(Picture::FromIcon(nullptr).IsEmpty());
}

TEST(PictureTest, AFileIsReadAndLeftAlone) {
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / (L"marlok bild ü " + std::to_wstring(GetCurrentProcessId()) + L".gif");
    std::ofstream(path, std::ios::binary) << GifBytes(4, 4, SpotFrames(1));
    const std::u8string name = path.u8string();
    EXPECT_EQ(Picture::FromFile(std::string(name.begin(), name.end())).Frames().size(), 3U);
    EXPECT_TRUE(std::filesystem::remove(path)) << "nothing keeps it open";
}

TEST(PictureTest, TheProgramsIconKeepsItsSoftEdges) {
    const auto icon = static_cast<HICON>(
        LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(1), IMAGE_ICON, 48, 48, LR_DEFAULTCOLOR));
    ASSERT_NE(icon, nullptr);
    const Picture picture = Picture::FromIcon(icon);
    DestroyIcon(icon);
    ASSERT_EQ(picture.Frames().size(), 1U);
    const Bitmap& bitmap = picture.Frames()[0].bitmap;
    EXPECT_EQ(bitmap.width, 48);
    EXPECT_EQ(bitmap.height, 48);
    EXPECT_EQ(bitmap.At(0, 0), transparent);
    int soft = 0;
    int full = 0;
    for (const std::uint32_t pixel : bitmap.pixels) {
        const std::uint32_t alpha = pixel >> 24U;
        full += alpha == 255 ? 1 : 0;
        soft += alpha != 0 && alpha != 255 ? 1 : 0;
        EXPECT_LE(pixel & 0xFFU, alpha) << "premultiplied";
    }
    EXPECT_GT(full, 200);
    EXPECT_GT(soft, 20);
}

TEST(BitmapTest, LargestSizeKeepsTheProportions) {
    EXPECT_EQ(win32::LargestInside({200, 100}, {100, 100}), (PixelSize{100, 50}));
    EXPECT_EQ(win32::LargestInside({100, 200}, {100, 100}), (PixelSize{50, 100}));
    EXPECT_EQ(win32::LargestInside({10, 10}, {35, 90}), (PixelSize{35, 35}));
    EXPECT_EQ(win32::LargestInside({4000, 1}, {40, 40}), (PixelSize{40, 1}));
    EXPECT_EQ(win32::LargestInside({0, 0}, {40, 40}), (PixelSize{1, 1}));
}

TEST(BitmapTest, ScalingAveragesAndKeepsPlainColours) {
    Bitmap squares(2, 2, opaqueWhite);
    squares.At(0, 0) = 0xFF000000U;
    squares.At(1, 1) = 0xFF000000U;
    const Bitmap one = win32::Scaled(squares, {1, 1});
    EXPECT_NEAR(static_cast<double>(one.At(0, 0) & 0xFFU), 127.5, 1);
    for (const PixelSize size : {PixelSize{7, 3}, {64, 64}, {1, 9}, {300, 2}}) {
        const Bitmap plain = win32::Scaled(Bitmap(16, 16, opaqueGreen), size);
        EXPECT_EQ(plain.width, size.width);
        EXPECT_EQ(plain.pixels, Bitmap(size.width, size.height, opaqueGreen).pixels);
    }
    EXPECT_TRUE(win32::Scaled(Bitmap(), {5, 5}).IsEmpty());
    EXPECT_TRUE(win32::Scaled(squares, {0, 5}).IsEmpty());
}

TEST(BitmapTest, DrawingOverIsCutAtTheEdgesAndBlends) {
    Bitmap canvas(4, 4, opaqueWhite);
    win32::DrawOver(canvas, Bitmap(3, 3, opaqueRed), -2, -2);
    win32::DrawOver(canvas, Bitmap(3, 3, opaqueBlue), 3, 3);
    win32::DrawOver(canvas, Bitmap(3, 3, opaqueGreen), 90, -90);
    EXPECT_EQ(canvas.At(0, 0), opaqueRed);
    EXPECT_EQ(canvas.At(1, 1), opaqueWhite);
    EXPECT_EQ(canvas.At(3, 3), opaqueBlue);
    win32::DrawOver(canvas, Bitmap(1, 1, 0x80000000U), 1, 1);
    EXPECT_NEAR(static_cast<double>(canvas.At(1, 1) & 0xFFU), 127, 1);
    EXPECT_EQ(canvas.At(1, 1) >> 24U, 255U);
}

TEST(BitmapTest, ThePictureStandsInTheMiddleOfItsArea) {
    const Bitmap shown = win32::Centred(Bitmap(10, 10, opaqueRed), {30, 10}, 0x0000FF00U);
    EXPECT_EQ(shown.width, 30);
    EXPECT_EQ(shown.At(9, 5), opaqueGreen);
    EXPECT_EQ(shown.At(10, 5), opaqueRed);
    EXPECT_EQ(shown.At(19, 5), opaqueRed);
    EXPECT_EQ(shown.At(20, 5), opaqueGreen);
    EXPECT_EQ(win32::Centred(Bitmap(), {2, 2}, 0).pixels, Bitmap(2, 2, 0xFF000000U).pixels);
    EXPECT_TRUE(win32::Centred(Bitmap(10, 10, opaqueRed), {0, 0}, 0).IsEmpty());
}

}  // namespace
}  // namespace marlok::test
