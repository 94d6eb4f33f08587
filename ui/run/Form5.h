#pragma once

#include <memory>
#include <string>
#include <vector>

#include "forms/Controls.h"
#include "forms/Form.h"
#include "platform/Machine.h"
#include "ui/run/StopProc.h"

namespace marlok {

/// The colours of `rows` pixel rows, from `top` evenly towards `bottom`. Each part of a colour is `top`'s plus the
/// row's number times the difference divided by the number of rows, so that `bottom` itself would be the row after the
/// last.
[[nodiscard]] std::vector<forms::Colour> GradientRows(forms::Colour top, forms::Colour bottom, int rows);

/// The progress window: what kind of run it is, an animation, what is going on, and the progress of the copying.
class Form5 : public forms::Form {
 public:
    /// `allFiles` decides what the mode text says.
    Form5(forms::Windows& windows, Machine& machine, bool allFiles);

    forms::Label Label1{*this, "Label1", "Marlok Backup Utility"};
    forms::Label Label2{*this, "Label2", "Backup In Progress Please Wait !"};  ///< replaced by the copy mode
    forms::Label Label3{*this, "Label3"};                                      ///< first a note, then what is going on
    forms::ProgressBar ProgressBar1{*this, "ProgressBar1"};
    forms::PictureBox Picture1{*this, "Picture1"};  ///< its back colour is the gradient's upper end
    forms::PictureBox Picture2{*this, "Picture2"};  ///< and this one's the lower
    std::unique_ptr<forms::PictureBox> picBox;      ///< the frame of the animation, while the window is loaded
    forms::WebView WebBrowser1{*this, "WebBrowser1"};

    /// A process that was started to show something for this window, 0 while there is none. Its windows are closed when
    /// this one is unloaded.
    StopProc stopProc;

    /// Shows on the status line what is going on, at once.
    void ShowStatus(const std::string& text);

    void Form_Resize() override;

 protected:
    void Form_Load() override;
    void Form_Unload() override;

 private:
    void SetFonts();
    void PlaceAnimation(const forms::Control& frame);
    void ShowModeText();
    void ShowVersionNote();

    Machine& machine_;
    bool allFiles_;
};

}  // namespace marlok
