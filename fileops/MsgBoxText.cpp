#include "fileops/MsgBoxText.h"

namespace marlok {

EntryOrFile AskEntryOrFile(Desktop& desktop, const std::string& prompt, const std::string& title) {
    const int pressed = desktop.ShowMessageWithCaptions(
        prompt, messagestyle::abortRetryIgnore | messagestyle::information, title,
        {{button::abort, "Only Entry"}, {button::retry, "File Also"}, {button::ignore, "Cancel"}});
    switch (pressed) {
        case button::abort:
            return EntryOrFile::onlyEntry;
        case button::retry:
            return EntryOrFile::fileAlso;
        default:
            return EntryOrFile::cancel;  // also when the box could not be shown: nothing is deleted unasked
    }
}

}  // namespace marlok
