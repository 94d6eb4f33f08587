#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "forms/Control.h"

namespace marlok::forms {

/// A row of tabs, one of which is the current one. Controls are put on a tab with Control::PutOn.
class TabControl : public Control {
 public:
    TabControl(Form& form, std::string name, std::initializer_list<const char*> captions);

    [[nodiscard]] int TabCount() const { return static_cast<int>(tabs_.size()); }
    [[nodiscard]] const std::string& TabCaption(int tab) const;

    [[nodiscard]] bool TabEnabled(int tab) const;
    void SetTabEnabled(int tab, bool enabled);

    /// The current tab, counted from 0.
    [[nodiscard]] int Tab() const { return current_; }

    /// Brings a tab to the front, enabled or not, and fires Click when it was not there. Nothing happens for a number
    /// that no tab has.
    void SetTab(int tab);

    /// For the view: the user wants this tab. Nothing happens when it is disabled.
    void UserChose(int tab);

    /// The tab that the keyboard goes to from the current one, `step` 1 forwards or -1 backwards, round the end and
    /// past those that are disabled.
    [[nodiscard]] int NextEnabled(int step) const;

    /// The current tab has changed.
    Event Click;

 private:
    struct OneTab {
        std::string caption;
        bool enabled = true;
    };
    [[nodiscard]] bool Has(int tab) const { return tab >= 0 && tab < TabCount(); }

    std::vector<OneTab> tabs_;
    int current_ = 0;
};

}  // namespace marlok::forms
