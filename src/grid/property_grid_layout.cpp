// The grid's geometry: row and part rectangles, hit-testing, the splitter and scrolling.
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

bool CExtPropertyGridWnd::GetRowRect(int row, RECT* rect) const {
    if (row < 0 || row >= RowCount() || !m_hwnd) return false;
    RECT client;
    GetClientRect(m_hwnd, &client);
    int h = m_pm.RowHeight();
    *rect = {0, (row - m_top) * h, client.right, (row - m_top + 1) * h};
    return true;
}

int CExtPropertyGridWnd::SplitterGet() const {
    RECT client{};
    if (m_hwnd) GetClientRect(m_hwnd, &client);
    int width = client.right;
    int x = static_cast<int>(width * m_splitRatio + 0.5);
    int minimum = m_pm.Scale(40);
    if (width > 2 * minimum) x = std::clamp(x, minimum, width - minimum);
    return x;
}

void CExtPropertyGridWnd::FitSplitterToNames() {
    if (!m_hwnd) return;
    HDC dc = GetDC(m_hwnd);
    HGDIOBJ old = SelectObject(dc, m_pm.NormalFont());
    int widest = 0;
    for (int row = 0; row < RowCount(); ++row) {
        if (!m_rows.Item(row)->IsValue()) continue;
        const std::string& name = m_rows.Item(row)->NameGet();
        SIZE extent{};
        GetTextExtentPoint32A(dc, name.c_str(), static_cast<int>(name.size()), &extent);
        widest = (std::max)(widest, NameLeft(row) + static_cast<int>(extent.cx));
    }
    SelectObject(dc, old);
    ReleaseDC(m_hwnd, dc);
    if (widest > 0) SplitterSet(widest + m_pm.Scale(8));
}

void CExtPropertyGridWnd::SplitterSet(int x) {
    RECT client{};
    if (m_hwnd) GetClientRect(m_hwnd, &client);
    if (client.right <= 0) return;
    m_splitRatio = std::clamp(static_cast<double>(x) / client.right, 0.1, 0.9);
    if (IsEditing()) CommitEdit();
    InvalidateRect(m_hwnd, nullptr, FALSE);
}

int CExtPropertyGridWnd::NameLeft(int row) const {
    int gutter = m_pm.Scale(14);
    if (RowItem(row) && RowItem(row)->IsCategory()) return gutter + m_pm.Scale(2);
    return gutter + RowDepth(row) * m_pm.Scale(12) + m_pm.Scale(3);
}

RECT CExtPropertyGridWnd::ExpanderRect(int row) const {
    RECT rect{};
    GetRowRect(row, &rect);
    int right = NameLeft(row) - m_pm.Scale(2);
    if (RowItem(row) && RowItem(row)->IsCategory()) right = m_pm.Scale(14);
    return {right - m_pm.Scale(14), rect.top, right, rect.bottom};
}

RECT CExtPropertyGridWnd::GetValueRect(int row) const {
    RECT rect{};
    if (!GetRowRect(row, &rect)) return rect;
    rect.left = SplitterGet() + 1;
    rect.bottom -= 1;  // the row's bottom line
    return rect;
}

RECT CExtPropertyGridWnd::GetButtonRect(int row, int button) const {
    RECT value = GetValueRect(row);
    CExtPropertyItem* item = RowItem(row);
    CExtGridCell* cell = item && item->IsValue() ? static_cast<CExtPropertyValue*>(item)->ValueActiveGet() : nullptr;
    if (!cell || button < 0 || button >= cell->GetButtonCount()) return RECT{};
    int width = m_pm.ButtonWidth();
    bool spin = cell->GetButtonKind(0) == CExtGridCell::ButtonKind::kSpinUp;
    if (spin) {
        // Up and down share one column, one above the other.
        int middle = (value.top + value.bottom) / 2;
        RECT r{value.right - width, value.top, value.right, value.bottom};
        if (button == 0)
            r.bottom = middle;
        else
            r.top = middle;
        return r;
    }
    int right = value.right - (cell->GetButtonCount() - 1 - button) * width;
    return {right - width, value.top, right, value.bottom};
}

int CExtPropertyGridWnd::HitTestRow(POINT point) const {
    if (point.y < 0) return -1;
    int row = m_top + point.y / m_pm.RowHeight();
    return row < RowCount() ? row : -1;
}

int CExtPropertyGridWnd::HitTestButton(int row, POINT point) const {
    CExtPropertyItem* item = RowItem(row);
    if (row != m_focus || !item || !item->IsValue()) return -1;
    CExtGridCell* cell = static_cast<CExtPropertyValue*>(item)->ValueActiveGet();
    if (!cell) return -1;
    for (int b = 0; b < cell->GetButtonCount(); ++b) {
        RECT r = GetButtonRect(row, b);
        if (PtInRect(&r, point)) return b;
    }
    return -1;
}

int CExtPropertyGridWnd::VisibleRowCount() const {
    RECT client{};
    if (m_hwnd) GetClientRect(m_hwnd, &client);
    return (std::max)(1, static_cast<int>(client.bottom) / m_pm.RowHeight());
}

void CExtPropertyGridWnd::EnsureVisible(int row) {
    if (row < 0 || row >= RowCount()) return;
    if (row < m_top)
        ScrollTo(row);
    else if (row >= m_top + VisibleRowCount())
        ScrollTo(row - VisibleRowCount() + 1);
}

void CExtPropertyGridWnd::UpdateScrollBar() {
    if (!m_hwnd) return;
    int page = VisibleRowCount();
    m_top = std::clamp(m_top, 0, (std::max)(0, RowCount() - page));
    SCROLLINFO si{};
    si.cbSize = sizeof(si);
    si.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    si.nMin = 0;
    si.nMax = (std::max)(0, RowCount() - 1);
    si.nPage = page;
    si.nPos = m_top;
    SetScrollInfo(m_hwnd, SB_VERT, &si, TRUE);
}

void CExtPropertyGridWnd::ScrollTo(int top) {
    top = std::clamp(top, 0, (std::max)(0, RowCount() - VisibleRowCount()));
    if (top == m_top) return;
    if (IsEditing()) CommitEdit();
    m_top = top;
    UpdateScrollBar();
    if (m_hwnd) InvalidateRect(m_hwnd, nullptr, FALSE);
}
