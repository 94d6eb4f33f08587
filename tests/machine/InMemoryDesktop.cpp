#include "tests/machine/InMemoryDesktop.h"

#include <limits>
#include <stdexcept>
#include <utility>

namespace marlok::test {
namespace {

int FirstButton(std::uint32_t style) {
    constexpr std::uint32_t buttonBits = 0xF;
    switch (style & buttonBits) {
        case messagestyle::abortRetryIgnore:
            return button::abort;
        case messagestyle::yesNo:
            return button::yes;
        default:
            return button::ok;
    }
}

}  // namespace

int InMemoryDesktop::ShowMessage(const std::string& text, std::uint32_t style, const std::string& title) {
    return ShowMessageWithCaptions(text, style, title, {});
}

int InMemoryDesktop::ShowMessageWithCaptions(const std::string& text, std::uint32_t style, const std::string& title,
                                             const std::vector<ButtonCaption>& captions) {
    if (!faults_.Alive()) {
        return FirstButton(style);
    }
    ShownMessage message{text, style, title, 0, captions};
    message.answer = handler_ ? handler_(message) : 0;
    if (message.answer == 0 && !answers_.empty()) {
        message.answer = answers_.front();
        answers_.pop_front();
    }
    if (message.answer == 0) {
        message.answer = FirstButton(style);
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

void InMemoryDesktop::SetScreenSize(int width, int height) {
    screenWidth_ = width;
    screenHeight_ = height;
}

void InMemoryDesktop::Restart() {
    hourglass_ = false;
    actions_.clear();
}

}  // namespace marlok::test
