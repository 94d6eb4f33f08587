#pragma once

#include <memory>
#include <string>
#include <vector>

#include "forms/Control.h"

namespace marlok::forms {

class CommandButton;
class Windows;

/// What shows a form on a screen. Attached when the form is first shown, gone when it is unloaded.
class View {
 public:
    virtual ~View() = default;

    /// The form's own caption, place or visibility has changed.
    virtual void FormChanged() = 0;

    /// One aspect of one of the form's controls has changed.
    virtual void ControlChanged(const Control& control, Aspect aspect) = 0;

    /// A control is about to go, before its form does.
    virtual void ControlRemoved(const Control& control) = 0;

    /// Repaints at once.
    virtual void Refresh() = 0;
};

/// A window: its controls are members of the derived class, its handlers are the derived class's methods. It runs the
/// same with a view or without.
class Form {
 public:
    Form(Windows& windows, std::string name, std::string caption);
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;
    virtual ~Form();

    [[nodiscard]] const std::string& Name() const { return name_; }
    [[nodiscard]] const std::string& Caption() const { return caption_; }
    void SetCaption(const std::string& caption);

    [[nodiscard]] bool IsVisible() const { return visible_; }
    [[nodiscard]] Windows& Collection() const { return windows_; }
    [[nodiscard]] const std::vector<Control*>& Controls() const { return controls_; }

    // Place on the screen, in twips. Setting any of them tells the view.
    [[nodiscard]] int Left() const { return left_; }
    [[nodiscard]] int Top() const { return top_; }
    [[nodiscard]] int Width() const { return width_; }
    [[nodiscard]] int Height() const { return height_; }
    void Place(int left, int top, int width, int height);

    /// The smallest size that the user can give the window, in twips. 0 (as at first): any.
    [[nodiscard]] int LeastWidth() const { return leastWidth_; }
    [[nodiscard]] int LeastHeight() const { return leastHeight_; }
    void SetLeastSize(int width, int height);

    /// The colours of the window's rows behind its controls, from the top: one for each part of the height, which a
    /// view spreads evenly. Empty for the system's plain colour.
    [[nodiscard]] const std::vector<Colour>& Backdrop() const { return backdrop_; }
    void SetBackdrop(std::vector<Colour> rows);

    /// Pressed by Enter when no other button has the keyboard, and by Escape. Null for none. Controls of this form.
    [[nodiscard]] virtual CommandButton* DefaultButton() { return nullptr; }
    [[nodiscard]] virtual CommandButton* CancelButton() { return nullptr; }

    /// The section of the help that this window is about, by its id; "" for the help as a whole.
    [[nodiscard]] virtual std::string HelpSection() const { return {}; }

    /// The user asked for help (F1): it is opened at that section, whether or not the window has a button for it.
    void AskForHelp();

    /// Puts the window on the screen; attaches the view the first time.
    void Show();
    void Hide();

    /// Repaints at once.
    void Refresh();

    /// Takes the window out of the program. The object itself lives until the running handler has returned.
    void Unload();

    /// False while the user cannot close the window: what it shows is still to be finished.
    [[nodiscard]] virtual bool MayClose() const { return true; }

    /// For the view: the user has asked the window to close. It is unloaded when it may close.
    void UserClosed();

    /// The user changed the window's size: lays the controls out anew. Called by the view and before the first show.
    virtual void Form_Resize() {}

 protected:
    /// Once, when the window is loaded.
    virtual void Form_Load() {}

    /// Once, when the window is unloaded.
    virtual void Form_Unload() {}

 private:
    friend class Control;
    friend class Windows;
    Windows& windows_;
    std::string name_;
    std::string caption_;
    std::vector<Control*> controls_;  ///< in the order of construction, which is the tab order
    std::unique_ptr<View> view_;
    bool visible_ = false;
    int left_ = 0;
    int top_ = 0;
    int width_ = 6000;
    int height_ = 4500;
    int leastWidth_ = 0;
    int leastHeight_ = 0;
    std::vector<Colour> backdrop_;
};

}  // namespace marlok::forms
