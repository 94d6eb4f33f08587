#include "paths/FileAddress.h"

namespace marlok {

namespace {

bool StandsForItself(char character) {
    const bool letter = (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
    const bool digit = character >= '0' && character <= '9';
    return letter || digit || std::string_view("-._~/:").find(character) != std::string_view::npos;
}

std::string Escaped(char character) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(character);
    return {'%', digits[byte >> 4U], digits[byte & 0xFU]};
}

}  // namespace

std::string FileAddress(std::string_view path) {
    const bool share = path.starts_with(R"(\\)");
    std::string address = share ? "file:" : "file:///";
    for (const char character : path) {
        const char turned = character == '\\' ? '/' : character;
        address += StandsForItself(turned) ? std::string(1, turned) : Escaped(turned);
    }
    return address;
}

}  // namespace marlok
