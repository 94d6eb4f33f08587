#include "forms/Form.h"

#include <utility>

#include "forms/Windows.h"

namespace marlok::forms {

Form::Form(Windows& windows, std::string name, std::string caption)
    : windows_(windows), name_(std::move(name)), caption_(std::move(caption)) {}

Form::~Form() = default;

void Form::SetCaption(const std::string& caption) {
    caption_ = caption;
    if (view_) {
        view_->FormChanged();
    }
}

void Form::Place(int left, int top, int width, int height) {
    left_ = left;
    top_ = top;
    width_ = width;
    height_ = height;
    if (view_) {
        view_->FormChanged();
    }
}

void Form::AskForHelp() {
    if (windows_.OpenHelp) {
        windows_.OpenHelp(HelpSection());
    }
}

void Form::SetLeastSize(int width, int height) {
    leastWidth_ = width;
    leastHeight_ = height;
}

void Form::SetBackdrop(std::vector<Colour> rows) {
    backdrop_ = std::move(rows);
    if (view_) {
        view_->FormChanged();
    }
}

void Form::Show() {
    if (!view_ && windows_.views_ != nullptr) {
        Form_Resize();
        view_ = windows_.views_->Attach(*this);
    }
    visible_ = true;
    if (view_) {
        view_->FormChanged();
    }
}

void Form::Hide() {
    visible_ = false;
    if (view_) {
        view_->FormChanged();
    }
}

void Form::Refresh() {
    if (view_) {
        view_->Refresh();
    }
}

void Form::UserClosed() {
    if (MayClose()) {
        Unload();
    }
}

void Form::Unload() {
    windows_.Remove(*this);
}

}  // namespace marlok::forms
