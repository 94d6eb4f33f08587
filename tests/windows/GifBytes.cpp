#include "tests/windows/GifBytes.h"

#include <algorithm>

namespace marlok::test {

namespace {

// A palette of 128 colours makes every code of the packed pixels one byte, as long as the code book is emptied before
// it grows: pixels are written as they are.
constexpr int paletteSize = 128;
constexpr char codeBits = 7;
constexpr int emptyBook = 128;
constexpr int endOfPixels = 129;
constexpr std::size_t pixelsPerBook = 100;

void AddByte(std::string& bytes, int value) {
    bytes += static_cast<char>(value);
}

void AddWord(std::string& bytes, int value) {
    AddByte(bytes, value & 0xFF);
    AddByte(bytes, value >> 8);
}

void AddPalette(std::string& bytes) {
    const std::string colours("\0\0\0\xFF\0\0\0\xFF\0\0\0\xFF\xFF\xFF\xFF", 15);
    bytes += colours;
    bytes.append(std::size_t{3} * paletteSize - colours.size(), '\0');
}

std::string PackedPixels(const std::vector<int>& numbers) {
    std::string codes;
    for (std::size_t pixel = 0; pixel < numbers.size(); ++pixel) {
        if (pixel % pixelsPerBook == 0) {
            AddByte(codes, emptyBook);
        }
        AddByte(codes, numbers[pixel]);
    }
    AddByte(codes, endOfPixels);
    std::string blocks;
    constexpr std::size_t blockSize = 255;
    for (std::size_t start = 0; start < codes.size(); start += blockSize) {
        const std::string block = codes.substr(start, blockSize);
        AddByte(blocks, static_cast<int>(block.size()));
        blocks += block;
    }
    AddByte(blocks, 0);
    return blocks;
}

void AddFrame(std::string& bytes, const GifFrame& frame) {
    bytes += "\x21\xF9\x04";  // how the frame is shown
    AddByte(bytes, frame.disposal << 2 | 1);
    AddWord(bytes, frame.delay);
    AddByte(bytes, clear);
    AddByte(bytes, 0);
    bytes += ',';  // where it lies
    AddWord(bytes, frame.left);
    AddWord(bytes, frame.top);
    AddWord(bytes, frame.width);
    AddWord(bytes, frame.height);
    AddByte(bytes, 0);
    bytes += codeBits;
    bytes += PackedPixels(frame.numbers);
}

}  // namespace

GifFrame PlainFrame(int left, int top, int width, int height, GifColour colour) {
    const std::vector<int> numbers(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), colour);
    return {left, top, width, height, numbers, 10, 0};
}

std::string GifBytes(int width, int height, const std::vector<GifFrame>& frames) {
    std::string bytes = "GIF89a";
    AddWord(bytes, width);
    AddWord(bytes, height);
    AddByte(bytes, 0xF6);  // a palette of 128 colours follows
    AddWord(bytes, 0);
    AddPalette(bytes);
    bytes += std::string("\x21\xFF\x0BNETSCAPE2.0\x03\x01\0\0\0", 19);
    for (const GifFrame& frame : frames) {
        AddFrame(bytes, frame);
    }
    bytes += ';';
    return bytes;
}

}  // namespace marlok::test
