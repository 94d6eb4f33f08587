// What it costs to add to a list of original paths that has 100,000 lines, against reading and writing that list.
//   list_scaling FOLDER
// Prints "NAME MILLISECONDS" a line, medians of five.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "engine/OriginalPathList.h"
#include "fileops/WholeFiles.h"
#include "win32/Win32Machine.h"

namespace {

constexpr int rounds = 5;
constexpr int listLines = 100'000;

std::string PathNumber(const char* tree, int number) {
    return "C:\\Data\\" + std::string(tree) + "\\folder" + std::to_string(number / 100) + "\\file" +
           std::to_string(number) + ".txt";
}

double Median(const std::function<void()>& prepare, const std::function<bool()>& work) {
    std::vector<double> milliseconds;
    for (int i = 0; i < rounds; ++i) {
        prepare();
        const auto start = std::chrono::steady_clock::now();
        if (!work()) {
            return -1;
        }
        const std::chrono::duration<double, std::milli> passed = std::chrono::steady_clock::now() - start;
        milliseconds.push_back(passed.count());
    }
    std::ranges::sort(milliseconds);
    return milliseconds[rounds / 2];
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        return 2;
    }
    marlok::win32::Win32Machine real;
    marlok::Machine& machine = real.machine();
    const std::string list = std::string(arguments[1]) + "\\list.txt";
    std::string text;
    for (int i = 0; i < listLines; ++i) {
        text += PathNumber("old", i) + "\r\n";
    }
    const auto save = [&] { return marlok::SaveWholeFile(machine.files, list, text) == marlok::error::success; };
    const auto prepare = [&] { save(); };
    std::string read;
    std::printf("read %.2f\n", Median(prepare, [&] {
                    return marlok::ReadWholeFile(machine.files, list, read) == marlok::error::success;
                }));
    std::printf("write %.2f\n", Median([] {}, save));
    for (const int added : {0, 1, 1'000, 10'000, 100'000}) {
        std::vector<std::string> originals;
        for (int i = 0; i < added; ++i) {
            originals.push_back(PathNumber("new", i));
        }
        std::printf("add_%d %.2f\n", added, Median(prepare, [&] {
                        return marlok::OriginalPathList(machine, list).Add(originals) == marlok::error::success;
                    }));
    }
    return 0;
}
