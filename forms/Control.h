#pragma once

#include <functional>
#include <string>
#include <utility>

namespace marlok::forms {

class Form;

/// What has changed in a control; tells a view what to bring up to date.
enum class Aspect { text, visible, enabled, place, items, selection, value, font, colour };

class Control;

/// One published value of a control. Assigning a different value tells the control's form, and through it the view
/// on the screen; assigning the same value does nothing. Assignment never fires an event of the user's.
template <class T>
class Property {
 public:
    Property(Control& owner, Aspect aspect, T value) : owner_(owner), aspect_(aspect), value_(std::move(value)) {}
    Property(const Property&) = delete;
    Property& operator=(const Property&) = delete;
    ~Property() = default;

    // NOLINTNEXTLINE(google-explicit-constructor): a property reads like the value it holds.
    operator const T&() const { return value_; }
    [[nodiscard]] const T& Get() const { return value_; }

    Property& operator=(T value);

 private:
    Control& owner_;
    Aspect aspect_;
    T value_;
};

/// A handler of a user's action. Empty when the window does not handle it.
using Event = std::function<void()>;

/// A control as plain state and events. It belongs to the form that holds it as a member, which outlives it.
class Control {
 public:
    Control(Form& form, std::string name);
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;
    virtual ~Control();

    [[nodiscard]] const std::string& Name() const { return name_; }
    [[nodiscard]] Form& Owner() const { return form_; }

    Property<bool> Visible{*this, Aspect::visible, true};
    Property<bool> Enabled{*this, Aspect::enabled, true};

    // Place within the form, in twips.
    Property<int> Left{*this, Aspect::place, 0};
    Property<int> Top{*this, Aspect::place, 0};
    Property<int> Width{*this, Aspect::place, 0};
    Property<int> Height{*this, Aspect::place, 0};

    /// Sets the place as a whole.
    void MoveTo(int left, int top, int width, int height);

    /// Tells the form that `aspect` has changed.
    void Changed(Aspect aspect);

 private:
    Form& form_;
    std::string name_;
};

template <class T>
Property<T>& Property<T>::operator=(T value) {
    if (!(value_ == value)) {
        value_ = std::move(value);
        owner_.Changed(aspect_);
    }
    return *this;
}

}  // namespace marlok::forms
