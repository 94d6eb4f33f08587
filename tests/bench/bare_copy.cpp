// Copies a tree with nothing but the system's own calls: the least that any program could do.
//   bare_copy SOURCE TARGET

#include <windows.h>

#include <cstdio>

#include "Walk.h"

int wmain(int count, wchar_t** arguments) {
    if (count != 3) {
        return 2;
    }
    const std::wstring source = arguments[1];
    const std::wstring target = arguments[2];
    int failed = 0;
    auto onFolder = [&](const std::wstring& below) { CreateDirectoryW((target + below).c_str(), nullptr); };
    auto onFile = [&](const std::wstring& below, const std::wstring& name) {
        const std::wstring path = below + L"\\" + name;
        BOOL cancel = FALSE;
        failed += CopyFileExW((source + path).c_str(), (target + path).c_str(), nullptr, nullptr, &cancel, 0) == 0;
    };
    marlok::bench::Walk(source, L"", onFolder, onFile);
    std::printf("failed %d\n", failed);
    return failed == 0 ? 0 : 1;
}
