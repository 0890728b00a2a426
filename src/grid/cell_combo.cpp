#include "grid/cell_combo.h"

#include <algorithm>
#include <set>

#include "grid/grid_archive.h"
#include "grid/paint_manager.h"
#include "xml/ascii.h"

PWGRID_IMPLEMENT_CELL(CExtGridCellComboBox, CExtGridCell)
PWGRID_IMPLEMENT_CELL(CExtGridCellDropListComboBox, CExtGridCellComboBox)
PWGRID_IMPLEMENT_CELL(CExtGridCellFontName, CExtGridCellComboBox)

int CExtGridCellComboBox::AddString(const std::string& entry) { return InsertString(-1, entry); }

int CExtGridCellComboBox::InsertString(int index, const std::string& entry) {
    if (index < 0 || index > GetCount()) index = GetCount();
    m_entries.insert(m_entries.begin() + index, entry);
    if (m_selection >= index) ++m_selection;
    return index;
}

void CExtGridCellComboBox::ResetContent() {
    m_entries.clear();
    m_selection = -1;
}

int CExtGridCellComboBox::FindStringNoCase(const std::string& entry) const {
    auto it = std::find_if(m_entries.begin(), m_entries.end(),
                           [&entry](const std::string& e) { return ascii::EqualsNoCase(e, entry); });
    return it == m_entries.end() ? -1 : static_cast<int>(it - m_entries.begin());
}

std::string CExtGridCellComboBox::GetString(int index) const {
    return index >= 0 && index < GetCount() ? m_entries[index] : std::string();
}

int CExtGridCellComboBox::FindStringExact(const std::string& entry) const {
    auto it = std::find(m_entries.begin(), m_entries.end(), entry);
    return it == m_entries.end() ? -1 : static_cast<int>(it - m_entries.begin());
}

void CExtGridCellComboBox::SetCurSel(int index) {
    if (index < 0 || index >= GetCount()) {
        m_selection = -1;
        return;
    }
    m_selection = index;
    m_text = m_entries[index];
}

std::string CExtGridCellComboBox::GetSelectedText() const { return GetString(m_selection); }

void CExtGridCellComboBox::SetText(const std::string& text) {
    m_text = text;
    // Keep an equal entry selected when the selection already names this
    // text (duplicates), else select the first equal entry.
    if (m_selection >= 0 && m_entries[m_selection] == text) return;
    m_selection = FindStringExact(text);
}

bool CExtGridCellComboBox::ValidateText(const std::string& text) const {
    return !m_listBound || FindStringExact(text) >= 0;
}

void CExtGridCellComboBox::Assign(const CExtGridCell& other) {
    CExtGridCell::Assign(other);
    if (!other.IsKindOf(kClass)) return;
    const auto& o = static_cast<const CExtGridCellComboBox&>(other);
    m_entries = o.m_entries;
    m_selection = o.m_selection;
    m_listBound = o.m_listBound;
}

void CExtGridCellComboBox::Serialize(CExtGridArchive& ar) {
    CExtGridCell::Serialize(ar);
    std::int32_t count = static_cast<std::int32_t>(m_entries.size());
    ar.Exchange(count);
    if (ar.IsLoading()) {
        m_entries.clear();
        // Every entry needs at least its 4-byte length, which bounds a bad count.
        for (std::int32_t i = 0; i < count && !ar.AtEnd(); ++i) {
            std::string entry = ar.ReadString();
            if (ar.Failed()) break;
            m_entries.push_back(entry);
        }
    } else {
        for (const std::string& entry : m_entries) ar.WriteString(entry);
    }
    std::int32_t selection = m_selection;
    ar.Exchange(selection);
    ar.Exchange(m_listBound);
    if (ar.IsLoading()) m_selection = !ar.Failed() && selection >= 0 && selection < GetCount() ? selection : -1;
}

CExtGridCell::EditorKind CExtGridCellComboBox::GetEditorKind() const {
    if (IsReadOnly()) return EditorKind::kNone;
    return EditorKind::kComboBox;
}

bool CExtGridCellComboBox::OnToggle(const CExtGridCellContext& context) {
    if (IsReadOnly() || m_entries.empty()) return false;
    ApplySelection(context, (m_selection + 1) % GetCount());
    return true;
}

void CExtGridCellComboBox::ApplySelection(const CExtGridCellContext& context, int index) {
    if (index < 0 || index >= GetCount()) return;
    bool changed = index != m_selection || m_text != m_entries[index];
    SetCurSel(index);
    if (!changed) return;
    context.Invalidate();
    context.ValueApplied();
}

// ---- font names -------------------------------------------------------------

namespace {
int CALLBACK CollectFace(const LOGFONTA* font, const TEXTMETRICA*, DWORD type, LPARAM data) {
    if ((type & TRUETYPE_FONTTYPE) && font->lfCharSet != SYMBOL_CHARSET && font->lfFaceName[0] != '@')
        reinterpret_cast<std::set<std::string>*>(data)->insert(font->lfFaceName);
    return 1;
}

std::vector<std::string> InstalledFaces() {
    std::set<std::string> faces;
    HDC screen = GetDC(nullptr);
    LOGFONTA any{};
    any.lfCharSet = DEFAULT_CHARSET;
    EnumFontFamiliesExA(screen, &any, CollectFace, reinterpret_cast<LPARAM>(&faces), 0);
    ReleaseDC(nullptr, screen);
    return std::vector<std::string>(faces.begin(), faces.end());
}
}  // namespace

void CExtGridCellFontName::AddInstalledFonts() {
    std::string text = m_text;
    for (const std::string& face : InstalledFaces()) AddString(face);
    SetText(text);
}

std::vector<std::string> CExtGridCellFontName::GetListEntries() const {
    return GetCount() > 0 ? CExtGridCellComboBox::GetListEntries() : InstalledFaces();
}

void CExtGridCellFontName::PaintInOwnFace(const CExtGridPaintContext& pc, const RECT& rect, const std::string& face) {
    LOGFONTA font{};
    GetObjectA(pc.font, sizeof font, &font);
    lstrcpynA(font.lfFaceName, face.c_str(), LF_FACESIZE);
    font.lfCharSet = DEFAULT_CHARSET;
    HFONT preview = face.empty() ? nullptr : CreateFontIndirectA(&font);
    HGDIOBJ oldFont = SelectObject(pc.dc, preview ? preview : pc.font);
    COLORREF oldColor = SetTextColor(pc.dc, pc.textColor);
    int oldMode = SetBkMode(pc.dc, TRANSPARENT);
    RECT r = rect;
    DrawTextA(pc.dc, face.c_str(), static_cast<int>(face.size()), &r,
              DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
    SetBkMode(pc.dc, oldMode);
    SetTextColor(pc.dc, oldColor);
    SelectObject(pc.dc, oldFont);
    if (preview) DeleteObject(preview);
}

void CExtGridCellFontName::OnPaintText(const CExtGridPaintContext& pc, const RECT& textRect) const {
    // A preview: the name in its own face, at the size of the grid's font.
    if (IsTextRectVisible(pc, textRect)) PaintInOwnFace(pc, textRect, m_text);
}

void CExtGridCellFontName::PaintListEntry(const CExtGridPaintContext& pc, const RECT& rect,
                                          const std::string& entry) const {
    RECT r = rect;
    r.left += pc.pm ? pc.pm->Scale(3) : 3;
    PaintInOwnFace(pc, r, entry);
}
