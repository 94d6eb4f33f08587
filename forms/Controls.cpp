#include "forms/Controls.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "forms/Form.h"
#include "forms/Windows.h"

namespace marlok::forms {

Label::Label(Form& form, std::string name, std::string caption) : Control(form, std::move(name)) {
    Caption = std::move(caption);
}

CommandButton::CommandButton(Form& form, std::string name, std::string caption) : Control(form, std::move(name)) {
    Caption = std::move(caption);
}

CheckBox::CheckBox(Form& form, std::string name, std::string caption) : Control(form, std::move(name)) {
    Caption = std::move(caption);
}

void CheckBox::UserPressed() {
    Value = Value == State::unchecked ? State::checked : State::unchecked;
    if (Click) {
        Click();
    }
}

Frame::Frame(Form& form, std::string name, std::string caption) : Control(form, std::move(name)) {
    Caption = std::move(caption);
}

Timer::Timer(Form& form, std::string name, std::uint32_t interval)
    : Control(form, std::move(name)), interval_(interval) {
    Visible = false;
}

void Timer::Start() {
    running_ = true;
    due_ = Owner().Collection().Time().TickCount() + interval_;
}

void Timer::Fire() {
    due_ = Owner().Collection().Time().TickCount() + interval_;
    if (Tick) {
        Tick();
    }
}

void ListBox::AddItem(std::string item) {
    InsertItem(ListCount(), std::move(item));
}

void ListBox::InsertItem(int index, std::string item) {
    const int position = std::clamp(index, 0, ListCount());
    items_.insert(items_.begin() + position, std::move(item));
    selected_.insert(selected_.begin() + position, false);
    if (listIndex_ >= position) {
        ++listIndex_;
    }
    Changed(Aspect::items);
}

void ListBox::RemoveItem(int index) {
    if (index < 0 || index >= ListCount()) {
        return;
    }
    items_.erase(items_.begin() + index);
    selected_.erase(selected_.begin() + index);
    if (listIndex_ == index) {
        listIndex_ = -1;
    } else if (listIndex_ > index) {
        --listIndex_;
    }
    Changed(Aspect::items);
}

void ListBox::Clear() {
    items_.clear();
    selected_.clear();
    listIndex_ = -1;
    Changed(Aspect::items);
}

const std::string& ListBox::List(int index) const {
    static const std::string outside;
    return index >= 0 && index < ListCount() ? items_[static_cast<std::size_t>(index)] : outside;
}

void ListBox::SetListIndex(int index) {
    const int before = listIndex_;
    SelectQuietly(index);
    if (listIndex_ != before && listIndex_ >= 0 && Click) {
        Click();
    }
}

void ListBox::SelectQuietly(int index) {
    const int line = index >= 0 && index < ListCount() ? index : -1;
    if (line == listIndex_) {
        return;
    }
    listIndex_ = line;
    if (!MultiSelect) {
        selected_.assign(selected_.size(), false);
    }
    if (line >= 0) {
        selected_[static_cast<std::size_t>(line)] = true;
    }
    Changed(Aspect::selection);
}

bool ListBox::Selected(int index) const {
    return index >= 0 && index < ListCount() && selected_[static_cast<std::size_t>(index)];
}

void ListBox::SetSelected(int index, bool selected) {
    if (index < 0 || index >= ListCount() || Selected(index) == selected) {
        return;
    }
    if (!MultiSelect) {
        selected_.assign(selected_.size(), false);
    }
    selected_[static_cast<std::size_t>(index)] = selected;
    Changed(Aspect::selection);
}

void ListBox::UserSelected(int index, const std::vector<int>& selected) {
    listIndex_ = index >= 0 && index < ListCount() ? index : -1;
    selected_.assign(selected_.size(), false);
    for (const int line : selected) {
        if (line >= 0 && line < ListCount()) {
            selected_[static_cast<std::size_t>(line)] = true;
        }
    }
    if (Click) {
        Click();
    }
}

void ListBox::UserOpened() {
    if (DblClick) {
        DblClick();
    }
}

}  // namespace marlok::forms
