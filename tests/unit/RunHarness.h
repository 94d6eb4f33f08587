#pragma once

#include <string>
#include <vector>

#include "engine/BackupRun.h"
#include "forms/Form.h"
#include "tests/unit/ProgramFixture.h"

namespace marlok::test {

/// A run window with nothing but working storage: lets a test run locations one by one and look at the report.
class RunHarness : private RunWindow {
 public:
    explicit RunHarness(InMemoryMachine& on)
        : program(on.machine(), nullptr), form(program.windows, "Run", ""), files_(on.files) {
        program.gSettings = std::make_unique<CRegSettings>(on.registry, on.system);
    }

    /// Backs up these locations in a run of their own and ends it.
    RunReport Backup(const Lines& locations) {
        BackupRun run(program, {List1, List2, List3, Text1, Text2}, TreeView1, *this);
        for (const std::string& location : locations) {
            run.BackupLocation(location);
        }
        run.Finish();
        return run.Report();
    }

    Program program;
    forms::Form form;
    forms::ListBox List1{form, "List1"};
    forms::ListBox List2{form, "List2"};
    forms::ListBox List3{form, "List3"};
    forms::TextBox Text1{form, "Text1"};
    forms::TextBox Text2{form, "Text2"};
    forms::TreeView TreeView1{form, "TreeView1"};

    Lines statuses;                 ///< what was shown to the user, in order
    std::vector<int> folderCounts;  ///< likewise

 private:
    SystemError CopyFile(const std::string& source, const std::string& destination, std::uint32_t flags) override {
        return files_.Copy(source, destination, flags, nullptr);
    }
    void ShowStatus(const std::string& text) override { statuses.push_back(text); }
    void ShowFolderCount(int count) override { folderCounts.push_back(count); }

    FileSystem& files_;
};

}  // namespace marlok::test
