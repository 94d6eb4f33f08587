#include "win32/views/NativePicture.h"

#include <windows.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "win32/machine/Handles.h"
#include "win32/machine/Wide.h"
#include "win32/views/Picture.h"

namespace marlok::win32 {

namespace {

/// Name of the picture that is the program's own icon, and the icon's number in the resources.
constexpr std::string_view iconName = "program";
constexpr WORD iconId = 1;

// How the resources list the images of an icon: a head of three words, then one entry for each image, the width first.
constexpr std::size_t iconHead = 6;
constexpr std::size_t iconEntry = 14;
constexpr int largestIcon = 256;  // written as 0

/// The bytes of a resource, which stay where they are; "" when there is none of that name.
std::string_view Resource(const wchar_t* name, const wchar_t* type) {
    HRSRC found = FindResourceW(nullptr, name, type);
    HGLOBAL loaded = found == nullptr ? nullptr : LoadResource(nullptr, found);
    const void* bytes = loaded == nullptr ? nullptr : LockResource(loaded);
    if (bytes == nullptr) {
        return "";
    }
    return {static_cast<const char*>(bytes), SizeofResource(nullptr, found)};
}

/// Of the sizes that the icon is drawn in, the smallest that fills `wanted` pixels: it has only to be shrunk a little.
/// The largest one when none does.
int BestIconSize(int wanted) {
    const std::string_view group = Resource(MAKEINTRESOURCEW(iconId), RT_GROUP_ICON);
    int best = 0;
    for (std::size_t entry = iconHead; entry + iconEntry <= group.size(); entry += iconEntry) {
        const auto written = static_cast<unsigned char>(group[entry]);
        const int size = written == 0 ? largestIcon : written;
        const bool fills = size >= wanted;
        const bool bestFills = best >= wanted;
        if ((fills && (!bestFills || size < best)) || (!fills && !bestFills && size > best)) {
            best = size;
        }
    }
    return best;
}

Bitmap FirstFrame(const Picture& picture) {
    return picture.IsEmpty() ? Bitmap() : picture.Frames().front().bitmap;
}

Bitmap ProgramIcon(int size) {
    const IconHandle icon(static_cast<HICON>(
        LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(iconId), IMAGE_ICON, size, size, LR_DEFAULTCOLOR)));
    return icon.IsValid() ? FirstFrame(Picture::FromIcon(icon.Get())) : Bitmap();
}

/// Resource names are kept in capital letters.
std::wstring ResourceName(const std::string& name) {
    std::wstring wide = ToWide(name);
    CharUpperBuffW(wide.data(), static_cast<DWORD>(wide.size()));
    return wide;
}

}  // namespace

void NativePicture::MirrorContent(forms::Aspect aspect) {
    if (aspect == forms::Aspect::value) {
        iconSize_ = 0;
        const std::string& name = box_.Picture;
        picture_ = name.empty() || name == iconName
                       ? Bitmap()
                       : FirstFrame(Picture::FromBytes(Resource(ResourceName(name).c_str(), RT_RCDATA)));
    }
    NativeArea::MirrorContent(aspect);
}

const Bitmap* NativePicture::PictureFor(PixelSize area) {
    if (box_.Picture.Get() == iconName) {
        const int size = BestIconSize(std::min(area.width, area.height));
        if (size != iconSize_) {
            picture_ = ProgramIcon(size);
            iconSize_ = size;
        }
    }
    return &picture_;
}

}  // namespace marlok::win32
