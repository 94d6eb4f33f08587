#pragma once

#include <string>
#include <vector>

#include "forms/Controls.h"
#include "win32/views/NativeControl.h"

namespace marlok::win32 {

/// A list box with real strings. Changes of the model are gathered and mirrored in one go, and only the lines that
/// differ are touched: adding 100,000 lines one by one and showing them now and then stays quick.
class NativeList : public NativeControl {
 public:
    NativeList(forms::ListBox& list, Post post) : NativeControl(list, std::move(post)), list_(list) {}
    void Flush() override;
    void Notified(WORD notification) override;

 protected:
    WindowKind Kind() const override;
    void MirrorContent(forms::Aspect aspect) override;
    LRESULT Handle(UINT message, WPARAM first, LPARAM second) override;

    /// Pixels that a line takes across besides its text.
    [[nodiscard]] virtual int MarginOfLines() const;

    /// Opens the line that the user sees chosen now.
    void PostOpen();

 private:
    /// What the user saw chosen when he acted. It is applied later, when the list may be another one.
    struct Choice {
        unsigned revision;
        int index;
        std::vector<int> selected;
    };

    [[nodiscard]] int LineWithFocus() const;
    [[nodiscard]] int NextChoice(int from, int step) const;
    [[nodiscard]] int Destination(WPARAM key) const;
    void MirrorItems();
    void ReplaceLines(std::size_t start, std::size_t removed, std::size_t added);
    void MirrorSelection();
    void MirrorSelectedLines();
    [[nodiscard]] int SelectedOrFocused() const;
    [[nodiscard]] std::vector<int> ShownSelection() const;
    void Widen(const std::vector<std::string>& lines, std::size_t start, std::size_t count);
    [[nodiscard]] Choice Shown() const;
    [[nodiscard]] bool StillMeans(const Choice& choice) const;
    void Take(const Choice& choice);
    void Open(const Choice& choice);

    forms::ListBox& list_;
    std::vector<std::string> shown_;  ///< the lines that the window holds
    bool itemsChanged_ = false;
    bool selectionChanged_ = false;
    unsigned revision_ = 0;  ///< raised whenever the window's lines become others
    int extent_ = 0;         ///< pixels of the longest line so far
};

}  // namespace marlok::win32
