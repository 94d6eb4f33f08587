// Loads a library by its name, as a program does that takes no care: load_by_name NAME. The exit code is 0 when there
// is such a library.

#include <windows.h>

int main(int count, char** words) {
    return count == 2 && LoadLibraryA(words[1]) != nullptr ? 0 : 1;
}
