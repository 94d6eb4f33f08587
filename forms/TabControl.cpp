#include "forms/TabControl.h"

#include <cstddef>
#include <utility>

#include "forms/Form.h"

namespace marlok::forms {

TabControl::TabControl(Form& form, std::string name, std::initializer_list<const char*> captions)
    : Control(form, std::move(name)) {
    for (const char* caption : captions) {
        tabs_.push_back({caption, true});
    }
}

const std::string& TabControl::TabCaption(int tab) const {
    static const std::string none;
    return Has(tab) ? tabs_[static_cast<std::size_t>(tab)].caption : none;
}

bool TabControl::TabEnabled(int tab) const {
    return Has(tab) && tabs_[static_cast<std::size_t>(tab)].enabled;
}

void TabControl::SetTabEnabled(int tab, bool enabled) {
    if (Has(tab) && TabEnabled(tab) != enabled) {
        tabs_[static_cast<std::size_t>(tab)].enabled = enabled;
        Changed(Aspect::items);
    }
}

void TabControl::SetTab(int tab) {
    if (!Has(tab) || tab == current_) {
        return;
    }
    current_ = tab;
    Changed(Aspect::selection);
    for (Control* control : Owner().Controls()) {
        control->Changed(Aspect::visible);
    }
    if (Click) {
        Click();
    }
}

void TabControl::UserChose(int tab) {
    if (TabEnabled(tab)) {
        SetTab(tab);
    } else {
        Changed(Aspect::selection);  // the view may show the one that was wanted
    }
}

int TabControl::NextEnabled(int step) const {
    int tab = current_;
    for (int tried = 0; tried < TabCount(); ++tried) {
        tab = (tab + step + TabCount()) % TabCount();
        if (TabEnabled(tab)) {
            return tab;
        }
    }
    return current_;
}

}  // namespace marlok::forms
