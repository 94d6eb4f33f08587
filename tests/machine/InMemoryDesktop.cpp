#include "tests/machine/InMemoryDesktop.h"

#include <limits>
#include <stdexcept>
#include <utility>

namespace marlok::test {
int InMemoryDesktop::ShowMessage(const std::string& text, std::uint32_t style, const std::string& title) {
    return Show({text, style, title});
}

int InMemoryDesktop::ShowMessageFor(const std::string& text, std::uint32_t style, const std::string& title,
                                    std::uint32_t milliseconds) {
    return Show({text, style, title, 0, {}, milliseconds});
}

int InMemoryDesktop::ShowMessageWithCaptions(const std::string& text, std::uint32_t style, const std::string& title,
                                             const std::vector<ButtonCaption>& captions) {
    return Show({text, style, title, 0, captions});
}

int InMemoryDesktop::Show(ShownMessage message) {
    if (!faults_.Alive()) {
        return DefaultButton(message.style);
    }
    message.answer = handler_ ? handler_(message) : 0;
    if (message.answer == 0 && !answers_.empty()) {
        message.answer = answers_.front();
        answers_.pop_front();
    }
    if (message.answer == nobody && message.timeLimit == 0) {
        throw std::logic_error("nobody answers a message box that waits for ever: " + message.text);
    }
    if (message.answer == nobody) {
        clock_.Advance(message.timeLimit);
        message.answer = DefaultButton(message.style);
        message.ranOut = true;
    }
    if (message.answer == 0) {
        message.answer = DefaultButton(message.style);
        ++unexpectedBoxes_;
    }
    messages_.push_back(message);
    return message.answer;
}

std::string InMemoryDesktop::AskText(const std::string& prompt, const std::string& title, int left, int top) {
    if (!faults_.Alive()) {
        return "";
    }
    asked_.push_back({prompt, title, left, top});
    if (texts_.empty()) {
        return "";
    }
    std::string answer = std::move(texts_.front());
    texts_.pop_front();
    return answer;
}

void InMemoryDesktop::ShowHourglass(bool on) {
    if (faults_.Alive()) {
        hourglass_ = on;
        hourglassesShown_ += on ? 1 : 0;
    }
}

void InMemoryDesktop::PaintPending() {
    if (faults_.Alive()) {
        ++paints_;
    }
}

void InMemoryDesktop::WaitForInput(std::uint32_t milliseconds) {
    if (!faults_.Alive()) {
        return;
    }
    const bool forEver = milliseconds == std::numeric_limits<std::uint32_t>::max();
    // What the user did before the wait comes before what he does in it.
    actions_.insert(actions_.begin(), done_.begin(), done_.end());
    done_.clear();
    if (forEver && actions_.empty()) {
        throw std::logic_error("the program waits for input and the test has no user action left");
    }
    // What an action queues is delivered by the next wait.
    for (std::size_t left = actions_.size(); left > 0 && !actions_.empty(); --left) {
        const std::function<void()> action = std::move(actions_.front());
        actions_.pop_front();
        action();
    }
    if (!forEver) {
        clock_.Advance(milliseconds);
    }
}

void InMemoryDesktop::DiscardInput() {
    if (faults_.Alive()) {
        ++discards_;
        done_.clear();
    }
}

void InMemoryDesktop::BlockShutdown(const std::string& reason) {
    if (faults_.Alive()) {
        shutdownReason_ = reason;
        ++shutdownBlocks_;
    }
}

void InMemoryDesktop::AllowShutdown() {
    if (faults_.Alive()) {
        shutdownReason_.clear();
    }
}

bool InMemoryDesktop::SessionEnding() {
    return faults_.Alive() && sessionEnding_;
}

bool InMemoryDesktop::EndSession() {
    sessionEnding_ = true;
    return shutdownReason_.empty();
}

void InMemoryDesktop::SetScreenSize(int width, int height) {
    screenWidth_ = width;
    screenHeight_ = height;
}

void InMemoryDesktop::Restart() {
    hourglass_ = false;
    actions_.clear();
    done_.clear();
    shutdownReason_.clear();
    sessionEnding_ = false;
}

}  // namespace marlok::test
