#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <thread>

namespace marlok::test {

/// A user on a thread of his own, who waits until the dialog of that title is on the screen and active, looks at it and
/// does something with it. Fails the test when it never comes: an answer that nobody asked for is a mistake.
class DialogUser {
 public:
    /// Must end the dialog; gets its window.
    using Act = std::function<void(HWND dialog)>;

    DialogUser(std::string title, Act act);
    /// Presses the button of that number.
    DialogUser(const std::string& title, int button);
    DialogUser(const DialogUser&) = delete;
    DialogUser& operator=(const DialogUser&) = delete;
    ~DialogUser();

    /// The texts in the dialog before the user did anything, each followed by "|". Waits for him.
    [[nodiscard]] const std::string& SeenText();

 private:
    void Run();
    void Join();

    std::string title_;
    Act act_;
    std::string seen_;
    bool came_ = false;
    std::thread thread_;  ///< behind what it uses
};

/// Presses a button of a dialog.
void Press(HWND dialog, int button);

}  // namespace marlok::test
