#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "forms/Windows.h"

namespace marlok::test {

/// Views without a screen: they remember what their forms tell them. Outlives the windows that it makes views for.
class RecordingViews : public forms::ViewFactory {
 public:
    [[nodiscard]] std::unique_ptr<forms::View> Attach(forms::Form& form) override {
        records.push_back(form.Name() + " attached");
        return std::make_unique<RecordingView>(*this, form);
    }

    /// What the views were told, in order: "Form5 attached", "Form5 changed", "Form5 refreshed", "Form5 detached",
    /// "Form5.Label3 changed", "Form5.picBox removed".
    std::vector<std::string> records;

    /// Called for each change of a control, after it was noted.
    std::function<void(const forms::Control&, forms::Aspect)> onControlChanged;

 private:
    class RecordingView : public forms::View {
     public:
        RecordingView(RecordingViews& all, forms::Form& form) : all_(all), form_(form) {}
        RecordingView(const RecordingView&) = delete;
        RecordingView& operator=(const RecordingView&) = delete;
        ~RecordingView() override { Note(" detached"); }

        void FormChanged() override { Note(" changed"); }
        void ControlChanged(const forms::Control& control, forms::Aspect aspect) override {
            Note("." + control.Name() + " changed");
            if (all_.onControlChanged) {
                all_.onControlChanged(control, aspect);
            }
        }
        void ControlRemoved(const forms::Control& control) override { Note("." + control.Name() + " removed"); }
        void Refresh() override { Note(" refreshed"); }

     private:
        void Note(const std::string& what) { all_.records.push_back(form_.Name() + what); }

        RecordingViews& all_;
        forms::Form& form_;
    };
};

}  // namespace marlok::test
