#include "forms/Windows.h"

#include <algorithm>
#include <exception>

#include "forms/Controls.h"

namespace marlok::forms {

namespace {

/// How long to wait for input while no timer runs; input ends the wait at once.
constexpr std::uint32_t idleMilliseconds = 1000;

}  // namespace

Windows::Windows(Desktop& desktop, Clock& clock, ViewFactory* views)
    : desktop_(desktop), clock_(clock), views_(views) {}

Windows::~Windows() = default;

void Windows::Add(std::unique_ptr<Form> form) {
    Form& added = *form;
    loaded_.push_back(std::move(form));
    added.Form_Load();
}

void Windows::Remove(Form& form) {
    const auto found = std::ranges::find_if(loaded_, [&form](const auto& loaded) { return loaded.get() == &form; });
    if (found == loaded_.end()) {
        return;
    }
    // Out of the collection first: unloading may unload every window, this one included.
    unloaded_.push_back(std::move(*found));
    loaded_.erase(found);
    for (Control* control : form.Controls()) {
        if (auto* timer = dynamic_cast<Timer*>(control)) {
            timer->Stop();
        }
    }
    form.Hide();
    form.Form_Unload();
}

void Windows::UnloadAll() {
    std::exception_ptr first;
    while (!loaded_.empty()) {
        try {
            Remove(*loaded_.front());
        } catch (...) {
            first = first ? first : std::current_exception();
        }
    }
    if (first) {
        std::rethrow_exception(first);
    }
}

void Windows::Run() {
    while (AnyLoaded()) {
        Turn();
    }
    unloaded_.clear();
}

void Windows::Turn() {
    unloaded_.clear();
    const std::uint64_t now = clock_.TickCount();
    std::uint64_t wait = idleMilliseconds;
    for (const Timer* timer : RunningTimers()) {
        wait = std::min(wait, timer->Due() > now ? timer->Due() - now : 0);
    }
    desktop_.WaitForInput(static_cast<std::uint32_t>(wait));
    FireDue();
}

std::vector<Timer*> Windows::RunningTimers() const {
    std::vector<Timer*> running;
    for (const auto& form : loaded_) {
        for (Control* control : form->Controls()) {
            auto* timer = dynamic_cast<Timer*>(control);
            if (timer != nullptr && timer->Running()) {
                running.push_back(timer);
            }
        }
    }
    return running;
}

void Windows::FireDue() {
    // A handler may stop timers or unload windows: every round looks anew, and each timer fires once a turn.
    std::vector<const Timer*> fired;
    while (true) {
        Timer* next = nullptr;
        for (Timer* timer : RunningTimers()) {
            const bool due = timer->Due() <= clock_.TickCount();
            const bool done = std::ranges::find(fired, timer) != fired.end();
            if (due && !done && (next == nullptr || timer->Due() < next->Due())) {
                next = timer;
            }
        }
        if (next == nullptr) {
            return;
        }
        fired.push_back(next);
        next->Fire();
    }
}

}  // namespace marlok::forms
