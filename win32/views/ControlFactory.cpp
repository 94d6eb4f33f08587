#include "win32/views/ControlFactory.h"

#include <array>

#include "forms/Controls.h"
#include "forms/FolderControls.h"
#include "forms/TabControl.h"
#include "forms/TreeView.h"
#include "win32/views/NativeControls.h"
#include "win32/views/NativeDriveList.h"
#include "win32/views/NativeFolderList.h"
#include "win32/views/NativeList.h"
#include "win32/views/NativePicture.h"
#include "win32/views/NativeTab.h"
#include "win32/views/NativeTree.h"
#include "win32/views/NativeWebView.h"

namespace marlok::win32 {

namespace {

using Make = std::unique_ptr<NativeControl> (*)(forms::Control&, const NativeControl::Post&);

/// A `Native` when the control is a `Model`; null when it is none.
template <class Model, class Native>
std::unique_ptr<NativeControl> MakeFor(forms::Control& control, const NativeControl::Post& post) {
    auto* const model = dynamic_cast<Model*>(&control);
    return model == nullptr ? nullptr : std::make_unique<Native>(*model, post);
}

/// The kinds of controls. The first that fits counts: a kind that is a special case of another one comes before it.
constexpr std::array<Make, 13> kinds{
    &MakeFor<forms::Label, NativeLabel>,
    &MakeFor<forms::CommandButton, NativeButton>,
    &MakeFor<forms::CheckBox, NativeCheckBox>,
    &MakeFor<forms::Frame, NativeFrame>,
    &MakeFor<forms::TabControl, NativeTab>,
    &MakeFor<forms::TextBox, NativeTextBox>,
    &MakeFor<forms::ProgressBar, NativeProgressBar>,
    &MakeFor<forms::PictureBox, NativePicture>,
    &MakeFor<forms::WebView, NativeWebView>,
    &MakeFor<forms::TreeView, NativeTree>,
    &MakeFor<forms::DriveListBox, NativeDriveList>,
    &MakeFor<forms::DirListBox, NativeFolderList>,
    &MakeFor<forms::ListBox, NativeList>,
};

}  // namespace

std::unique_ptr<NativeControl> MakeNativeControl(forms::Control& control, const NativeControl::Post& post) {
    for (const Make make : kinds) {
        if (auto made = make(control, post)) {
            return made;
        }
    }
    return nullptr;
}

}  // namespace marlok::win32
