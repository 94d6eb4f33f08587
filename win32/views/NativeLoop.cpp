#include "win32/views/NativeLoop.h"

#include <algorithm>
#include <utility>

namespace marlok::win32 {

void NativeLoop::Post(const Member& owner, Action action) {
    posted_.push_back({&owner, std::move(action), postsNotices_});
}

void NativeLoop::DiscardInput() {
    std::erase_if(posted_, [](const Posted& posted) { return !posted.notice; });
}

bool NativeLoop::RunPosted() {
    bool any = false;
    while (!posted_.empty()) {
        const Posted next = std::move(posted_.front());  // out of the queue first: the action may wait for input itself
        posted_.pop_front();
        any = true;
        next.action();
    }
    return any;
}

void NativeLoop::Keep(std::exception_ptr thrown) {
    if (!kept_) {
        kept_ = std::move(thrown);
    }
}

void NativeLoop::RethrowKept() {
    if (kept_) {
        std::rethrow_exception(std::exchange(kept_, nullptr));
    }
}

void NativeLoop::Add(Member& form) {
    forms_.push_back(&form);
    session_.Add(form.Window());
}

void NativeLoop::Remove(const Member& form) {
    std::erase(forms_, &form);
    std::erase_if(posted_, [&form](const Posted& posted) { return posted.owner == &form; });
}

void NativeLoop::Flush() {
    for (Member* form : forms_) {
        form->Flush();
    }
}

void NativeLoop::Animate() {
    for (Member* form : forms_) {
        form->Animate();
    }
}

std::uint32_t NativeLoop::NextFrameIn(std::uint32_t limit) const {
    std::uint32_t next = limit;
    for (const Member* form : forms_) {
        next = std::min(next, form->NextFrameIn());
    }
    return next;
}

NativeLoop::Member* NativeLoop::FormOf(HWND window) const {
    HWND root = GetAncestor(window, GA_ROOT);
    const auto found =
        std::find_if(forms_.begin(), forms_.end(), [root](const Member* form) { return form->Window() == root; });
    return root == nullptr || found == forms_.end() ? nullptr : *found;
}

bool NativeLoop::TakesKey(MSG& message) const {
    Member* form = FormOf(message.hwnd);
    return form != nullptr && (form->TakesKey(message) || IsDialogMessageW(form->Window(), &message) != 0);
}

void NativeLoop::BlockShutdown(const std::wstring& reason) {
    session_.Block(reason, Windows());
}

void NativeLoop::AllowShutdown() {
    session_.Allow(Windows());
}

std::vector<HWND> NativeLoop::Windows() const {
    std::vector<HWND> windows;
    for (const Member* form : forms_) {
        windows.push_back(form->Window());
    }
    return windows;
}

HWND NativeLoop::ActiveWindow() const {
    if (HWND active = GetActiveWindow()) {
        return active;
    }
    const auto visible = std::find_if(forms_.rbegin(), forms_.rend(),
                                      [](const Member* form) { return IsWindowVisible(form->Window()) != 0; });
    return visible == forms_.rend() ? nullptr : (*visible)->Window();
}

}  // namespace marlok::win32
