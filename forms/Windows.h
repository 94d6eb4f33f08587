#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "forms/Form.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"

namespace marlok::forms {

class Timer;

/// Makes the views of forms. The program without a screen has none.
class ViewFactory {
 public:
    virtual ~ViewFactory() = default;
    [[nodiscard]] virtual std::unique_ptr<View> Attach(Form& form) = 0;
};

/// The windows of the program: each class at most once, in the order of loading; and the loop that delivers events
/// while any of them is loaded.
class Windows {
 public:
    /// `views` may be null: windows then have no view. All three outlive this object.
    Windows(Desktop& desktop, Clock& clock, ViewFactory* views);
    Windows(const Windows&) = delete;
    Windows& operator=(const Windows&) = delete;
    ~Windows();

    [[nodiscard]] Desktop& Screen() const { return desktop_; }
    [[nodiscard]] Clock& Time() const { return clock_; }

    /// Opens the help at the section of that id, from any window. Set by whoever starts the program; may be empty.
    std::function<void(const std::string& section)> OpenHelp;

    /// The loaded window of class F; loads it first when it is not loaded. `arguments` go to its constructor behind
    /// this collection.
    template <class F, class... Arguments>
    F& Load(Arguments&&... arguments) {
        if (F* loaded = Find<F>()) {
            return *loaded;
        }
        auto form = std::make_unique<F>(*this, std::forward<Arguments>(arguments)...);
        F& added = *form;
        Add(std::move(form));
        return added;
    }

    /// The loaded window of class F, null when it is not loaded.
    template <class F>
    [[nodiscard]] F* Find() const {
        for (const auto& form : loaded_) {
            if (auto* found = dynamic_cast<F*>(form.get())) {
                return found;
            }
        }
        return nullptr;
    }

    [[nodiscard]] bool AnyLoaded() const { return !loaded_.empty(); }

    /// Unloads every window in the order of the collection. A window whose unloading throws is gone all the same.
    void UnloadAll();

    /// Delivers events until no window is loaded. What a handler throws leaves this call.
    void Run();

    /// One turn of Run: waits for input or the next timer, delivers what is due.
    void Turn();

 private:
    friend class Form;
    void Add(std::unique_ptr<Form> form);
    void Remove(Form& form);
    [[nodiscard]] std::vector<Timer*> RunningTimers() const;
    void FireDue();

    Desktop& desktop_;
    Clock& clock_;
    ViewFactory* views_;
    std::vector<std::unique_ptr<Form>> loaded_;
    std::vector<std::unique_ptr<Form>> unloaded_;  ///< freed between events: a handler may unload its own window
};

}  // namespace marlok::forms
