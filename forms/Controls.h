#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "forms/Control.h"

/// The plain controls of the window kit.
namespace marlok::forms {

class Label : public Control {
 public:
    enum class Align { left, right, centre };

    Label(Form& form, std::string name, std::string caption = "");
    Property<std::string> Caption{*this, Aspect::text, ""};
    Property<Align> Alignment{*this, Aspect::colour, Align::left};
};

class CommandButton : public Control {
 public:
    CommandButton(Form& form, std::string name, std::string caption = "");
    Property<std::string> Caption{*this, Aspect::text, ""};
    Event Click;
};

/// A box with a caption that the user checks and clears.
class CheckBox : public Control {
 public:
    enum class State { unchecked, checked, greyed };

    CheckBox(Form& form, std::string name, std::string caption = "");
    Property<std::string> Caption{*this, Aspect::text, ""};
    Property<State> Value{*this, Aspect::value, State::unchecked};

    /// For the view: the user has pressed the box. Checks one that is not checked, clears a checked or greyed one; only
    /// code greys one. Fires Click.
    void UserPressed();

    Event Click;
};

/// A line with a caption around other controls. Groups them for the eye alone.
class Frame : public Control {
 public:
    Frame(Form& form, std::string name, std::string caption = "");
    Property<std::string> Caption{*this, Aspect::text, ""};
};

class TextBox : public Control {
 public:
    using Control::Control;
    Property<std::string> Text{*this, Aspect::text, ""};

    /// The user can mark and copy the text, not change it.
    bool Locked = false;
};

/// A picture, or a plain area in its back colour; other controls may lie in it.
class PictureBox : public Control {
 public:
    using Control::Control;

    /// Name of the picture among those that the program carries ("program"); "" for none. It is scaled to the control,
    /// its proportions kept.
    Property<std::string> Picture{*this, Aspect::value, ""};
};

/// The system's web view. Where it does not exist or cannot show an animated picture, the control draws the picture
/// itself.
class WebView : public Control {
 public:
    using Control::Control;

    /// Shows the file or page at `location`.
    void Navigate2(const std::string& location) { Location = location; }

    /// Stops loading and playing; what is there stays.
    void Stop() { Playing = false; }

    Property<std::string> Location{*this, Aspect::value, ""};
    Property<bool> Playing{*this, Aspect::value, true};
};

/// Minimum, maximum and value are single-precision numbers of any size; a view scales them to what it can draw.
class ProgressBar : public Control {
 public:
    using Control::Control;
    Property<float> Min{*this, Aspect::value, 0.0F};
    Property<float> Max{*this, Aspect::value, 100.0F};
    Property<float> Value{*this, Aspect::value, 0.0F};
};

/// Fires once per `Interval` while enabled. Never visible.
class Timer : public Control {
 public:
    /// Disabled until it is enabled in code.
    Timer(Form& form, std::string name, std::uint32_t interval);

    [[nodiscard]] std::uint32_t Interval() const { return interval_; }  ///< milliseconds
    [[nodiscard]] bool Running() const { return running_; }

    /// Tick count (Clock::TickCount) at which the timer fires next; meaningful while it runs.
    [[nodiscard]] std::uint64_t Due() const { return due_; }

    void Start();
    void Stop() { running_ = false; }

    /// Called by the event loop when the timer is due: sets the next due time, then calls Tick.
    void Fire();

    Event Tick;

 private:
    std::uint32_t interval_;
    bool running_ = false;
    std::uint64_t due_ = 0;
};

/// A list of strings. Changing it in code fires no event, except that SetListIndex fires Click when it selects
/// another line.
class ListBox : public Control {
 public:
    using Control::Control;

    void AddItem(std::string item);
    void InsertItem(int index, std::string item);
    void RemoveItem(int index);
    void Clear();

    [[nodiscard]] int ListCount() const { return static_cast<int>(items_.size()); }

    /// The line at `index`; "" outside the list.
    [[nodiscard]] const std::string& List(int index) const;

    [[nodiscard]] const std::vector<std::string>& Items() const { return items_; }

    /// The line that has the focus, -1 when none has.
    [[nodiscard]] int ListIndex() const { return listIndex_; }
    void SetListIndex(int index);

    [[nodiscard]] bool Selected(int index) const;
    void SetSelected(int index, bool selected);

    /// For the view: the user has moved to `index` and selected exactly `selected`. Fires Click.
    void UserSelected(int index, const std::vector<int>& selected);

    /// For the view: the user has clicked a line twice, or pressed Enter on it. Fires DblClick.
    virtual void UserOpened();

    /// True when several lines may be selected at a time.
    bool MultiSelect = false;
    Event Click;
    Event DblClick;

 protected:
    /// Selects a line without firing Click.
    void SelectQuietly(int index);

 private:
    std::vector<std::string> items_;
    std::vector<bool> selected_;  ///< kept as long as `items_`
    int listIndex_ = -1;
};

}  // namespace marlok::forms
