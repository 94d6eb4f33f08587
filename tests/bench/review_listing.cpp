// What it costs to list the saved files of a location on the tab "Review Saved", against a bare listing of the same
// tree that fills a bare list box with the same strings.
//   review_listing FOLDER
// Prints "NAME MILLISECONDS" a line, medians of five, and how long a list of a million lines takes.

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Walk.h"
#include "tests/machine/InMemoryMachine.h"
#include "tests/machine/Program.h"
#include "ui/frmSSTab.h"
#include "win32/Win32Machine.h"
#include "win32/machine/Wide.h"

namespace {

constexpr int rounds = 5;
constexpr int manyLines = 1'000'000;

double Milliseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// A window with nothing but a list box in it, as large as the program's.
class BareList {
 public:
    BareList() {
        window_ = CreateWindowExW(0, L"STATIC", L"bare", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 780, 520, nullptr,
                                  nullptr, GetModuleHandleW(nullptr), nullptr);
        list_ = CreateWindowExW(WS_EX_CLIENTEDGE, L"LISTBOX", L"", WS_CHILD | WS_VISIBLE | WS_VSCROLL | LBS_EXTENDEDSEL,
                                0, 0, 580, 300, window_, nullptr, GetModuleHandleW(nullptr), nullptr);
    }
    BareList(const BareList&) = delete;
    BareList& operator=(const BareList&) = delete;
    ~BareList() { DestroyWindow(window_); }

    int Fill(const std::wstring& folder) {
        SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
        auto onFolder = [](const std::wstring&) {};
        auto onFile = [&](const std::wstring& below, const std::wstring& name) {
            SendMessageW(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>((folder + below + L"\\" + name).c_str()));
        };
        marlok::bench::Walk(folder, L"", onFolder, onFile);
        SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
        RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        return static_cast<int>(SendMessageW(list_, LB_GETCOUNT, 0, 0));
    }

 private:
    HWND window_ = nullptr;
    HWND list_ = nullptr;
};

/// The program's main window on the real screen and the real disk, with settings in memory.
class Review {
 public:
    explicit Review(const std::string& location)
        : machine_{memory_.registry, real_.machine().files,   real_.machine().drives,
                   memory_.shell,    real_.machine().desktop, real_.machine().clock,
                   memory_.process,  memory_.system,          memory_.browser},
          program_(machine_, &real_.views()) {
        marlok::BackupSettings settings = program_.session.Configuration();
        // The window would show what is missing: nothing to measure then.
        static_cast<void>(settings.SaveLocations({location}));
        static_cast<void>(settings.SaveSources(marlok::Location(location), {"C:\\Data"}));
        window_ = &program_.windows.Load<marlok::ui::frmSSTab>(program_.session);
        window_->Show();
        window_->SSTab1.SetTab(marlok::ui::tab::reviewSaved);
        window_->Refresh();
    }
    Review(const Review&) = delete;
    Review& operator=(const Review&) = delete;
    ~Review() { program_.windows.UnloadAll(); }

    int Fill() {
        window_->List5_Click();
        window_->Command13_Click();
        window_->Refresh();
        return window_->List6.ListCount();
    }

    double FillMany() {
        window_->List6.Clear();
        window_->Refresh();
        return Milliseconds([this] {
            for (int i = 0; i < manyLines; ++i) {
                window_->List6.AddItem("E:\\Backup\\folder" + std::to_string(i / 100) + "\\file" + std::to_string(i));
            }
            window_->Refresh();
        });
    }

 private:
    marlok::test::InMemoryMachine memory_;
    marlok::win32::Win32Machine real_;
    marlok::Machine machine_;
    marlok::test::Program program_;
    marlok::ui::frmSSTab* window_ = nullptr;
};

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        return 2;
    }
    const std::string folder = arguments[1];
    Review review(folder);
    std::vector<double> ours;
    std::vector<double> bare;
    int found = 0;
    int wanted = 0;
    for (int i = 0; i < rounds; ++i) {
        ours.push_back(Milliseconds([&] { found = review.Fill(); }));
        BareList list;
        bare.push_back(Milliseconds([&] { wanted = list.Fill(marlok::win32::ToWide(folder)); }));
    }
    if (found != wanted) {
        std::fprintf(stderr, "%d files listed, %d are there\n", found, wanted);
        return 1;
    }
    std::printf("files %d\nours %.2f\nbare %.2f\nmillion %.2f\n", found, Median(ours), Median(bare), review.FillMany());
    return 0;
}
