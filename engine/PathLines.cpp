#include "engine/PathLines.h"

#include <utility>

#include "fileops/WholeFiles.h"
#include "fileops/txtFunctions.h"
#include "text/Surrogates.h"
#include "text/Text.h"

namespace marlok {

namespace {

constexpr std::string_view littleEndianMark = "\xFF\xFE";
constexpr std::string_view bigEndianMark = "\xFE\xFF";

/// UTF-16 without its byte order mark, given by the place of the low byte of a unit.
std::string FromUtf16Bytes(std::string_view bytes, std::size_t low) {
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (std::size_t at = 0; at < bytes.size(); at += 2) {
        const auto lowByte = static_cast<unsigned char>(bytes[at + low]);
        const auto highByte = static_cast<unsigned char>(bytes[at + 1 - low]);
        units += static_cast<char16_t>(static_cast<unsigned>(lowByte) | (static_cast<unsigned>(highByte) << 8U));
    }
    return text::FromUtf16(units);
}

std::string WithLineEnds(std::string_view text) {
    std::string lines;
    lines.reserve(text.size() + text.size() / 32);
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\r' && text[at] != '\n') {
            lines += text[at];
            continue;
        }
        lines += "\r\n";
        if (text.substr(at).starts_with("\r\n")) {
            ++at;
        }
    }
    return lines;
}

}  // namespace

SystemError DecodePathLines(SystemInfo& system, std::string bytes, std::string& text) {
    text.clear();
    std::string plain;
    if (bytes.starts_with(littleEndianMark) || bytes.starts_with(bigEndianMark)) {
        if (bytes.size() % 2 != 0) {
            return error::invalidData;
        }
        plain = FromUtf16Bytes(std::string_view(bytes).substr(2), bytes.starts_with(littleEndianMark) ? 0 : 1);
    } else {
        plain = DecodeText(system, std::move(bytes));
    }
    if (plain.find('\0') != std::string::npos) {
        return error::invalidData;
    }
    text = text::UnescapeSurrogates(WithLineEnds(plain));
    return error::success;
}

SystemError ReadPathLines(FileSystem& files, SystemInfo& system, const std::string& path, std::string& text) {
    std::string bytes;
    text.clear();
    const SystemError code = ReadWholeFile(files, path, bytes);
    return code == error::success ? DecodePathLines(system, std::move(bytes), text) : code;
}

std::string EncodePathLines(std::string_view text) {
    return text::EscapeSurrogates(text);
}

}  // namespace marlok
