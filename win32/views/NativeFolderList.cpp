#include "win32/views/NativeFolderList.h"

#include <shellapi.h>
// Behind windows.h, whose types it uses.
#include <commctrl.h>

#include <algorithm>
#include <string>

#include "win32/machine/Wide.h"
#include "win32/views/TextSurface.h"

namespace marlok::win32 {

using forms::Aspect;

namespace {

/// Pixels at 96 dots to the inch between the edge, the icon and the name.
constexpr int gapPixels = 3;

/// A small icon of the shell. Invalid where the shell has none: the line is then its name alone.
IconHandle ShellIcon(const std::wstring& path, UINT flags) {
    SHFILEINFOW info{};
    const DWORD_PTR found = SHGetFileInfoW(path.c_str(), FILE_ATTRIBUTE_DIRECTORY, &info, sizeof info,
                                           SHGFI_ICON | SHGFI_SMALLICON | flags);
    return found != 0 ? IconHandle(info.hIcon) : IconHandle();
}

/// The icon of folders as such: no folder is looked at.
IconHandle FolderIcon(UINT flags) {
    return ShellIcon(L"folder", SHGFI_USEFILEATTRIBUTES | flags);
}

/// The topmost folder on the way to `path`, with a backslash at its end.
std::string RootOf(const std::string& path) {
    constexpr std::size_t driveRoot = 3;
    if (!path.starts_with("\\\\")) {
        return path.substr(0, driveRoot);
    }
    const std::size_t share = path.find('\\', path.find('\\', 2) + 1);
    return path.substr(0, share) + '\\';
}

/// The line of the open folder: the lines above it are the folders that it lies in, one for each.
int OpenLine(const std::string& path) {
    const auto backslashes = static_cast<int>(std::count(path.begin(), path.end(), '\\'));
    const bool network = path.starts_with("\\\\");
    return network ? backslashes - 3 : backslashes - (path.ends_with('\\') ? 1 : 0);
}

COLORREF ColourOr(forms::Colour own, int systemColour) {
    return own != forms::systemColour ? own : GetSysColor(systemColour);
}

int WidthOf(HDC surface, const std::wstring& text) {
    SIZE size{};
    GetTextExtentPoint32W(surface, text.data(), static_cast<int>(text.size()), &size);
    return size.cx;
}

}  // namespace

NativeControl::WindowKind NativeFolderList::Kind() const {
    WindowKind kind = NativeList::Kind();
    kind.style |= LBS_OWNERDRAWFIXED | LBS_HASSTRINGS;
    return kind;
}

void NativeFolderList::MirrorContent(Aspect aspect) {
    if (aspect == Aspect::text || aspect == Aspect::font) {
        Prepare();
    }
    NativeList::MirrorContent(aspect);
}

/// A list whose lines its parent draws does not learn the height of its font by itself.
void NativeFolderList::Prepare() {
    if (!folder_.IsValid()) {
        folder_ = FolderIcon(0);
        openFolder_ = FolderIcon(SHGFI_OPENICON);
    }
    const TEXTMETRICW font = TextSurface(Window()).Metrics();
    Send(LB_SETITEMHEIGHT, 0, std::max(static_cast<int>(font.tmHeight), IconSize()) + 1);
}

int NativeFolderList::IconSize() const {
    return GetSystemMetricsForDpi(SM_CXSMICON, CurrentSite().dpi);
}

int NativeFolderList::Gap() const {
    return MulDiv(gapPixels, static_cast<int>(CurrentSite().dpi), USER_DEFAULT_SCREEN_DPI);
}

int NativeFolderList::MarginOfLines() const {
    return NativeList::MarginOfLines() + IconSize() + 2 * Gap();
}

HICON NativeFolderList::IconOf(int line) {
    const std::string& path = folders_.Path();
    if (line > 0) {
        return line <= OpenLine(path) ? openFolder_.Get() : folder_.Get();
    }
    const std::string root = RootOf(path);
    if (root != drivePath_) {
        drive_ = ShellIcon(ToWide(root), 0);
        drivePath_ = root;
    }
    return drive_.Get();
}

bool NativeFolderList::DrawLine(const DRAWITEMSTRUCT& line) {
    const auto index = static_cast<int>(line.itemID);
    FillLine(line);
    if (index < 0) {
        return true;  // the focus in an empty list
    }
    const LRESULT length = Send(LB_GETTEXTLEN, line.itemID);
    std::wstring text(static_cast<std::size_t>(std::max<LRESULT>(length, 0)) + 1, L'\0');
    Send(LB_GETTEXT, line.itemID, reinterpret_cast<LPARAM>(text.data()));
    text.pop_back();
    const std::wstring indent = text.substr(0, std::min(text.find_first_not_of(L' '), text.size()));
    RECT room = line.rcItem;
    room.left += Gap() + WidthOf(line.hDC, indent);
    const int size = IconSize();
    if (HICON icon = IconOf(index)) {
        DrawIconEx(line.hDC, room.left, (room.top + room.bottom - size) / 2, icon, size, size, 0, nullptr, DI_NORMAL);
    }
    room.left += size + Gap();
    DrawTextW(line.hDC, text.c_str() + indent.size(), -1, &room, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_NOCLIP);
    if ((line.itemState & ODS_FOCUS) != 0 && (line.itemState & ODS_NOFOCUSRECT) == 0) {
        DrawFocusRect(line.hDC, &line.rcItem);
    }
    return true;
}

/// Fills the line with its background and chooses the colours of its text.
void NativeFolderList::FillLine(const DRAWITEMSTRUCT& line) const {
    const bool selected = (line.itemState & ODS_SELECTED) != 0;
    const bool disabled = (line.itemState & ODS_DISABLED) != 0;
    const COLORREF back = selected ? GetSysColor(COLOR_HIGHLIGHT) : ColourOr(folders_.BackColor, COLOR_WINDOW);
    const COLORREF plain = disabled ? GetSysColor(COLOR_GRAYTEXT) : ColourOr(folders_.ForeColor, COLOR_WINDOWTEXT);
    SetTextColor(line.hDC, selected ? GetSysColor(COLOR_HIGHLIGHTTEXT) : plain);
    SetBkColor(line.hDC, back);
    const BrushHandle brush(CreateSolidBrush(back));
    FillRect(line.hDC, &line.rcItem, brush.Get());
    SetBkMode(line.hDC, TRANSPARENT);
}

}  // namespace marlok::win32
