// Editing in place: the editor over the focus row, committing and cancelling, buttons and toggles.
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

// ---- editing ----------------------------------------------------------------------

bool CExtPropertyGridWnd::IsEditing() const { return m_editor && m_editor->IsOpen(); }

HWND CExtPropertyGridWnd::EditorHwnd() const { return IsEditing() ? m_editor->FocusHwnd() : nullptr; }

bool CExtPropertyGridWnd::BeginEdit(const std::string* initialText) {
    CExtPropertyItem* item = FocusItem();
    if (!item || !item->IsValue() || !m_hwnd) return false;
    CExtGridCell* cell = static_cast<CExtPropertyValue*>(item)->ValueActiveGet();
    if (!cell || cell->GetEditorKind() == CExtGridCell::EditorKind::kNone) return false;
    EnsureVisible(m_focus);
    RECT value = GetValueRect(m_focus);
    RECT text = value;
    text.left += m_pm.Scale(4);
    if (int icon = cell->GetIconWidth(m_pm)) text.left += icon + m_pm.Scale(4);
    if (cell->GetButtonCount() > 0 && cell->GetEditorKind() != CExtGridCell::EditorKind::kComboBox &&
        cell->GetEditorKind() != CExtGridCell::EditorKind::kDropList) {
        RECT first = GetButtonRect(m_focus, 0);
        text.right = first.left - m_pm.Scale(2);
    }
    InvalidateRow(m_focus);
    return m_editor->Open(*cell, text, value, initialText);
}

bool CExtPropertyGridWnd::CommitEdit() {
    if (!IsEditing()) return true;
    CExtPropertyItem* item = FocusItem();
    CExtGridCell* cell = item && item->IsValue() ? static_cast<CExtPropertyValue*>(item)->ValueActiveGet() : nullptr;
    if (!cell) {
        m_editor->Close();
        return true;
    }
    std::string text = m_editor->GetText();
    if (!cell->ValidateText(text)) {
        MessageBeep(MB_ICONWARNING);
        m_editor->SelectAll();
        return false;
    }
    bool changed = text != cell->GetText();
    m_editor->Close();
    InvalidateRow(m_focus);
    if (changed) {
        cell->SetText(text);
        OnCellInputComplete(*static_cast<CExtPropertyValue*>(item));
    }
    return true;
}

void CExtPropertyGridWnd::CancelEdit() {
    if (!IsEditing()) return;
    m_editor->Close();
    InvalidateRow(m_focus);
}

void CExtPropertyGridWnd::OnEditorKey(WPARAM key, bool shift) {
    switch (key) {
        case VK_RETURN: CommitEdit(); break;
        case VK_ESCAPE: CancelEdit(); break;
        case VK_TAB: {
            // Commit and edit the next (or previous) value that has an editor.
            if (!CommitEdit()) return;
            for (int row = m_focus + (shift ? -1 : 1); row >= 0 && row < RowCount(); row += shift ? -1 : 1) {
                CExtPropertyItem* item = RowItem(row);
                CExtGridCell* cell =
                    item->IsValue() ? static_cast<CExtPropertyValue*>(item)->ValueActiveGet() : nullptr;
                if (cell && cell->GetEditorKind() != CExtGridCell::EditorKind::kNone) {
                    FocusSet(row);
                    BeginEdit();
                    return;
                }
            }
            break;
        }
        case VK_UP:
        case VK_DOWN: {
            CExtPropertyItem* item = FocusItem();
            CExtGridCell* cell =
                item && item->IsValue() ? static_cast<CExtPropertyValue*>(item)->ValueActiveGet() : nullptr;
            if (cell && cell->GetButtonCount() == 2 && cell->GetButtonKind(0) == CExtGridCell::ButtonKind::kSpinUp) {
                // Spin cells step while they are edited.
                if (!CommitEdit()) return;
                ClickButton(key == VK_UP ? 0 : 1);
                BeginEdit();
                return;
            }
            if (!CommitEdit()) return;
            MoveFocusBy(key == VK_UP ? -1 : 1);
            break;
        }
        case VK_PRIOR:
        case VK_NEXT:
            if (!CommitEdit()) return;
            MoveFocusBy((key == VK_PRIOR ? -1 : 1) * (std::max)(1, VisibleRowCount() - 1));
            break;
        case VK_F4:
            if (!CommitEdit()) return;
            ClickButton(0);
            break;
    }
}

void CExtPropertyGridWnd::OnEditorFocusLost(HWND newFocus) {
    // Leaving the editor keeps a valid text and drops a refused one.
    if (!CommitEdit()) CancelEdit();
}

void CExtPropertyGridWnd::OnEditorListPicked(int index) {
    CExtPropertyItem* item = FocusItem();
    if (!item || !item->IsValue()) return;
    CExtGridCell* cell = static_cast<CExtPropertyValue*>(item)->ValueActiveGet();
    if (!cell) return;
    std::vector<std::string> entries = cell->GetListEntries();
    if (index < 0 || index >= static_cast<int>(entries.size())) return;
    CExtGridCellContext context = ContextForRow(m_focus);
    if (cell->IsKindOf(CExtGridCellComboBox::kClass) && index < static_cast<CExtGridCellComboBox*>(cell)->GetCount()) {
        // List cells pick by index, so that equal entries keep their position.
        static_cast<CExtGridCellComboBox*>(cell)->ApplySelection(context, index);
    } else if (entries[index] != cell->GetText()) {
        cell->SetText(entries[index]);
        InvalidateRow(m_focus);
        OnCellValueApplied(*static_cast<CExtPropertyValue*>(item));
    }
}

void CExtPropertyGridWnd::ClickButton(int button) {
    CExtPropertyItem* item = FocusItem();
    if (!item || !item->IsValue()) return;
    CExtGridCell* cell = static_cast<CExtPropertyValue*>(item)->ValueActiveGet();
    if (!cell || button < 0 || button >= cell->GetButtonCount() || !cell->IsButtonEnabled(button)) return;
    CExtGridCell::EditorKind kind = cell->GetEditorKind();
    if (button == 0 && (kind == CExtGridCell::EditorKind::kComboBox || kind == CExtGridCell::EditorKind::kDropList)) {
        // List cells drop their list in the in-place combo box.
        if (!IsEditing() && !BeginEdit()) return;
        m_editor->ShowDropDown(true);
        return;
    }
    if (IsEditing() && !CommitEdit()) return;
    cell->OnButtonClick(ContextForRow(m_focus), button);
    InvalidateRow(m_focus);
}

void CExtPropertyGridWnd::ToggleFocus() {
    CExtPropertyItem* item = FocusItem();
    if (!item) return;
    if (!item->IsValue()) {
        Expand(m_focus, !item->IsExpanded());
        return;
    }
    CExtGridCell* cell = static_cast<CExtPropertyValue*>(item)->ValueActiveGet();
    if (!cell) return;
    if (IsEditing() && !CommitEdit()) return;
    if (!cell->OnToggle(ContextForRow(m_focus))) BeginEdit();
}

void CExtPropertyGridWnd::OnCellInputComplete(CExtPropertyValue& item) {
    InvalidateRow(FindRow(&item));
    if (m_hwnd) NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, m_hwnd, OBJID_CLIENT, FindRow(&item) + 1);
    if (m_events) m_events->OnGridInputComplete(item);
}

void CExtPropertyGridWnd::OnCellValueApplied(CExtPropertyValue& item) {
    InvalidateRow(FindRow(&item));
    if (m_hwnd) NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, m_hwnd, OBJID_CLIENT, FindRow(&item) + 1);
    if (m_events) m_events->OnGridValueApplied(item);
}
