#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace marlok::bench {

/// Lists the tree below `folder` with nothing but the system's own calls. `onFolder(path)` for each folder before what
/// lies in it, `onFile(folder, name)` for each file; paths are below `folder`, with "\" in front.
template <class OnFolder, class OnFile>
void Walk(const std::wstring& folder, const std::wstring& below, OnFolder& onFolder, OnFile& onFile) {
    onFolder(below);
    WIN32_FIND_DATAW data{};
    const HANDLE search = FindFirstFileExW((folder + below + L"\\*").c_str(), FindExInfoBasic, &data,
                                           FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    std::vector<std::wstring> folders;
    do {
        const std::wstring name = data.cFileName;
        if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
            onFile(below, name);
        } else if (name != L"." && name != L"..") {
            folders.push_back(below + L"\\" + name);
        }
    } while (FindNextFileW(search, &data) != 0);
    FindClose(search);
    for (const std::wstring& inner : folders) {
        Walk(folder, inner, onFolder, onFile);
    }
}

}  // namespace marlok::bench
