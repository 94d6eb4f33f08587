#pragma once

#include <string>
#include <vector>

#include "forms/Controls.h"
#include "platform/Drives.h"
#include "platform/FileSystem.h"

/// Controls that browse the drives, folders and files of the machine.
namespace marlok::forms {

/// The drives of the machine, one of which is chosen.
class DriveListBox : public Control {
 public:
    DriveListBox(Form& form, std::string name, Drives& drives);

    /// Root of the chosen drive ("C:\"), whether there is such a drive or not. "" until one is set.
    [[nodiscard]] const std::string& Drive() const { return drive_; }

    /// Chooses a drive. Fires Change when it was another one.
    void SetDrive(const std::string& root);

    /// Chooses a drive without firing Change.
    void SetDriveQuietly(const std::string& root);

    /// Looks which drives there are now.
    void Refresh();

    /// One line for each drive ("C: [Windows] (local disk)", "E: (removable disk)"), in the order of the letters.
    [[nodiscard]] const std::vector<std::string>& Items() const { return items_; }

    /// The line of the chosen drive, -1 when there is no such drive.
    [[nodiscard]] int ListIndex() const;

    /// For the view: the user has chosen the drive of a line.
    void UserChose(int line);

    Event Change;

 private:
    Drives& drives_;
    std::string drive_;
    std::vector<std::string> roots_;
    std::vector<std::string> items_;
};

/// A folder: the path to it from the root of its drive, one line for each folder on the way, and below it the folders
/// in it. A click highlights one of these folders, a double click or Enter opens it.
class DirListBox : public ListBox {
 public:
    DirListBox(Form& form, std::string name, FileSystem& files);

    /// The open folder, without "\" at its end unless it is a drive root.
    [[nodiscard]] const std::string& Path() const { return path_; }

    /// Opens a folder and highlights it. Fires Change when it was another one. A folder that cannot be listed shows no
    /// folders below it.
    void SetPath(const std::string& path);

    /// Full path of the highlighted folder; the open folder when none is highlighted.
    [[nodiscard]] std::string Highlighted() const;

    /// Lists the open folder anew; when it is gone, opens the nearest folder above it that is there.
    void Refresh();

    void UserOpened() override;

    Event Change;

 private:
    void Fill();

    FileSystem& files_;
    std::string path_;
    std::vector<std::string> paths_;  ///< of the lines
};

/// The files of a folder by name, several of which can be selected.
class FileListBox : public ListBox {
 public:
    FileListBox(Form& form, std::string name, FileSystem& files);

    [[nodiscard]] const std::string& Path() const { return path_; }

    /// Shows the files of another folder.
    void SetPath(const std::string& path);

    /// Lists the folder anew.
    void Refresh();

 private:
    FileSystem& files_;
    std::string path_;
};

}  // namespace marlok::forms
