// What the end-to-end tests need of Windows and cannot have from outside it: eyes and hands. It sees what is on the
// screen, and uses it with real mouse and keyboard input. Windows and controls are named as Shown.h says; SECONDS is
// how long it waits for what it needs. Lines of lists are counted from 0.
//
//   windows                              the titles of all visible top-level windows, one a line
//   places                               a line for each visible top-level window, the topmost first, with tabs
//   between:
//                                        left, top, width, height (pixels of the screen), title
//   controls WINDOW SECONDS              a line for each visible control, with tabs between: class, number, left, top,
//                                        width, height (pixels, from the client area's corner), "enabled" or
//                                        "disabled", text
//   lines WINDOW LIST SECONDS            the lines of a list or combo box, behind "*" when selected, else a blank
//   count WINDOW LIST SECONDS            how many lines it has
//   select WINDOW LIST LINE,... SECONDS  selects these lines and no others, clicking them
//   open WINDOW LIST LINE SECONDS        clicks a line twice
//   choose WINDOW COMBO PREFIX SECONDS   chooses the first line of a combo box that starts with that
//   tab WINDOW CAPTION SECONDS           brings a tab to the front, clicking it
//   tabs WINDOW SECONDS                  the captions of the tabs, behind "*" for the one in front, else a blank
//   click WINDOW BUTTON SECONDS          clicks a button
//   check WINDOW BOX SECONDS             clicks a check box, then tells its state as below
//   state WINDOW BUTTON SECONDS          tells "checked", "unchecked" or "greyed", then "enabled" or "disabled"
//   answer WINDOW TEXT BUTTON SECONDS    waits for a dialog that shows the text, tells its texts ("text ...") and its
//                                        buttons ("button ..."), clicks the button and waits until the dialog has gone
//   type WINDOW TEXT SECONDS             replaces the text of the edit field that has the keyboard or is the only one
//   key WINDOW KEYS SECONDS              presses keys together, such as "Ctrl+Tab", in that window
//   paint WINDOW DURATION SECONDS        for so many seconds makes the window paint itself again and again; tells how
//                                        often it did, the longest time that this took it, and the longest that a
//                                        message did, both in milliseconds
//   close WINDOW SECONDS                 asks a window to close
//   hold PATH                            keeps a file open for itself alone until standard input ends; says "held"
//   attributes PATH [WORD]               sets the attribute word when there is one, then tells it
//   plug LETTER KIND FOLDER [DEVICE]     makes a folder of the machine that Wine runs on a drive, "fixed" or
//                                        "removable", in place of what was there (see Volumes.h)
//   unplug LETTER                        takes a drive away
//   volume ROOT                          tells the volume's file system, serial number, kind of drive and label, with
//                                        tabs between them
//   serve                                takes such calls from standard input, one a line, with tabs between the words;
//                                        after what each one says comes a line with a bell, its exit code, a blank and
//                                        the reason
//
// The exit code is 0 when it was done, 1 when not (the reason is on standard error), 2 for a wrong call.

#include <windows.h>

#include <string>
#include <vector>

#include "tests/windows/tools/Commands.h"
#include "tests/windows/tools/Console.h"

// Behind windows.h, whose types it uses.
#include <shellapi.h>

int main() {
    // Places in real pixels, at any resolution.
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
    int count = 0;
    wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
    if (words == nullptr) {
        marlok::test::Complain("no command line");
        return 2;
    }
    const std::vector<std::wstring> list(words + 1, words + count);
    LocalFree(words);
    return marlok::test::Run(list);
}
