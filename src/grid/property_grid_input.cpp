// Keys and mouse on the grid.
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

// ---- input ----------------------------------------------------------------------

void CExtPropertyGridWnd::OnKeyDown(WPARAM key) {
    bool alt = GetKeyState(VK_MENU) < 0;
    CExtPropertyItem* item = FocusItem();
    switch (key) {
        case VK_UP:
            if (alt) {
                ClickButton(0);
                break;
            }
            MoveFocusBy(-1);
            break;
        case VK_DOWN:
            if (alt) {
                ClickButton(0);
                break;
            }
            MoveFocusBy(1);
            break;
        case VK_PRIOR: MoveFocusBy(-(std::max)(1, VisibleRowCount() - 1)); break;
        case VK_NEXT: MoveFocusBy((std::max)(1, VisibleRowCount() - 1)); break;
        case VK_HOME:
            if (RowCount()) FocusSet(0);
            break;
        case VK_END:
            if (RowCount()) FocusSet(RowCount() - 1);
            break;
        case VK_LEFT:
            if (!item) break;
            if (item->ItemGetCount() > 0 && item->IsExpanded())
                Expand(m_focus, false);
            else if (item->ItemParentGet() && item->ItemParentGet() != m_store) {
                int parent = FindRow(item->ItemParentGet());
                if (parent >= 0) FocusSet(parent);
            }
            break;
        case VK_RIGHT:
            if (!item || item->ItemGetCount() == 0) break;
            if (!item->IsExpanded())
                Expand(m_focus, true);
            else if (m_focus + 1 < RowCount())
                FocusSet(m_focus + 1);
            break;
        case VK_ADD:
        case VK_OEM_PLUS:
        case VK_SUBTRACT:
        case VK_OEM_MINUS:
            if (item && item->ItemGetCount() > 0) {
                Expand(m_focus, key == VK_ADD || key == VK_OEM_PLUS);
                bool shift = GetKeyState(VK_SHIFT) < 0;
                m_swallowChar = key == VK_ADD        ? '+'
                                : key == VK_SUBTRACT ? '-'
                                : key == VK_OEM_PLUS ? (shift ? '+' : '=')
                                                     : (shift ? '_' : '-');
            }
            break;
        case VK_MULTIPLY:
            ExpandAll(true);
            m_swallowChar = '*';
            break;
        case VK_DIVIDE:
            ExpandAll(false);
            m_swallowChar = '/';
            break;
        case VK_RETURN:
            if (!item) break;
            if (!item->IsValue())
                Expand(m_focus, !item->IsExpanded());
            else if (!BeginEdit())
                ToggleFocus();
            break;
        case VK_F2: BeginEdit(); break;
        case 'F':
            if (GetKeyState(VK_CONTROL) < 0 && m_events) m_events->OnGridFindRequested();
            break;
        case VK_F4: ClickButton(0); break;
        case VK_DELETE: {
            // Delete starts a fresh text, to be confirmed with Enter.
            CExtGridCell* cell =
                item && item->IsValue() ? static_cast<CExtPropertyValue*>(item)->ValueActiveGet() : nullptr;
            if (cell && (cell->GetEditorKind() == CExtGridCell::EditorKind::kText ||
                         cell->GetEditorKind() == CExtGridCell::EditorKind::kPassword)) {
                std::string empty;
                BeginEdit(&empty);
            }
            break;
        }
    }
}

void CExtPropertyGridWnd::OnChar(WPARAM ch) {
    char swallow = m_swallowChar;
    m_swallowChar = 0;
    if (swallow && static_cast<char>(ch) == swallow) return;
    if (ch < 32 || ch == 127) return;
    CExtPropertyItem* item = FocusItem();
    if (!item) return;
    if (!item->IsValue()) {
        if (ch == ' ') Expand(m_focus, !item->IsExpanded());
        return;
    }
    CExtGridCell* cell = static_cast<CExtPropertyValue*>(item)->ValueActiveGet();
    if (!cell || cell->IsReadOnly()) return;
    switch (cell->GetEditorKind()) {
        case CExtGridCell::EditorKind::kNone:
            if (ch == ' ') cell->OnToggle(ContextForRow(m_focus));
            break;
        case CExtGridCell::EditorKind::kDropList: {
            // Typing picks the next entry that starts with the letter.
            std::vector<std::string> entries = cell->GetListEntries();
            if (entries.empty()) break;
            int count = static_cast<int>(entries.size());
            int start = static_cast<int>(std::find(entries.begin(), entries.end(), cell->GetText()) - entries.begin());
            for (int i = 1; i <= count; ++i) {
                int index = (start + i) % count;
                if (!entries[index].empty() &&
                    ascii::ToLower(entries[index][0]) == ascii::ToLower(static_cast<char>(ch))) {
                    OnEditorListPicked(index);
                    break;
                }
            }
            break;
        }
        default: {
            std::string typed(1, static_cast<char>(ch));
            BeginEdit(&typed);
            break;
        }
    }
}

void CExtPropertyGridWnd::OnLButtonDown(POINT point, bool doubleClick) {
    if (GetFocus() != m_hwnd) SetFocus(m_hwnd);  // also ends an open edit
    int split = SplitterGet();
    if (std::abs(point.x - split) <= m_pm.Scale(3) && HitTestRow(point) >= 0 &&
        !(RowItem(HitTestRow(point)) && RowItem(HitTestRow(point))->IsCategory())) {
        if (doubleClick) {
            FitSplitterToNames();
            return;
        }
        m_draggingSplitter = true;
        SetCapture(m_hwnd);
        return;
    }
    int row = HitTestRow(point);
    if (row < 0) return;
    CExtPropertyItem* item = RowItem(row);
    RECT expander = ExpanderRect(row);
    if (item->ItemGetCount() > 0 && PtInRect(&expander, point)) {
        FocusSet(row, 0);
        Expand(row, !item->IsExpanded());
        return;
    }
    if (!item->IsValue()) {
        FocusSet(row, 0);
        if (doubleClick) Expand(row, !item->IsExpanded());
        return;
    }
    int button = HitTestButton(row, point);
    if (button >= 0) {
        m_pressedButton = button;
        InvalidateRow(row);
        UpdateWindow(m_hwnd);
        ClickButton(button);
        m_pressedButton = -1;
        InvalidateRow(m_focus);
        return;
    }
    int column = point.x > split ? 1 : 0;
    FocusSet(row, column);
    if (column == 0) {
        if (doubleClick) ToggleFocus();
        return;
    }
    CExtGridCell* cell = static_cast<CExtPropertyValue*>(item)->ValueActiveGet();
    if (!cell) return;
    if (cell->OnValueClick(ContextForRow(row), point)) return;
    if (doubleClick) {
        ToggleFocus();
        return;
    }
    if (!BeginEdit()) return;
    if (m_editor->Kind() == CExtGridCell::EditorKind::kDropList) {
        m_editor->ShowDropDown(true);
    } else if (!m_editor->IsCombo()) {
        // Put the caret where the user clicked.
        HWND edit = m_editor->FocusHwnd();
        POINT p = point;
        MapWindowPoints(m_hwnd, edit, &p, 1);
        LRESULT hit = SendMessageA(edit, EM_CHARFROMPOS, 0, MAKELPARAM(p.x, p.y));
        int index = LOWORD(hit);
        RECT editRect;
        GetClientRect(edit, &editRect);
        if (p.x >= 0 && p.x < editRect.right) SendMessageA(edit, EM_SETSEL, index, index);
    }
}
