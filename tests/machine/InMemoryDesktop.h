#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "platform/Desktop.h"
#include "tests/machine/FaultPlan.h"
#include "tests/machine/InMemoryClock.h"

namespace marlok::test {

/// A message box that the program has shown.
struct ShownMessage {
    std::string text;
    std::uint32_t style = 0;
    std::string title;
    int answer = 0;  ///< the button that was pressed
    std::vector<Desktop::ButtonCaption> captions = {};
};

/// A question for a line of text that the program has asked.
struct AskedText {
    std::string prompt;
    std::string title;
    int left = 0;
    int top = 0;
};

/// A screen nobody looks at: message boxes are answered from a script, user actions come from a queue.
class InMemoryDesktop : public Desktop {
 public:
    InMemoryDesktop(InMemoryClock& clock, FaultPlan& faults) : clock_(clock), faults_(faults) {}

    int ShowMessage(const std::string& text, std::uint32_t style, const std::string& title) override;
    int ShowMessageWithCaptions(const std::string& text, std::uint32_t style, const std::string& title,
                                const std::vector<ButtonCaption>& captions) override;
    [[nodiscard]] std::string AskText(const std::string& prompt, const std::string& title, int left, int top) override;
    void ShowHourglass(bool on) override;
    void PaintPending() override;

    /// Delivers the user actions that are queued, one after the other, then lets the whole time pass.
    /// @throws std::logic_error when it would wait for ever: no time limit, no action.
    void WaitForInput(std::uint32_t milliseconds) override;

    std::vector<TopLevelWindow> TopLevelWindows() override { return topLevelWindows; }
    void CloseWindow(std::uint64_t handle) override { closedWindows.push_back(handle); }
    void DiscardInput() override { ++discards_; }
    int ScrollBarWidth() override { return scrollBar; }
    int ScrollBarHeight() override { return scrollBar; }
    int ScreenWidth() override { return screenWidth_; }
    int ScreenHeight() override { return screenHeight_; }

    /// The next message box not answered yet gets this button (`button::`).
    void Answer(int pressed) { answers_.push_back(pressed); }

    /// The next question for a text not answered yet gets this one; without any it is cancelled.
    void AnswerText(std::string text) { texts_.push_back(std::move(text)); }
    [[nodiscard]] const std::vector<AskedText>& AskedTexts() const { return asked_; }

    /// Asked for every box before the script is; 0 leaves the answer to the script.
    void OnMessage(std::function<int(const ShownMessage&)> handler) { handler_ = std::move(handler); }

    /// Something the user does once the program waits for input.
    void Do(std::function<void()> action) { actions_.push_back(std::move(action)); }
    [[nodiscard]] std::size_t PendingActions() const { return actions_.size(); }

    void SetScreenSize(int width, int height);

    [[nodiscard]] const std::vector<ShownMessage>& Messages() const { return messages_; }

    /// Boxes that found no answer in the script; their first button was pressed.
    [[nodiscard]] int UnexpectedBoxes() const { return unexpectedBoxes_; }
    [[nodiscard]] std::size_t AnswersLeft() const { return answers_.size(); }

    [[nodiscard]] bool Hourglass() const { return hourglass_; }
    [[nodiscard]] int HourglassesShown() const { return hourglassesShown_; }
    [[nodiscard]] int Paints() const { return paints_; }
    /// Windows of all programs, as the test wants them; and those that the program has closed, in order.
    std::vector<TopLevelWindow> topLevelWindows;
    std::vector<std::uint64_t> closedWindows;

    [[nodiscard]] int Discards() const { return discards_; }

    static constexpr int scrollBar = 17 * 15;  ///< twips

    /// A new process: its pointer is normal, actions meant for the old one are gone. The records stay.
    void Restart();

 private:
    InMemoryClock& clock_;
    FaultPlan& faults_;
    std::deque<int> answers_;
    std::deque<std::function<void()>> actions_;
    std::function<int(const ShownMessage&)> handler_;
    std::vector<ShownMessage> messages_;
    std::deque<std::string> texts_;
    std::vector<AskedText> asked_;
    int unexpectedBoxes_ = 0;
    bool hourglass_ = false;
    int hourglassesShown_ = 0;
    int paints_ = 0;
    int discards_ = 0;
    int screenWidth_ = 1920 * 15;  // twips at 96 dots to the inch
    int screenHeight_ = 1080 * 15;
};

}  // namespace marlok::test
