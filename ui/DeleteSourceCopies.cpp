#include <algorithm>
#include <vector>

#include "engine/CopyLoop.h"
#include "engine/LocationName.h"
#include "engine/SavePlaces.h"
#include "fileops/Errors.h"
#include "fileops/FileOperations.h"
#include "fileops/FolderFunctions.h"
#include "fileops/txtFunctions.h"
#include "text/Text.h"
#include "ui/Texts.h"
#include "ui/frmSSTab.h"

/// What the answer "File Also" does on the tab "Files To Backup".
namespace marlok::ui {

namespace {

constexpr std::uint32_t plainInformation = messagestyle::ok | messagestyle::information;

/// The path after the drive root, as plain components; "" for what is no path of a source.
std::string RelativePath(const std::string& source) {
    if (HasDriveRoot(source)) {
        return source.substr(3);
    }
    return IsNetworkPath(source) ? source : "";
}

}  // namespace

void frmSSTab::DeleteSourceCopies() {
    for (forms::ListBox* list : {&List10, &List11, &List12}) {
        list->Clear();
    }
    const std::string location = List9.List(List9.ListIndex());
    if (location.empty()) {
        Tell("You Have Not Selected A Target Path To Delete The File From", plainInformation);
        return;
    }
    for (int line = 0; line < List4.ListCount(); ++line) {
        if (List4.List(line) != texts::noFiles) {
            (List4.Selected(line) ? List10 : List11).AddItem(List4.List(line));
        }
    }
    for (const std::string& source : List10.Items()) {
        DeleteSavedCopy(location, source);
    }
    PruneOriginalList(location);
    std::vector<std::string> kept;
    for (const std::string& source : List11.Items()) {
        if (IsEndMark(source)) {
            break;
        }
        kept.push_back(source);
    }
    TellUnlessStored(program_.Configuration().SaveSources(location, kept));
    List4.Clear();
    for (const std::string& source : kept) {
        List4.AddItem(source);
    }
    if (List4.ListCount() == 0) {
        List4.AddItem(texts::noFiles);
    }
    for (forms::ListBox* list : {&List10, &List11, &List12}) {
        list->Clear();
    }
}

/// Deletes what was saved for one source, below the location and nowhere else.
void frmSSTab::DeleteSavedCopy(const std::string& location, const std::string& source) {
    FileSystem& files = program_.machine.files;
    const std::string relative = RelativePath(source);
    const std::string saved = WithoutBackslash(TargetPath(source, AddBackslash(location)));
    if (!IsPlainRelativePath(relative) || text::Trim(relative, "\\").empty()) {
        // A whole drive is saved straight into the location: deleting "its folder" would delete all other sources' too.
        Tell(source + "\r\n\r\n Has No Folder Of Its Own In The Backup Location, Nothing Was Deleted",
             plainInformation);
        return;
    }
    DirectoryEntry entry;
    const SystemError looked = files.GetEntry(saved, entry);
    if (looked == error::fileNotFound || looked == error::pathNotFound) {
        return;
    }
    if (looked != error::success) {
        Tell(saved + "\r\n\r\n Could Not Be Deleted\r\n\r\n" + Describe(program_.machine.system, looked),
             plainInformation);
        return;
    }
    const bool asFile = text::HasThreeLetterExtension(source);
    if (!asFile && !entry.IsFolder()) {
        return;  // a source without such a name is a folder; the file of that name is none of its copies
    }
    // The folder it lies in may be a link out of the location; the saved copy itself, being one, goes without its
    // target.
    const bool inside = IsSurelyInside(files, FolderOf(saved), location);
    const int code = inside ? DeleteThisFile(files, program_.machine.shell, saved) : 0;
    if (!inside || files.GetEntry(saved, entry) == error::success) {
        const std::string reason = inside ? Describe(program_.machine.system, static_cast<SystemError>(code))
                                          : "A link leads out of the backup location.";
        Tell(saved + "\r\n\r\n Could Not Be Deleted\r\n\r\n" + reason, plainInformation);
    }
}

/// Takes the lines that contain a source of List10, letter case ignored, out of the location's list of original paths.
void frmSSTab::PruneOriginalList(const std::string& location) {
    FileSystem& files = program_.machine.files;
    const std::string list = OriginalListPath(program_, location);
    if (!FileExists(files, list)) {
        return;
    }
    std::string whole;
    SystemError code = ReadWholeFile(files, list, whole);
    if (code != error::success) {
        Tell(list + "\r\n\r\n Could Not Be Changed\r\n\r\n" + Describe(program_.machine.system, code),
             plainInformation);
        return;
    }
    whole = DecodeText(program_.machine.system, std::move(whole));
    std::vector<std::string> removed;
    for (const std::string& source : List10.Items()) {
        removed.push_back(text::Fold(source));
    }
    std::string kept;
    for (const std::string_view line : text::Split(whole, "\r\n")) {
        const std::string folded = text::Fold(line);
        const auto contained = [&](const std::string& source) { return folded.find(source) != std::string::npos; };
        if (!line.empty() && std::ranges::none_of(removed, contained)) {
            List12.AddItem(std::string(line));
            kept += std::string(line) + "\r\n";
        }
    }
    if (List12.ListCount() == 0) {
        return;  // deliberate: a list of original paths is never emptied this way
    }
    code = SaveWholeFile(files, list, kept);
    if (code != error::success) {
        Tell(list + "\r\n\r\n Could Not Be Changed\r\n\r\n" + Describe(program_.machine.system, code),
             plainInformation);
    }
}

}  // namespace marlok::ui
