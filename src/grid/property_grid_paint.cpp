// Painting the rows, the editor's owner-drawn list entries and the tool tips.
#include "grid/property_grid_wnd.h"

#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>
#include <cstdlib>

#include "grid/cell_combo.h"
#include "grid/grid_accessible.h"
#include "grid/inplace_editor.h"
#include "grid/window_class.h"
#include "xml/ascii.h"

// ---- tool tips ------------------------------------------------------------------

void CExtPropertyGridWnd::EnableToolTips(bool enable) {
    m_toolTipsEnabled = enable;
    if (!enable && m_toolTip) {
        DestroyWindow(m_toolTip);
        m_toolTip = nullptr;
    }
    m_tipRow = m_tipColumn = -1;
}

void CExtPropertyGridWnd::UpdateToolTip(POINT point) {
    if (!m_toolTipsEnabled || !m_hwnd) return;
    int row = HitTestRow(point);
    int column = point.x > SplitterGet() ? 1 : 0;
    if (row == m_tipRow && column == m_tipColumn) return;
    m_tipRow = row;
    m_tipColumn = column;
    if (!m_toolTip) {
        INITCOMMONCONTROLSEX icc{sizeof(icc), ICC_WIN95_CLASSES};
        InitCommonControlsEx(&icc);
        m_toolTip = CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, 0,
                                    0, 0, 0, m_hwnd, nullptr, GetModuleHandleA(nullptr), nullptr);
        if (!m_toolTip) return;
        TTTOOLINFOA tool{};
        tool.cbSize = TTTOOLINFOA_V1_SIZE;
        tool.uFlags = TTF_SUBCLASS;
        tool.hwnd = m_hwnd;
        tool.uId = 1;
        tool.lpszText = const_cast<char*>("");
        SendMessageA(m_toolTip, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
        SendMessageA(m_toolTip, WM_SETFONT, reinterpret_cast<WPARAM>(m_pm.NormalFont()), FALSE);
    }
    // The tip holds the whole text only when the cell cuts it off; an empty
    // tip is never shown.
    std::string text;
    RECT area{};
    CExtPropertyItem* item = RowItem(row);
    if (item && GetRowRect(row, &area)) {
        int available;
        HFONT font = m_pm.NormalFont();
        if (column == 0 || !item->IsValue()) {
            text = item->NameGet();
            available = SplitterGet() - NameLeft(row) - m_pm.Scale(3);
            if (!item->IsValue()) {
                font = m_pm.BoldFont();
                available = area.right - NameLeft(row) - m_pm.Scale(4);
            }
            area.right = SplitterGet();
        } else {
            CExtGridCell* cell = static_cast<CExtPropertyValue*>(item)->ValueActiveGet();
            text = cell ? cell->GetDisplayText() : std::string();
            area = GetValueRect(row);
            available = area.right - area.left - m_pm.Scale(8) - (cell ? cell->GetIconWidth(m_pm) : 0);
        }
        HDC dc = GetDC(m_hwnd);
        HGDIOBJ old = SelectObject(dc, font);
        SIZE extent{};
        GetTextExtentPoint32A(dc, text.c_str(), static_cast<int>(text.size()), &extent);
        SelectObject(dc, old);
        ReleaseDC(m_hwnd, dc);
        if (extent.cx <= available) text.clear();
    }
    TTTOOLINFOA tool{};
    tool.cbSize = TTTOOLINFOA_V1_SIZE;
    tool.hwnd = m_hwnd;
    tool.uId = 1;
    tool.rect = area;
    SendMessageA(m_toolTip, TTM_NEWTOOLRECTA, 0, reinterpret_cast<LPARAM>(&tool));
    tool.lpszText = const_cast<char*>(text.c_str());
    SendMessageA(m_toolTip, TTM_UPDATETIPTEXTA, 0, reinterpret_cast<LPARAM>(&tool));
    if (text.empty()) SendMessageA(m_toolTip, TTM_POP, 0, 0);
}

void CExtPropertyGridWnd::PaintEditorListEntry(const DRAWITEMSTRUCT& dis) {
    bool selected = (dis.itemState & ODS_SELECTED) != 0;
    CExtGridPaintManager::FillSolid(dis.hDC, dis.rcItem, GetSysColor(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    CExtPropertyItem* item = FocusItem();
    CExtGridCell* cell = item && item->IsValue() ? static_cast<CExtPropertyValue*>(item)->ValueActiveGet() : nullptr;
    if (!cell || static_cast<int>(dis.itemID) < 0) return;
    LRESULT length = SendMessageA(dis.hwndItem, CB_GETLBTEXTLEN, dis.itemID, 0);
    if (length == CB_ERR) return;
    std::string entry(length + 1, '\0');
    SendMessageA(dis.hwndItem, CB_GETLBTEXT, dis.itemID, reinterpret_cast<LPARAM>(entry.data()));
    entry.resize(length);
    CExtGridPaintContext pc;
    pc.dc = dis.hDC;
    pc.pm = &m_pm;
    pc.font = m_pm.NormalFont();
    pc.textColor = GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT);
    pc.selected = selected;
    cell->PaintListEntry(pc, dis.rcItem, entry);
    if (dis.itemState & ODS_FOCUS) DrawFocusRect(dis.hDC, &dis.rcItem);
}

// ---- painting -------------------------------------------------------------------

void CExtPropertyGridWnd::PaintRow(HDC dc, int row, const RECT& rect, const RECT& clip) {
    CExtPropertyItem* item = m_rows.Item(row);
    bool focusRow = row == m_focus;
    bool hasFocus = m_hwnd && (GetFocus() == m_hwnd || IsChild(m_hwnd, GetFocus()));
    int gutter = m_pm.Scale(14);
    int split = SplitterGet();
    int nameLeft = NameLeft(row);
    COLORREF window = GetSysColor(COLOR_WINDOW);
    COLORREF gutterColor = CExtGridPaintManager::GutterColor();

    if (item->IsCategory()) {
        CExtGridPaintManager::FillSolid(dc, rect, gutterColor);
        HGDIOBJ oldFont = SelectObject(dc, m_pm.BoldFont());
        SetBkMode(dc, TRANSPARENT);
        RECT text{nameLeft, rect.top, rect.right - m_pm.Scale(4), rect.bottom};
        SIZE extent{};
        GetTextExtentPoint32A(dc, item->NameGet().c_str(), static_cast<int>(item->NameGet().size()), &extent);
        if (focusRow) {
            RECT mark{nameLeft - m_pm.Scale(2), rect.top + 1,
                      (std::min)(nameLeft + static_cast<int>(extent.cx) + m_pm.Scale(2), static_cast<int>(rect.right)),
                      rect.bottom - 1};
            CExtGridPaintManager::FillSolid(dc, mark, GetSysColor(hasFocus ? COLOR_HIGHLIGHT : COLOR_3DSHADOW));
        }
        SetTextColor(dc, focusRow ? GetSysColor(COLOR_HIGHLIGHTTEXT) : GetSysColor(COLOR_BTNTEXT));
        DrawTextA(dc, item->NameGet().c_str(), -1, &text,
                  DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
        SelectObject(dc, oldFont);
        if (item->ItemGetCount() > 0) m_pm.DrawExpander(dc, ExpanderRect(row), item->IsExpanded() || !m_filter.empty());
        return;
    }

    // A value row: gutter, name, splitter, value, bottom line.
    RECT gutterRect{rect.left, rect.top, gutter, rect.bottom};
    CExtGridPaintManager::FillSolid(dc, gutterRect, gutterColor);
    RECT nameRect{gutter, rect.top, split, rect.bottom - 1};
    CExtGridPaintManager::FillSolid(dc, nameRect, window);
    if (focusRow) {
        RECT mark{nameLeft - m_pm.Scale(2), nameRect.top, nameRect.right, nameRect.bottom};
        CExtGridPaintManager::FillSolid(dc, mark, GetSysColor(hasFocus ? COLOR_HIGHLIGHT : COLOR_3DFACE));
    }
    auto* value = static_cast<CExtPropertyValue*>(item);
    CExtGridCell* cell = value->ValueActiveGet();
    bool readOnly = !cell || cell->IsReadOnly();
    HGDIOBJ oldFont = SelectObject(dc, m_pm.NormalFont());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, focusRow && hasFocus ? GetSysColor(COLOR_HIGHLIGHTTEXT)
                                          : GetSysColor(readOnly ? COLOR_GRAYTEXT : COLOR_WINDOWTEXT));
    RECT nameText{nameLeft, rect.top, split - m_pm.Scale(3), rect.bottom - 1};
    DrawTextA(dc, item->NameGet().c_str(), -1, &nameText,
              DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
    SelectObject(dc, oldFont);
    if (item->ItemGetCount() > 0) m_pm.DrawExpander(dc, ExpanderRect(row), item->IsExpanded() || !m_filter.empty());

    RECT valueRect = GetValueRect(row);
    CExtGridPaintManager::FillSolid(dc, valueRect, window);
    if (cell && !(focusRow && IsEditing() && m_editor->IsCombo())) {
        CExtGridPaintContext pc;
        pc.dc = dc;
        pc.pm = &m_pm;
        pc.font = value->IsModified() ? m_pm.BoldFont() : m_pm.NormalFont();
        pc.textColor = GetSysColor(readOnly ? COLOR_GRAYTEXT : COLOR_WINDOWTEXT);
        pc.selected = focusRow;
        pc.focused = focusRow && hasFocus;
        pc.enabled = IsWindowEnabled(m_hwnd) != FALSE;
        pc.clip = clip;
        RECT cellRect = valueRect;
        if (focusRow && cell->GetButtonCount() > 0) cellRect.right = GetButtonRect(row, 0).left;
        int saved = SaveDC(dc);
        IntersectClipRect(dc, cellRect.left, cellRect.top, cellRect.right, cellRect.bottom);
        if (!(focusRow && IsEditing()))
            cell->PaintValue(pc, cellRect);
        else if (int icon = cell->GetIconWidth(m_pm)) {
            // The editor covers the text; the picture stays visible beside it.
            RECT iconRect{cellRect.left + m_pm.Scale(4), cellRect.top, cellRect.left + m_pm.Scale(4) + icon,
                          cellRect.bottom};
            cell->PaintIcon(pc, iconRect);
        }
        RestoreDC(dc, saved);
        if (focusRow && !readOnly)
            for (int b = 0; b < cell->GetButtonCount(); ++b)
                m_pm.DrawCellButton(dc, GetButtonRect(row, b), cell->GetButtonKind(b), m_pressedButton == b,
                                    cell->IsButtonEnabled(b), m_hotButton == b);
    }
    // Grid lines: the splitter and the line under the row.
    RECT splitLine{split, rect.top, split + 1, rect.bottom};
    CExtGridPaintManager::FillSolid(dc, splitLine, CExtGridPaintManager::LineColor());
    RECT bottomLine{gutter, rect.bottom - 1, rect.right, rect.bottom};
    CExtGridPaintManager::FillSolid(dc, bottomLine, CExtGridPaintManager::LineColor());
}

void CExtPropertyGridWnd::Paint(HDC dc, const RECT& clip) {
    RECT client;
    GetClientRect(m_hwnd, &client);
    int h = m_pm.RowHeight();
    int y = 0;
    for (int row = m_top; row < RowCount() && y < client.bottom; ++row, y += h) {
        RECT rect{0, y, client.right, y + h};
        RECT overlap;
        if (IntersectRect(&overlap, &rect, &clip)) PaintRow(dc, row, rect, clip);
    }
    if (y < client.bottom) {
        RECT rest{0, y, client.right, client.bottom};
        CExtGridPaintManager::FillSolid(dc, rest, GetSysColor(COLOR_WINDOW));
        RECT gutter{0, y, m_pm.Scale(14), client.bottom};
        CExtGridPaintManager::FillSolid(dc, gutter, CExtGridPaintManager::GutterColor());
        if (RowCount() == 0) {
            // Say why the grid is empty rather than showing nothing.
            std::string note = m_filter.empty() ? "No properties" : "No properties match \"" + m_filter + "\"";
            HGDIOBJ oldFont = SelectObject(dc, m_pm.NormalFont());
            SetBkMode(dc, TRANSPARENT);
            SetTextColor(dc, GetSysColor(COLOR_GRAYTEXT));
            RECT text{m_pm.Scale(14), m_pm.Scale(12), client.right, m_pm.Scale(12) + h};
            DrawTextA(dc, note.c_str(), -1, &text, DT_CENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
            SelectObject(dc, oldFont);
        }
    }
}
