#include <windows.h>

#include <atomic>
#include <vector>

#include "tests/contract/ContractMachine.h"
#include "tests/windows/Waiting.h"
#include "tests/windows/WineSide.h"
#include "win32/Win32Machine.h"
#include "win32/machine/Handles.h"
#include "win32/machine/Wide.h"
#include "win32/machine/WidePath.h"

namespace marlok::test {

namespace {

/// Below it every test has a key of its own.
constexpr const wchar_t* keyRoot = L"Software\\Marlok Contract Test";

/// Differs between tests and between runs at the same time.
std::string UniqueName() {
    static std::atomic<int> count = 0;
    return "marlok-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++count);
}

std::string TempFolder() {
    std::wstring folder(MAX_PATH + 1, L'\0');
    folder.resize(GetTempPathW(static_cast<DWORD>(folder.size()), folder.data()));
    while (!folder.empty() && folder.back() == L'\\') {
        folder.pop_back();
    }
    return win32::FromWide(folder);
}

std::wstring Quoted(const std::string& text) {
    return L"\"" + win32::ToWide(text) + L"\"";
}

class HeldHandle : public ContractMachine::Held {
 public:
    explicit HeldHandle(win32::FileHandle handle) : handle_(std::move(handle)) {}

 private:
    win32::FileHandle handle_;
};

/// A view of a file in memory; file and mapping are closed by now.
class HeldView : public ContractMachine::Held {
 public:
    explicit HeldView(const void* view) : view_(view) {}
    HeldView(const HeldView&) = delete;
    HeldView& operator=(const HeldView&) = delete;
    ~HeldView() override { UnmapViewOfFile(view_); }

 private:
    const void* view_;
};

std::unique_ptr<ContractMachine::Held> MapFile(const std::string& path, DWORD access, DWORD protection) {
    const win32::FileHandle file(CreateFileW(win32::ToWide(path).c_str(), access,
                                             FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                             OPEN_EXISTING, 0, nullptr));
    const win32::KernelHandle mapping(CreateFileMappingW(file.Get(), nullptr, protection, 0, 0, nullptr));
    const void* view = mapping.IsValid() ? MapViewOfFile(mapping.Get(), FILE_MAP_READ, 0, 0, 0) : nullptr;
    return view != nullptr ? std::make_unique<HeldView>(view) : nullptr;
}

class RealContractMachine : public ContractMachine {
 public:
    RealContractMachine();
    RealContractMachine(const RealContractMachine&) = delete;
    RealContractMachine& operator=(const RealContractMachine&) = delete;
    ~RealContractMachine() override;

    Machine& machine() override { return real_.machine(); }
    std::string ScratchFolder() override { return folder_; }
    std::string ScratchKey() override { return key_; }
    bool MakeFolderLink(const std::string& path, const std::string& target) override;
    bool MakeFileLink(const std::string& path, const std::string& target) override;
    bool IsWine() override { return test::IsWine(); }
    std::unique_ptr<Held> Hold(const std::string& path, Use use) override;
    std::unique_ptr<Held> Map(const std::string& path) override;
    void MakeProgram(const std::string& path) override;
    std::unique_ptr<Held> Run(const std::string& path) override;
    std::string OtherVolume() override;
    void EnterFolder(const std::string& path) override;
    bool CanRemoveLinks() override { return !IsWine(); }
    bool KeepsOddNames() override;
    bool KeepsReadOnlyFiles() override;
    std::size_t LongestPath() override;

 private:
    [[nodiscard]] bool Exists(const std::string& path);
    void RemoveTree(const std::string& folder);
    void RemoveOne(const std::string& path, const DirectoryEntry& entry);
    void RemoveLink(const std::string& path);

    win32::Win32Machine real_;
    std::string folder_;
    std::string otherFolder_;  ///< on another volume; "" until it is asked for
    std::string key_;
    std::wstring folderBefore_;  ///< the current folder as it was; "" while it is
};

RealContractMachine::RealContractMachine() {
    const std::string name = UniqueName();
    folder_ = TempFolder() + "\\" + name;
    key_ = win32::FromWide(keyRoot) + "\\" + name;
    if (machine().files.CreateFolder(folder_) != error::success) {
        throw std::runtime_error("no scratch folder can be made: " + folder_);
    }
}

RealContractMachine::~RealContractMachine() {
    if (!folderBefore_.empty()) {
        SetCurrentDirectoryW(folderBefore_.c_str());
    }
    RemoveTree(folder_);
    if (!otherFolder_.empty()) {
        RemoveTree(otherFolder_);
    }
    // What is not there need not be removed, and the root stays while another run has keys below it.
    static_cast<void>(RegDeleteTreeW(HKEY_CURRENT_USER, win32::ToWide(key_).c_str()));
    static_cast<void>(RegDeleteKeyW(HKEY_CURRENT_USER, win32::ToWide(key_).c_str()));
    DWORD below = 1;
    HKEY root = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, keyRoot, 0, KEY_READ, &root) == ERROR_SUCCESS) {
        RegQueryInfoKeyW(root, nullptr, nullptr, nullptr, &below, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                         nullptr);
        RegCloseKey(root);
    }
    if (below == 0) {
        static_cast<void>(RegDeleteKeyW(HKEY_CURRENT_USER, keyRoot));
    }
}

bool RealContractMachine::Exists(const std::string& path) {
    DirectoryEntry entry;
    return machine().files.GetEntry(path, entry) == error::success;
}

bool RealContractMachine::MakeFolderLink(const std::string& path, const std::string& target) {
    if (!IsWine()) {
        constexpr DWORD unprivileged = 0x2;  // allowed to everybody where the developer mode is on
        return CreateSymbolicLinkW(win32::ToWide(path).c_str(), win32::ToWide(target).c_str(),
                                   SYMBOLIC_LINK_FLAG_DIRECTORY | unprivileged) != 0;
    }
    const std::string hostPath = HostPath(win32::ToWide(path));
    const std::string hostTarget = HostPath(win32::ToWide(target));
    return !hostPath.empty() && !hostTarget.empty() &&
           StartOnHost(L"ln", L"-s " + Quoted(hostTarget) + L" " + Quoted(hostPath)) &&
           WaitUntil([&] { return Exists(path); });
}

bool RealContractMachine::MakeFileLink(const std::string& path, const std::string& target) {
    if (!IsWine()) {
        constexpr DWORD unprivileged = 0x2;
        return CreateSymbolicLinkW(win32::ToWide(path).c_str(), win32::ToWide(target).c_str(), unprivileged) != 0;
    }
    // Wine does not show a link that leads nowhere, so the host says when it is made, by a file beside it.
    const std::string sign = path + ".made";
    const auto onHost = [](const std::string& name) {
        return L"'" + win32::ToWide(HostPath(win32::ToWide(name))) + L"'";
    };
    const std::wstring script = L"ln -s " + onHost(target) + L" " + onHost(path) + L" && : > " + onHost(sign);
    return StartOnHost(L"sh", L"-c \"" + script + L"\"") && WaitUntil([&] { return Exists(sign); }) &&
           machine().files.Delete(sign) == error::success;
}

std::unique_ptr<ContractMachine::Held> RealContractMachine::Hold(const std::string& path, Use use) {
    const DWORD wanted = ((use.access & access::read) != 0 ? GENERIC_READ : 0) |
                         ((use.access & access::write) != 0 ? GENERIC_WRITE : 0) |
                         ((use.access & access::remove) != 0 ? DELETE : 0);
    static_assert(access::read == FILE_SHARE_READ && access::write == FILE_SHARE_WRITE &&
                  access::remove == FILE_SHARE_DELETE);
    win32::FileHandle handle(CreateFileW(win32::ToWide(path).c_str(), wanted, use.share, nullptr, OPEN_EXISTING,
                                         FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return handle.IsValid() ? std::make_unique<HeldHandle>(std::move(handle)) : nullptr;
}

std::unique_ptr<ContractMachine::Held> RealContractMachine::Map(const std::string& path) {
    return MapFile(path, GENERIC_READ | GENERIC_WRITE, PAGE_READWRITE);
}

void RealContractMachine::MakeProgram(const std::string& path) {
    const std::string folder = machine().process.ProgramFolder();
    const std::string above = folder.substr(0, folder.rfind('\\'));
    const std::string program = (Exists(folder + "\\Restart.exe") ? folder : above) + "\\Restart.exe";
    if (machine().files.Copy(program, path, copyflag::none, {}) != error::success) {
        throw std::runtime_error("no program can be put at " + path);
    }
}

std::unique_ptr<ContractMachine::Held> RealContractMachine::Run(const std::string& path) {
    return MapFile(path, GENERIC_READ, PAGE_READONLY | SEC_IMAGE);
}

std::string RealContractMachine::OtherVolume() {
    if (otherFolder_.empty()) {
        // The host's file system in memory is another volume than the one of the temporary folder.
        wchar_t named[MAX_PATH] = {};
        GetEnvironmentVariableW(L"MARLOK_OTHER_VOLUME", named, MAX_PATH);
        const std::string root = named[0] != L'\0' ? win32::FromWide(named) : IsWine() ? R"(Z:\dev\shm)" : "";
        otherFolder_ = root.empty() ? "" : root + "\\" + UniqueName();
        if (!root.empty() && machine().files.CreateFolder(otherFolder_) != error::success) {
            throw std::runtime_error("no folder can be made at " + otherFolder_);
        }
    }
    return otherFolder_;
}

void RealContractMachine::EnterFolder(const std::string& path) {
    if (folderBefore_.empty()) {
        folderBefore_ = win32::ToWide(machine().process.CurrentFolder());
    }
    SetCurrentDirectoryW(win32::ToWide(path).c_str());
}

bool RealContractMachine::KeepsOddNames() {
    // Asked of the disk itself, past the code under test: a name with a lone surrogate and a trailing blank.
    const std::wstring name = L"odd\xD83D ";
    const std::wstring folder = L"\\\\?\\" + win32::ToWide(folder_) + L"\\odd-names";
    CreateDirectoryW(folder.c_str(), nullptr);
    CloseHandle(CreateFileW((folder + L"\\" + name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    bool kept = false;
    WIN32_FIND_DATAW data{};
    HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &data);
    for (BOOL more = search != INVALID_HANDLE_VALUE; more != 0; more = FindNextFileW(search, &data)) {
        kept = kept || name == data.cFileName;
    }
    FindClose(search);
    RemoveTree(folder_ + "\\odd-names");
    return kept;
}

bool RealContractMachine::KeepsReadOnlyFiles() {
    const std::wstring path = win32::ToWide(folder_) + L"\\read-only";
    CloseHandle(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_READONLY, nullptr));
    HANDLE opened = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    const bool kept = opened == INVALID_HANDLE_VALUE;
    if (!kept) {
        CloseHandle(opened);
    }
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(path.c_str());
    return kept;
}

std::size_t RealContractMachine::LongestPath() {
    if (!IsWine()) {
        return 32700;  // what the kernel's own prefix leaves of 32,767
    }
    constexpr std::size_t hostLimit = 4095;
    const std::size_t hostFolder = HostPath(win32::ToWide(folder_)).size();
    return hostLimit - hostFolder + folder_.size();
}

void RealContractMachine::RemoveTree(const std::string& folder) {
    std::vector<DirectoryEntry> entries;
    {
        std::unique_ptr<FolderSearch> search;
        DirectoryEntry entry;
        for (SystemError code = machine().files.FindFirst(folder + "\\*", search, entry); code == error::success;
             code = search->Next(entry)) {
            if (entry.name != "." && entry.name != "..") {
                entries.push_back(entry);
            }
        }
    }
    for (const DirectoryEntry& entry : entries) {
        RemoveOne(folder + "\\" + entry.name, entry);
    }
    static_cast<void>(machine().files.RemoveFolder(folder));  // a rest in the temporary folder fails no test
}

void RealContractMachine::RemoveOne(const std::string& path, const DirectoryEntry& entry) {
    if (entry.IsLink()) {
        RemoveLink(path);
    } else if (entry.IsFolder()) {
        RemoveTree(path);
    } else {
        static_cast<void>(machine().files.SetAttributes(path, attribute::normal));
        static_cast<void>(machine().files.Delete(path));
    }
}

void RealContractMachine::RemoveLink(const std::string& path) {
    if (machine().files.RemoveLink(path) == error::success) {
        return;
    }
    if (StartOnHost(L"rm", Quoted(HostPath(win32::ToWide(path))))) {
        static_cast<void>(WaitUntil([&] { return !Exists(path); }));
    }
}

}  // namespace

std::unique_ptr<ContractMachine> MakeContractMachine() {
    return std::make_unique<RealContractMachine>();
}

}  // namespace marlok::test
