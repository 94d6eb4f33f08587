#include "paths/Names.h"

#include <algorithm>
#include <array>

#include "paths/Path.h"
#include "text/Text.h"

namespace marlok {

namespace {

constexpr std::array<std::string_view, 6> plainDevices{"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};

/// What follows COM and LPT in the names of devices.
constexpr std::array<std::string_view, 13> deviceNumbers{"0", "1", "2", "3",      "4",      "5",     "6",
                                                         "7", "8", "9", "\u00B9", "\u00B2", "\u00B3"};

constexpr std::size_t longestAliasBase = 8;

bool IsNumberedDevice(std::string_view base) {
    const std::string_view word = base.substr(0, 3);
    const std::string_view number = base.substr(word.size());
    return (text::EqualIgnoringCase(word, "COM") || text::EqualIgnoringCase(word, "LPT")) &&
           std::ranges::find(deviceNumbers, number) != deviceNumbers.end();
}

}  // namespace

bool IsDeviceName(std::string_view name) {
    const std::string_view base = text::Trim(name.substr(0, name.find_first_of(".:")), " ");
    return IsNumberedDevice(base) || std::ranges::any_of(plainDevices, [base](std::string_view device) {
               return text::EqualIgnoringCase(device, base);
           });
}

bool IsAlteredName(std::string_view name) {
    return name.empty() || name.back() == '.' || name.back() == ' ' || IsDeviceName(name);
}

std::string_view WithoutTrailingDots(std::string_view name) {
    return name.substr(0, name.find_last_not_of(". ") + 1);
}

bool IsPlainName(std::string_view name) {
    return !WithoutTrailingDots(name).empty() && std::ranges::none_of(name, [](char c) {
        return static_cast<unsigned char>(c) < 0x20 ||
               std::string_view(":*?\"<>|/\\").find(c) != std::string_view::npos;
    });
}

bool IsPlainRelativePath(std::string_view path) {
    return std::ranges::all_of(Components(path), IsPlainName);
}

bool LooksLikeAlias(std::string_view name) {
    const std::string_view base = name.substr(0, name.find('.'));
    const std::size_t tilde = base.rfind('~');
    return base.size() <= longestAliasBase && tilde != std::string_view::npos && tilde > 0 && tilde + 1 < base.size() &&
           base.find_first_not_of("0123456789", tilde + 1) == std::string_view::npos;
}

bool HasWildcard(std::string_view path) {
    return PathFindFileName(path).find_first_of("*?") != std::string_view::npos;
}

}  // namespace marlok
