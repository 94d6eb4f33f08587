#include "forms/Control.h"

#include <algorithm>

#include "forms/Form.h"
#include "forms/TabControl.h"

namespace marlok::forms {

Control::Control(Form& form, std::string name) : form_(form), name_(std::move(name)) {
    form_.controls_.push_back(this);
}

Control::~Control() {
    if (form_.view_) {
        form_.view_->ControlRemoved(*this);
    }
    std::erase(form_.controls_, this);
    for (Control* other : form_.controls_) {
        if (other->container_ == this) {
            other->container_ = nullptr;
        }
        if (other->tabs_ == this) {
            other->tabs_ = nullptr;
        }
    }
}

bool Control::IsShown() const {
    const bool onCurrentTab = tabs_ == nullptr || (tabs_->Tab() == tab_ && tabs_->IsShown());
    return Visible && onCurrentTab && (container_ == nullptr || container_->IsShown());
}

void Control::PutOn(TabControl& tabs, int tab) {
    tabs_ = &tabs;
    tab_ = tab;
    Changed(Aspect::visible);
}

void Control::SetContainer(Control* container) {
    if (container_ != container) {
        container_ = container;
        Changed(Aspect::container);
    }
}

void Control::MoveTo(int left, int top, int width, int height) {
    Left = left;
    Top = top;
    Width = width;
    Height = height;
}

void Control::Changed(Aspect aspect) {
    if (form_.view_) {
        form_.view_->ControlChanged(*this, aspect);
    }
}

}  // namespace marlok::forms
