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
    std::uint32_t timeLimit = 0;  ///< milliseconds after which it closes by itself; 0 for never
    bool ranOut = false;          ///< nobody answered within that time
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
    /// Answered as any other box; by AnswerNothing it runs out of time.
    int ShowMessageFor(const std::string& text, std::uint32_t style, const std::string& title,
                       std::uint32_t milliseconds) override;
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
    /// Drops what HasDone has queued.
    void DiscardInput() override;
    void BlockShutdown(const std::string& reason) override;
    void AllowShutdown() override;
    [[nodiscard]] bool SessionEnding() override;
    int ScrollBarWidth() override { return scrollBar; }
    int ScrollBarHeight() override { return scrollBar; }
    int ScreenWidth() override { return screenWidth_; }
    int ScreenHeight() override { return screenHeight_; }

    /// The next message box not answered yet gets this button (`button::`).
    void Answer(int pressed) { answers_.push_back(pressed); }

    /// Nobody answers the next message box. One that closes by itself does so when its time is over.
    void AnswerNothing() { answers_.push_back(nobody); }

    /// The next question for a text not answered yet gets this one; without any it is cancelled.
    void AnswerText(std::string text) { texts_.push_back(std::move(text)); }
    [[nodiscard]] const std::vector<AskedText>& AskedTexts() const { return asked_; }

    /// Asked for every box before the script is; 0 leaves the answer to the script.
    void OnMessage(std::function<int(const ShownMessage&)> handler) { handler_ = std::move(handler); }

    /// Something the user does once the program waits for input.
    void Do(std::function<void()> action) { actions_.push_back(std::move(action)); }
    /// Something the user has done already that no handler has seen yet. Delivered as those are, unless it is
    /// discarded.
    void HasDone(std::function<void()> action) { done_.push_back(std::move(action)); }

    /// The system asks whether the session may end. True when the program lets it, so that it ends.
    bool EndSession();

    /// The end of the session is called off again.
    void CallOffSessionEnd() { sessionEnding_ = false; }

    /// What the system shows as the reason why a shutdown is held up; "" when none is.
    [[nodiscard]] const std::string& ShutdownReason() const { return shutdownReason_; }

    /// How often a shutdown was held up.
    [[nodiscard]] int ShutdownBlocks() const { return shutdownBlocks_; }

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
    static constexpr int nobody = -1;  ///< in place of a button

    [[nodiscard]] int Show(ShownMessage message);

    InMemoryClock& clock_;
    FaultPlan& faults_;
    std::deque<int> answers_;
    std::deque<std::function<void()>> actions_;
    std::deque<std::function<void()>> done_;
    std::string shutdownReason_;
    int shutdownBlocks_ = 0;
    bool sessionEnding_ = false;
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
