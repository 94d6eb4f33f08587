#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>

namespace marlok::forms {

class Form;

class TabControl;

/// What has changed in a control; tells a view what to bring up to date.
enum class Aspect { text, visible, enabled, place, items, selection, value, font, colour, container };

class Control;

/// A colour as Windows packs it: red in the lowest byte, green and blue above it.
using Colour = std::uint32_t;

/// The colour that the system gives a control of its kind.
inline constexpr Colour systemColour = 0xFF000000;

[[nodiscard]] constexpr Colour Rgb(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    return red | (green << 8U) | (blue << 16U);
}

/// The type of a control's text. The default is the message font of the system, as it is.
struct Font {
    std::string name;  ///< "" for the system's
    int size = 0;      ///< points; 0 for the system's
    bool bold = false;

    friend bool operator==(const Font&, const Font&) = default;
};

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

    /// A text may be given as a literal.
    Property& operator=(const char* text) requires std::is_same_v<T, std::string> {
        *this = std::string(text);
        return *this;
    }

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

    /// True when the control can be seen: it is visible, so is what contains it, and its tab is the current one.
    [[nodiscard]] bool IsShown() const;

    /// Puts the control on a tab of `tabs`, counted from 0: it is shown while that tab is the current one.
    void PutOn(TabControl& tabs, int tab);

    /// The tabs that the control was put on; null when it is on every tab.
    [[nodiscard]] const TabControl* Tabs() const { return tabs_; }

    /// The control that this one lies in; null for the form itself. A control goes with its container, which has to be
    /// of the same form, and its place is measured from the container's corner.
    [[nodiscard]] Control* Container() const { return container_; }
    void SetContainer(Control* container);

    /// What a screen reader calls the control, where no caption of its own says it: the heading of a list.
    Property<std::string> AccessibleName{*this, Aspect::text, ""};

    Property<Font> TextFont{*this, Aspect::font, Font{}};
    Property<Colour> ForeColor{*this, Aspect::colour, systemColour};
    Property<Colour> BackColor{*this, Aspect::colour, systemColour};

    // Place within the form or the container, in twips.
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
    Control* container_ = nullptr;
    const TabControl* tabs_ = nullptr;  ///< null: on every tab
    int tab_ = 0;
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
