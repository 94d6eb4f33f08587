#include "forms/Control.h"

#include <algorithm>

#include "forms/Form.h"

namespace marlok::forms {

Control::Control(Form& form, std::string name) : form_(form), name_(std::move(name)) {
    form_.controls_.push_back(this);
}

Control::~Control() {
    std::erase(form_.controls_, this);
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
