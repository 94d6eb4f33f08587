#include "tests/windows/tools/Console.h"

#include <windows.h>

#include <cstdio>

namespace marlok::test {

void Say(const std::wstring& line) {
    std::printf("%s\n", ToUtf8(line).c_str());
    std::fflush(stdout);
}

void Complain(const std::string& what) {
    std::fprintf(stderr, "e2e_tool: %s\n", what.c_str());
    std::fflush(stderr);
}

std::string ToUtf8(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

std::wstring ToWide(const std::string& utf8) {
    const int length = static_cast<int>(utf8.size());
    const int size = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, text.data(), size);
    return text;
}

std::wstring OnOneLine(const std::wstring& text) {
    std::wstring line;
    for (const wchar_t character : text) {
        switch (character) {
            case L'\r':
                line += L"\\r";
                break;
            case L'\n':
                line += L"\\n";
                break;
            case L'\t':
                line += L"\\t";
                break;
            case L'\\':
                line += L"\\\\";
                break;
            default:
                line += character;
        }
    }
    return line;
}

}  // namespace marlok::test
