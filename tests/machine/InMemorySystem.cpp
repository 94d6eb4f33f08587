#include "tests/machine/InMemorySystem.h"

#include <algorithm>
#include <array>

#include "platform/SystemError.h"
#include "text/Text.h"

namespace marlok::test {
namespace {

/// Windows-1252 from 0x80 to 0x9F; the five bytes without a character stand for themselves.
constexpr std::array<char16_t, 32> upperControls = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

struct Sentence {
    SystemError code;
    const char* text;
};

constexpr std::array<Sentence, 14> sentences = {{
    {error::fileNotFound, "The system cannot find the file specified."},
    {error::pathNotFound, "The system cannot find the path specified."},
    {error::accessDenied, "Access is denied."},
    {error::notSameDevice, "The system cannot move the file to a different disk drive."},
    {error::writeProtected, "The media is write protected."},
    {error::notReady, "The device is not ready."},
    {error::sharingViolation, "The process cannot access the file because it is being used by another process."},
    {error::notSupported, "The request is not supported."},
    {error::badNetworkPath, "The network path was not found."},
    {error::fileExists, "The file exists."},
    {error::diskFull, "There is not enough space on the disk."},
    {error::invalidName, "The filename, directory name, or volume label syntax is incorrect."},
    {error::directoryNotEmpty, "The directory is not empty."},
    {error::ioDevice, "The request could not be performed because of an I/O device error."},
}};

}  // namespace

bool InMemorySystem::GetVersion(VersionRecord& record) {
    if (answersVersion) {
        record = version;
    }
    return answersVersion;
}

bool InMemorySystem::GetConnection(std::uint32_t& flags) {
    flags = connectionFlags;
    return connected;
}

std::string InMemorySystem::FromCodePage(std::string_view bytes) {
    std::u16string units;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        units += value >= 0x80 && value <= 0x9F ? upperControls[value - 0x80U] : static_cast<char16_t>(value);
    }
    return text::FromUtf16(units);
}

std::string InMemorySystem::ErrorText(std::uint32_t code) {
    const auto* found =
        std::find_if(sentences.begin(), sentences.end(), [&](const Sentence& s) { return s.code == code; });
    return found == sentences.end() ? "" : found->text;
}

void InMemorySystem::KeepAwake(bool on) {
    if (faults_.Alive()) {
        awakeBalance_ += on ? 1 : -1;
        timesKeptAwake_ += on ? 1 : 0;
    }
}

}  // namespace marlok::test
