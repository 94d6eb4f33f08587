#include "tests/contract/ContractTest.h"

namespace marlok::test {

void ContractTest::Put(const std::string& path, const std::string& content) {
    std::unique_ptr<File> file;
    ASSERT_EQ(files.Open(path, OpenMode::replace, file), error::success) << path;
    ASSERT_EQ(file->Write(content), error::success) << path;
    ASSERT_EQ(file->Close(), error::success) << path;
}

std::string ContractTest::Content(const std::string& path) {
    std::unique_ptr<File> file;
    const SystemError opened = files.Open(path, OpenMode::read, file);
    EXPECT_EQ(opened, error::success) << path;
    std::string content;
    std::string bytes;
    while (file != nullptr) {
        const SystemError code = file->Read(bytes, 4096);
        EXPECT_EQ(code, error::success) << path;
        if (code != error::success || bytes.empty()) {
            break;
        }
        content += bytes;
    }
    return content;
}

std::set<std::string> ContractTest::Names(const std::string& pattern) {
    std::set<std::string> names;
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    for (SystemError code = files.FindFirst(pattern, search, entry); code == error::success;
         code = search->Next(entry)) {
        EXPECT_TRUE(names.insert(entry.name).second) << entry.name << " is listed twice";
    }
    return names;
}

std::set<std::string> ContractTest::NamesWithoutDots(const std::string& pattern) {
    std::set<std::string> names = Names(pattern);
    names.erase(".");
    names.erase("..");
    return names;
}

bool ContractTest::Exists(const std::string& path) {
    DirectoryEntry entry;
    return files.GetEntry(path, entry) == error::success;
}

DirectoryEntry ContractTest::EntryOf(const std::string& path) {
    DirectoryEntry entry;
    EXPECT_EQ(files.GetEntry(path, entry), error::success) << path;
    return entry;
}

void ContractTest::LetTimePass(std::uint32_t milliseconds) {
    const std::uint64_t end = machine.clock.TickCount() + milliseconds;
    while (machine.clock.TickCount() < end) {
        machine.desktop.WaitForInput(10);
    }
}

}  // namespace marlok::test
