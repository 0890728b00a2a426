#include "grid/cell_file.h"

#include <commdlg.h>
#include <shlobj.h>

#include "grid/grid_archive.h"

PWGRID_IMPLEMENT_CELL(CExtGridCellFile, CExtGridCellString)
PWGRID_IMPLEMENT_CELL(CExtGridCellFolder, CExtGridCellFile)

void CExtGridCellFile::Assign(const CExtGridCell& other) {
    CExtGridCellString::Assign(other);
    if (other.IsKindOf(kClass)) m_filter = static_cast<const CExtGridCellFile&>(other).m_filter;
}

void CExtGridCellFile::Serialize(CExtGridArchive& ar) {
    CExtGridCellString::Serialize(ar);
    ar.Exchange(m_filter);
}

void CExtGridCellFile::OnButtonClick(const CExtGridCellContext& context, int index) {
    if (index != 0 || IsReadOnly()) return;
    std::string path = GetText();
    if (!RunBrowseDialog(context.OwnerWindow(), &path)) return;
    if (path == GetText()) return;
    SetText(path);
    context.Invalidate();
    context.InputComplete();
}

bool CExtGridCellFile::RunBrowseDialog(HWND owner, std::string* path) {
    // The dialog wants the filter's separators as NULs and two NULs at the end.
    std::string filter = m_filter;
    for (char& c : filter)
        if (c == '|') c = '\0';
    filter.append(2, '\0');
    char buffer[MAX_PATH * 4] = {};
    lstrcpynA(buffer, path->c_str(), sizeof buffer);
    OPENFILENAMEA ofn{};
    ofn.lStructSize = sizeof(ofn);
    ofn.hwndOwner = owner;
    ofn.lpstrFilter = filter.c_str();
    ofn.lpstrFile = buffer;
    ofn.nMaxFile = sizeof buffer;
    ofn.Flags = OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY | OFN_EXPLORER | OFN_NOCHANGEDIR;
    if (!GetOpenFileNameA(&ofn)) return false;
    *path = buffer;
    return true;
}

namespace {
int CALLBACK SelectInitialFolder(HWND dialog, UINT message, LPARAM, LPARAM data) {
    if (message == BFFM_INITIALIZED && data) SendMessageA(dialog, BFFM_SETSELECTIONA, TRUE, data);
    return 0;
}
}  // namespace

bool CExtGridCellFolder::RunBrowseDialog(HWND owner, std::string* path) {
    char display[MAX_PATH] = {};
    BROWSEINFOA bi{};
    bi.hwndOwner = owner;
    bi.pszDisplayName = display;
    bi.lpszTitle = "Choose a folder";
    bi.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
    bi.lpfn = SelectInitialFolder;
    bi.lParam = reinterpret_cast<LPARAM>(path->c_str());
    PIDLIST_ABSOLUTE pidl = SHBrowseForFolderA(&bi);
    if (!pidl) return false;
    char chosen[MAX_PATH] = {};
    bool ok = SHGetPathFromIDListA(pidl, chosen) != FALSE;
    CoTaskMemFree(pidl);
    if (ok) *path = chosen;
    return ok;
}
