// Lists trees with nothing but the system's own calls: the least that finding out about changes could cost.
//   bare_list FOLDER...

#include <windows.h>

#include <cstdio>

#include "Walk.h"

int wmain(int count, wchar_t** arguments) {
    int files = 0;
    auto onFolder = [](const std::wstring&) {};
    auto onFile = [&](const std::wstring&, const std::wstring&) { ++files; };
    for (int i = 1; i < count; ++i) {
        marlok::bench::Walk(arguments[i], L"", onFolder, onFile);
    }
    std::printf("files %d\n", files);
    return 0;
}
